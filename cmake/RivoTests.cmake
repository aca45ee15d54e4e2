rivo_find_qt(Test)
# Definitions with the folder of each test are no use to us, and shared headers are compiled once for
# all folders.
get_target_property(rivo_test_definitions ${RIVO_QT}::Test INTERFACE_COMPILE_DEFINITIONS)
list(FILTER rivo_test_definitions EXCLUDE REGEX "TARGET_PROPERTY")
set_property(TARGET ${RIVO_QT}::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS ${rivo_test_definitions})

# rivo_program(<variable> <target>)
# The path by which a test starts a program of ours. In a cross build that is a script which runs it
# in the emulator, for the build machine's kernel need not know what to do with it.
function(rivo_program variable target)
    set(program "$<TARGET_FILE:${target}>")
    if(CMAKE_CROSSCOMPILING_EMULATOR)
        set(script "${CMAKE_BINARY_DIR}/emulated/${target}")
        get_property(written GLOBAL PROPERTY rivo_emulated_${target})
        if(NOT written)
            list(JOIN CMAKE_CROSSCOMPILING_EMULATOR "' '" emulator)
            file(GENERATE OUTPUT "${script}"
                CONTENT "#!/bin/sh\nexec '${emulator}' '${program}' \"$@\"\n"
                FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
            set_property(GLOBAL PROPERTY rivo_emulated_${target} TRUE)
        endif()
        set(program "${script}")
    endif()
    set(${variable} "${program}" PARENT_SCOPE)
    # A build of the folder alone needs the program, too.
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    if(NOT TARGET ${target}_for_${folder})
        add_custom_target(${target}_for_${folder} ALL)
        add_dependencies(${target}_for_${folder} ${target})
    endif()
endfunction()

# Tests that take long or wait start first; the short ones fill what is left of the processors.
set(rivo_long_tests installed_tree tst_core_follow tst_feed_robustness tst_fleet_pages tst_journal_disk
    tst_journal_takeover tst_layout_property tst_layout_reentrancy tst_rivo_grid tst_rivo_models tst_sales_kill
    tst_screen_pictures tst_screen_soak tst_screen_texts tst_selling tst_terminal_program)

# rivo_add_command_test(<name> COMMAND <command> [<argument>...])
# A test in a home of its own: neither the user's environment nor another test can change its
# outcome. NM and READELF read what was built.
function(rivo_add_command_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "COMMAND")
    if(name IN_LIST RIVO_TESTS_LEFT_OUT)
        return()
    endif()
    add_test(NAME ${name} COMMAND "${CMAKE_SOURCE_DIR}/tests/support/run_test.sh"
        "${CMAKE_BINARY_DIR}/tests/home" ${name} ${arg_COMMAND})
    set(cost 0)
    if(name IN_LIST rivo_long_tests)
        set(cost 100)
    endif()
    set_tests_properties(${name} PROPERTIES
        COST ${cost}
        ENVIRONMENT "NM=${CMAKE_NM};READELF=${CMAKE_READELF}")
endfunction()

# rivo_moc_one_file(<test>)
# A test of one file includes what moc makes of it, and moc is all it needs: AUTOMOC adds two targets
# and a file to compile to each of many tests.
function(rivo_moc_one_file test)
    get_target_property(sources ${test} SOURCES)
    list(LENGTH sources count)
    if(count EQUAL 1)
        set_target_properties(${test} PROPERTIES AUTOMOC OFF)
        set(moc "${CMAKE_CURRENT_BINARY_DIR}/${test}.moc")
        qt_generate_moc(${sources} "${moc}" TARGET ${test})
        target_sources(${test} PRIVATE "${moc}")
        target_include_directories(${test} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
endfunction()

# rivo_test_headers(<name> [LIBRARIES <target>...] [HEADERS <header>...])
# Headers that tests with these modules of Qt share. A module more is a macro more, and Qt's headers
# are others then.
function(rivo_test_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES;HEADERS")
    add_library(${name} OBJECT "${CMAKE_SOURCE_DIR}/tests/support/test_headers.cpp")
    target_link_libraries(${name} PRIVATE rivo_settings RivoCoreBoundary ${arg_LIBRARIES} Qt::Test)
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON AUTOMOC OFF)
    target_precompile_headers(${name} PRIVATE
        <QtTest> <QAbstractItemModelTester> <QJsonDocument> <QProcess>
        <QTemporaryDir> <algorithm> <functional> <limits> <memory> <core/Logging.h> ${arg_HEADERS})
endfunction()

# rivo_reuse_test_headers(<name> [LIBRARIES <target>...])
# Gives a test the shared headers that fit the modules it links.
function(rivo_reuse_test_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
    set(headers test_headers)
    if(arg_LIBRARIES MATCHES "::(Gui|Network|SerialPort|Svg|QuickTest)")
        return()
    elseif(arg_LIBRARIES MATCHES "::Quick|RivoTerminal")
        set(headers test_headers_quick)
    elseif(arg_LIBRARIES MATCHES "::Qml")
        set(headers test_headers_qml)
    endif()
    if(TARGET ${headers})
        target_precompile_headers(${name} REUSE_FROM ${headers})
    endif()
endfunction()

# rivo_add_program_test(<name> SOURCES <file>... LIBRARIES <target>...)
# A QtTest program, unless it is left out. Those that need neither QML nor a screen have the label
# "plain".
function(rivo_add_program_test name)
    if(name IN_LIST RIVO_TESTS_LEFT_OUT)
        return()
    endif()
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    rivo_moc_one_file(${name})
    rivo_reuse_test_headers(${name} LIBRARIES ${arg_LIBRARIES})
    target_link_libraries(${name} PRIVATE rivo_settings ${arg_LIBRARIES} Qt::Test)
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support)
    if(CMAKE_CROSSCOMPILING_EMULATOR)
        target_link_libraries(${name} PRIVATE emulated_processes)
    endif()
    rivo_add_command_test(${name} COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} "$<TARGET_FILE:${name}>")
    if(NOT arg_LIBRARIES MATCHES "::(Gui|Qml|Quick|Svg)|RivoTerminal|qml_test")
        set_tests_properties(${name} PROPERTIES LABELS plain)
    endif()
endfunction()

# rivo_add_test(<name> SOURCES <file>... [LIBRARIES <target>...])
# The same for a program that tests GuiCore.
function(rivo_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    rivo_add_program_test(${name} SOURCES ${arg_SOURCES} LIBRARIES GuiCore ${arg_LIBRARIES})
endfunction()

# rivo_without_leak_check(<test>...)
# Programs with windows, or with Qt's platform plugins for pictures, leave memory of D-Bus, Mesa and
# those plugins behind. Their other sanitizer checks stay, and what the terminal itself leaks is
# counted by tst_screen_soak.
function(rivo_without_leak_check)
    set_tests_properties(${ARGN} PROPERTIES
        ENVIRONMENT_MODIFICATION "ASAN_OPTIONS=set:detect_leaks=0")
endfunction()
