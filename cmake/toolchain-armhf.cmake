# 32-bit ARM with hardware floating point, Debian's armhf, built on another machine. The headers and
# libraries come from the folder that scripts/armhf-sysroot.sh makes; programs run in an emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

if(NOT CMAKE_SYSROOT)
    get_filename_component(CMAKE_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot" ABSOLUTE)
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(QEMU_ARM NAMES qemu-arm qemu-arm-static REQUIRED
    DOC "Emulator of 32-bit ARM programs (Debian: qemu-user)")
set(CMAKE_CROSSCOMPILING_EMULATOR "${QEMU_ARM}" -L "${CMAKE_SYSROOT}")

# Before Qt's packages are found, whose own tools are ARM programs.
set(CMAKE_PROJECT_INCLUDE "${CMAKE_CURRENT_LIST_DIR}/RivoHostTools.cmake")
