# What the layout of the logger's classes depends on reaches those that include core/Logging.h: through
# pkg-config, through the package of CMake, and by a check in the header itself.

# configured(<bytes of a pointer>): sets the texts of the three files for such a machine.
function(configured bytes)
    set(CMAKE_SIZEOF_VOID_P ${bytes})
    include("${REPOSITORY}/cmake/RivoCoreLibrary.cmake")
    set(PACKAGE_INIT "")
    configure_file("${REPOSITORY}/cmake/GuiCore.pc.in" "${BUILD_FOLDER}/GuiCore.pc" @ONLY)
    configure_file("${REPOSITORY}/cmake/GuiCoreConfig.cmake.in" "${BUILD_FOLDER}/GuiCoreConfig.cmake" @ONLY)
    rivo_generate_logging_header("${BUILD_FOLDER}/Logging.h")
    foreach(file IN ITEMS GuiCore.pc GuiCoreConfig.cmake Logging.h)
        file(READ "${BUILD_FOLDER}/${file}" text)
        set(${file} "${text}" PARENT_SCOPE)
    endforeach()
endfunction()

function(expect_text file text)
    string(FIND "${${file}}" "${text}" place)
    if(place EQUAL -1)
        message(SEND_ERROR "No \"${text}\" in ${file}:\n${${file}}")
    endif()
endfunction()

configured(4)
expect_text(GuiCore.pc "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64")
expect_text(GuiCoreConfig.cmake "INTERFACE_COMPILE_DEFINITIONS \"_FILE_OFFSET_BITS=64;_TIME_BITS=64\"")
file(WRITE "${BUILD_FOLDER}/easylogging++.h" "")
foreach(flags IN ITEMS "" "-D_FILE_OFFSET_BITS=64" "-D_FILE_OFFSET_BITS=64;-D_TIME_BITS=32")
    execute_process(
        COMMAND "${COMPILER}" -fsyntax-only -x c++ "-I${BUILD_FOLDER}" ${flags} "${BUILD_FOLDER}/Logging.h"
        OUTPUT_QUIET ERROR_VARIABLE error RESULT_VARIABLE status)
    if(status EQUAL 0 OR NOT error MATCHES "#error .Compile with -D_TIME_BITS=64, as the core library was")
        message(SEND_ERROR "Compiled with \"${flags}\": ${status}\n${error}")
    endif()
endforeach()
execute_process(
    COMMAND "${COMPILER}" -fsyntax-only -x c++ "-I${BUILD_FOLDER}" -D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64
        "${BUILD_FOLDER}/Logging.h"
    COMMAND_ERROR_IS_FATAL ANY)

configured(8)
foreach(file IN ITEMS GuiCore.pc GuiCoreConfig.cmake Logging.h)
    if("${${file}}" MATCHES "_BITS")
        message(SEND_ERROR "A definition that 64 bits do not need, in ${file}:\n${${file}}")
    endif()
endforeach()
