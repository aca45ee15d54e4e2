# Builds stubs of the core library in every shape that GUICORE_CORE_LIBRARY may name, links a user
# against each, and looks at its NEEDED entry.

file(REMOVE_RECURSE "${BUILD_FOLDER}")

# compile_stub(<file> [<linker option>...])
function(compile_stub file)
    get_filename_component(folder "${BUILD_FOLDER}/${file}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    execute_process(
        COMMAND "${COMPILER}" -shared -fPIC "${SOURCE_FOLDER}/stub.cpp" -o "${BUILD_FOLDER}/${file}"
            ${ARGN}
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# configure_user(<case> <library>): sets status and output.
function(configure_user case library)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${SOURCE_FOLDER}"
            -B "${BUILD_FOLDER}/${case}" -DCMAKE_CXX_COMPILER=${COMPILER}
            -DREPOSITORY=${REPOSITORY} -DGUICORE_CORE_LIBRARY=${library} -DCMAKE_INSTALL_LIBDIR=lib
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    set(status ${result} PARENT_SCOPE)
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect_needed case library)
    set(name libRIVO_ARM_QtLib.so)
    if(ARGN)
        set(name ${ARGN})
    endif()
    configure_user(${case} "${library}")
    if(NOT status EQUAL 0)
        message(SEND_ERROR "${case}: not configured:\n${output}")
        return()
    endif()
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${BUILD_FOLDER}/${case}"
        RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(SEND_ERROR "${case}: not built:\n${output}")
        return()
    endif()
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C
            "${READELF}" -d "${BUILD_FOLDER}/${case}/libuser.so"
        OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
    string(FIND "${dynamic}" "Shared library: [${name}]" place)
    if(place EQUAL -1)
        message(SEND_ERROR "${case}: no NEEDED entry ${name} in\n${dynamic}")
    endif()
    execute_process(COMMAND ${EMULATOR} "${BUILD_FOLDER}/${case}/program" RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(SEND_ERROR "${case}: the program does not run: ${status}")
    endif()

    # Installed under the name that the loader looks for, and found by linkers.
    set(prefix "${BUILD_FOLDER}/${case}/installed")
    file(REMOVE_RECURSE "${prefix}")
    execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_FOLDER}/${case}" --prefix "${prefix}"
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    if(NOT EXISTS "${prefix}/lib/${name}" OR IS_SYMLINK "${prefix}/lib/${name}")
        message(SEND_ERROR "${case}: no installed ${name}")
    endif()
    file(REAL_PATH "${prefix}/lib/libRIVO_ARM_QtLib.so" found)
    if(NOT found STREQUAL "${prefix}/lib/${name}")
        message(SEND_ERROR "${case}: linkers find ${found}")
    endif()
endfunction()

function(expect_refusal case library reason)
    configure_user(${case} "${library}")
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    if(status EQUAL 0 OR NOT output MATCHES "GUICORE_CORE_LIBRARY: [^:]*${reason}")
        message(SEND_ERROR "${case}: expected the reason \"${reason}\" in\n${output}")
    endif()
endfunction()

compile_stub(plain/libRIVO_ARM_QtLib.so -Wl,-soname,libRIVO_ARM_QtLib.so)
expect_needed(right_soname "${BUILD_FOLDER}/plain/libRIVO_ARM_QtLib.so")

compile_stub(bare/libRIVO_ARM_QtLib.so)
expect_needed(no_soname "${BUILD_FOLDER}/bare/libRIVO_ARM_QtLib.so")

compile_stub(renamed/core-2.1.so.7)
expect_needed(no_soname_and_another_name "${BUILD_FOLDER}/renamed/core-2.1.so.7")

compile_stub(renamed/vendor.so -Wl,-soname,libRIVO_ARM_QtLib.so)
expect_needed(right_soname_and_another_name "${BUILD_FOLDER}/renamed/vendor.so")

# The same build folder, another library.
expect_needed(no_soname "${BUILD_FOLDER}/plain/libRIVO_ARM_QtLib.so")

compile_stub(versioned/libRIVO_ARM_QtLib.so.1.2 -Wl,-soname,libRIVO_ARM_QtLib.so.1)
expect_needed(version_in_the_soname "${BUILD_FOLDER}/versioned/libRIVO_ARM_QtLib.so.1.2"
    libRIVO_ARM_QtLib.so.1)
file(CREATE_LINK libRIVO_ARM_QtLib.so.1.2 "${BUILD_FOLDER}/versioned/libRIVO_ARM_QtLib.so" SYMBOLIC)
expect_needed(link_to_a_version "${BUILD_FOLDER}/versioned/libRIVO_ARM_QtLib.so"
    libRIVO_ARM_QtLib.so.1)

foreach(name IN ITEMS libOther.so libRIVO_ARM_QtLib.so.beta libRIVO_ARM_QtLib-so.1)
    compile_stub(${name}/libRIVO_ARM_QtLib.so -Wl,-soname,${name})
    expect_refusal(other_soname "${BUILD_FOLDER}/${name}/libRIVO_ARM_QtLib.so"
        "has the SONAME ${name}; it must be libRIVO_ARM_QtLib.so, with or without a version, or absent")
endforeach()
expect_refusal(missing "${BUILD_FOLDER}/nowhere.so" "there is no file")
expect_refusal(folder "${BUILD_FOLDER}/plain" "there is no file")
expect_refusal(no_library "${SOURCE_FOLDER}/stub.cpp" "is not a shared library")
