# 32-bit ARM Linux, hard float: Debian's cross compiler, and Boost in a folder of its own, because
# the target's packages cannot be installed beside the host's. script/bootstrap armhf fills it.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

get_filename_component(armhf_sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${armhf_sysroot})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Boost is found by the library that needs it, also when a program names only the library.
set(CMAKE_EXE_LINKER_FLAGS_INIT
    "-Wl,-rpath-link,\"${armhf_sysroot}/usr/lib/arm-linux-gnueabihf\"")

# -E sets the variable for the emulated program only: the emulator itself must not see it.
set(CMAKE_CROSSCOMPILING_EMULATOR
    qemu-arm
    -L /usr/arm-linux-gnueabihf
    -E LD_LIBRARY_PATH=${armhf_sysroot}/usr/lib/arm-linux-gnueabihf)
