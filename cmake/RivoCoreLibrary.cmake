# The core library's name on disk and in NEEDED entries, that of every build of it.
set(RIVO_CORE_LIBRARY_NAME RIVO_ARM_QtLib)
set(RIVO_CORE_LIBRARY_SONAME "${CMAKE_SHARED_LIBRARY_PREFIX}${RIVO_CORE_LIBRARY_NAME}${CMAKE_SHARED_LIBRARY_SUFFIX}")
set(RIVO_CORE_MODULE_DIR "${CMAKE_CURRENT_LIST_DIR}")

# Definitions that the layout of the logger's classes depends on, beside the macros in core/Logging.h:
# all that include that header are compiled with them. Where a pointer has 32 bits, files of 2 GiB
# and more, and inodes and times beyond 32 bits, cannot even be looked at without these.
set(RIVO_LAYOUT_DEFINITIONS "")
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(RIVO_LAYOUT_DEFINITIONS _FILE_OFFSET_BITS=64 _TIME_BITS=64)
endif()
list(TRANSFORM RIVO_LAYOUT_DEFINITIONS PREPEND "-D" OUTPUT_VARIABLE RIVO_LAYOUT_FLAGS)
list(JOIN RIVO_LAYOUT_FLAGS " " RIVO_LAYOUT_FLAGS)

# rivo_generate_logging_header(<file>)
# Writes core/Logging.h with the macros of GUICORE_ELPP_MACROS, each NAME or NAME=value, and a check of
# the definitions that cannot be made in a header.
function(rivo_generate_logging_header file)
    set(RIVO_ELPP_DEFINES "")
    set(RIVO_LAYOUT_CHECKS "")
    foreach(definition IN LISTS RIVO_LAYOUT_DEFINITIONS)
        string(REGEX MATCH "^(.*)=(.*)$" unused "${definition}")
        string(APPEND RIVO_LAYOUT_CHECKS
            "#if !defined(${CMAKE_MATCH_1}) || ${CMAKE_MATCH_1} != ${CMAKE_MATCH_2}\n"
            "#error \"Compile with -D${definition}, as the core library was\"\n#endif\n")
    endforeach()
    foreach(macro IN LISTS GUICORE_ELPP_MACROS)
        if(NOT macro MATCHES "^([A-Za-z_][A-Za-z0-9_]*)(=(.*))?$")
            message(FATAL_ERROR "GUICORE_ELPP_MACROS: \"${macro}\" is neither NAME nor NAME=value")
        endif()
        string(STRIP "#define ${CMAKE_MATCH_1} ${CMAKE_MATCH_3}" define)
        if(CMAKE_MATCH_1 STREQUAL "ELPP_QT_LOGGING") # GuiCore has it in any case
            set(define "#ifndef ELPP_QT_LOGGING\n${define}\n#endif")
        endif()
        string(APPEND RIVO_ELPP_DEFINES "${define}\n")
    endforeach()
    configure_file("${RIVO_CORE_MODULE_DIR}/../GuiCore/include/core/Logging.h.in" "${file}" @ONLY)
endfunction()

# rivo_import_core_library(<target> <file>)
# Another build of the core library as an imported target. What links it gets its SONAME as NEEDED
# entry, which may end in a version, or libRIVO_ARM_QtLib.so if it has none; so the library can be
# swapped at load time too. The target's property RIVO_LOADED_NAME is that name.
function(rivo_import_core_library target file)
    get_filename_component(file "${file}" ABSOLUTE BASE_DIR "${CMAKE_SOURCE_DIR}")
    if(NOT EXISTS "${file}" OR IS_DIRECTORY "${file}")
        message(FATAL_ERROR "GUICORE_CORE_LIBRARY: there is no file ${file}")
    endif()
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C "${CMAKE_READELF}" -d "${file}"
        RESULT_VARIABLE status OUTPUT_VARIABLE dynamic ERROR_VARIABLE error)
    if(NOT status EQUAL 0 OR NOT dynamic MATCHES "Dynamic section at offset")
        message(FATAL_ERROR "GUICORE_CORE_LIBRARY: ${file} is not a shared library ${error}")
    endif()
    set(name "${RIVO_CORE_LIBRARY_SONAME}")
    if(dynamic MATCHES "Library soname: \\[([^]\n]*)\\]")
        set(name "${CMAKE_MATCH_1}")
    endif()
    string(REPLACE "." "\\." plain_name "${RIVO_CORE_LIBRARY_SONAME}")
    if(NOT name MATCHES "^${plain_name}(\\.[0-9]+)*$")
        message(FATAL_ERROR "GUICORE_CORE_LIBRARY: ${file} has the SONAME ${name}; it must be "
            "${RIVO_CORE_LIBRARY_SONAME}, with or without a version, or absent, or it cannot be "
            "swapped at load time")
    endif()

    # Without a SONAME the linker records the name by which it found the file, so it must find it
    # under the right one: through a link of that name, with -l instead of a path. The loader looks
    # for the other one.
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/imported")
    file(MAKE_DIRECTORY "${folder}")
    foreach(link IN ITEMS "${RIVO_CORE_LIBRARY_SONAME}" "${name}")
        file(CREATE_LINK "${file}" "${folder}/${link}" SYMBOLIC)
    endforeach()
    add_library(${target} SHARED IMPORTED GLOBAL)
    set_target_properties(${target} PROPERTIES
        IMPORTED_LOCATION "${folder}/${RIVO_CORE_LIBRARY_SONAME}"
        IMPORTED_NO_SONAME TRUE
        RIVO_LOADED_NAME "${name}")
endfunction()
