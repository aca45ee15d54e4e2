# The core library's name on disk and in NEEDED entries, that of every build of it.
set(RIVO_CORE_LIBRARY_NAME RIVO_ARM_QtLib)
set(RIVO_CORE_LIBRARY_SONAME "${CMAKE_SHARED_LIBRARY_PREFIX}${RIVO_CORE_LIBRARY_NAME}${CMAKE_SHARED_LIBRARY_SUFFIX}")
set(RIVO_CORE_MODULE_DIR "${CMAKE_CURRENT_LIST_DIR}")

# rivo_generate_logging_header(<file>)
# Writes core/Logging.h with the macros of GUICORE_ELPP_MACROS, each NAME or NAME=value.
function(rivo_generate_logging_header file)
    set(RIVO_ELPP_DEFINES "")
    foreach(macro IN LISTS GUICORE_ELPP_MACROS)
        if(NOT macro MATCHES "^([A-Za-z_][A-Za-z0-9_]*)(=(.*))?$")
            message(FATAL_ERROR "GUICORE_ELPP_MACROS: \"${macro}\" is neither NAME nor NAME=value")
        endif()
        string(STRIP "#define ${CMAKE_MATCH_1} ${CMAKE_MATCH_3}" define)
        string(APPEND RIVO_ELPP_DEFINES "${define}\n")
    endforeach()
    configure_file("${RIVO_CORE_MODULE_DIR}/../GuiCore/include/core/Logging.h.in" "${file}" @ONLY)
endfunction()

# rivo_import_core_library(<target> <file>)
# Another build of the core library as an imported target. What links it gets the NEEDED entry
# libRIVO_ARM_QtLib.so, so that the library can be swapped at load time too.
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
    if(dynamic MATCHES "Library soname: \\[([^]\n]*)\\]"
            AND NOT CMAKE_MATCH_1 STREQUAL RIVO_CORE_LIBRARY_SONAME)
        message(FATAL_ERROR "GUICORE_CORE_LIBRARY: ${file} has the SONAME ${CMAKE_MATCH_1}; "
            "it must be ${RIVO_CORE_LIBRARY_SONAME} or absent, or it cannot be swapped at load time")
    endif()

    # Without a SONAME the linker records the name by which it found the file, so it must find it
    # under the right one: through a link of that name, with -l instead of a path.
    set(link "${CMAKE_CURRENT_BINARY_DIR}/imported/${RIVO_CORE_LIBRARY_SONAME}")
    file(MAKE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}/imported")
    file(CREATE_LINK "${file}" "${link}" SYMBOLIC)
    add_library(${target} SHARED IMPORTED GLOBAL)
    set_target_properties(${target} PROPERTIES
        IMPORTED_LOCATION "${link}"
        IMPORTED_NO_SONAME TRUE)
endfunction()
