# Whatever the macro set, a record goes to standard error alone and no log file appears.

execute_process(
    COMMAND "${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE_FOLDER}" -B "${BUILD_FOLDER}"
        -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_CXX_COMPILER=${COMPILER}
        -DREPOSITORY=${REPOSITORY} -DGUICORE_QT=${QT_DEFAULT_MAJOR_VERSION}
        "-DGUICORE_ELPP_MACROS=ELPP_QT_LOGGING;ELPP_THREAD_SAFE;ELPP_STACKTRACE_ON_CRASH=1"
    OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS "${BUILD_FOLDER}/GuiCore/include/include/core/Logging.h" defines REGEX "^#define ELPP_")
if(NOT "${defines}" STREQUAL
        "#define ELPP_QT_LOGGING;#define ELPP_THREAD_SAFE;#define ELPP_STACKTRACE_ON_CRASH 1")
    message(SEND_ERROR "The macros became ${defines}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${BUILD_FOLDER}" --parallel 2
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "Not built:\n${output}")
endif()

set(work "${BUILD_FOLDER}/work")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}")
execute_process(COMMAND ${EMULATOR} "${BUILD_FOLDER}/core_log_probe" log WORKING_DIRECTORY "${work}"
    OUTPUT_VARIABLE output ERROR_VARIABLE error COMMAND_ERROR_IS_FATAL ANY)
if(NOT output STREQUAL "" OR NOT error MATCHES "INFO [^\n]*count 3 [^\n]*\n[^\n]*WARNING [^\n]*careful\n")
    message(SEND_ERROR "Standard output: ${output}\nStandard error: ${error}")
endif()
file(GLOB leftovers "${work}/*")
if(leftovers)
    message(SEND_ERROR "Left behind: ${leftovers}")
endif()

# GuiCore logs texts of Qt to a core library that was built without support for them.
execute_process(
    COMMAND "${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE_FOLDER}" -B "${BUILD_FOLDER}-without-qt"
        -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_CXX_COMPILER=${COMPILER}
        -DREPOSITORY=${REPOSITORY} -DGUICORE_QT=${QT_DEFAULT_MAJOR_VERSION} -DWITH_GUICORE=ON "-DGUICORE_ELPP_MACROS=ELPP_THREAD_SAFE"
    OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
execute_process(
    COMMAND "${CMAKE_COMMAND}" --build "${BUILD_FOLDER}-without-qt"
        --target GuiCore/CMakeFiles/GuiCore.dir/src/Models/PassengerTypesModelOrdering.cpp.o
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(SEND_ERROR "Without ELPP_QT_LOGGING GuiCore is not built:\n${output}")
endif()

execute_process(
    COMMAND "${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE_FOLDER}" -B "${BUILD_FOLDER}-bad"
        -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_CXX_COMPILER=${COMPILER}
        -DREPOSITORY=${REPOSITORY} -DGUICORE_QT=${QT_DEFAULT_MAJOR_VERSION} "-DGUICORE_ELPP_MACROS=A B"
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
string(REGEX REPLACE "[ \n]+" " " output "${output}")
if(status EQUAL 0 OR NOT output MATCHES "GUICORE_ELPP_MACROS: \"A B\" is neither NAME nor NAME=value")
    message(SEND_ERROR "A bad macro was accepted:\n${output}")
endif()
