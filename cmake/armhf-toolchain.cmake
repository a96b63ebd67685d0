# Cross build for the appliance: 32-bit ARM, hard float (armv7), with Debian's
# cross compiler and a sysroot of Debian's armhf packages
# (cmake/make-armhf-sysroot.sh). Tests run under qemu-user from that sysroot.
#   cmake -S . -B build-armhf -DCMAKE_TOOLCHAIN_FILE=cmake/armhf-toolchain.cmake \
#         [-DMARL_SYSROOT=DIR]    (default: build-armhf/sysroot of the source tree)
#         [-DMARL_CROSS_BIN=DIR]  (the compilers' folder; default: build-armhf/toolchain/usr/bin
#                                  when cmake/make-armhf-toolchain.sh made it, else PATH)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(MARL_TARGET_TRIPLE arm-linux-gnueabihf)

set(MARL_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build-armhf/sysroot" CACHE PATH "armhf sysroot")
get_filename_component(MARL_SYSROOT "${MARL_SYSROOT}" ABSOLUTE)
# Seen again by try_compile's own projects.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MARL_SYSROOT)

if(NOT MARL_CROSS_BIN AND EXISTS "${CMAKE_CURRENT_LIST_DIR}/../build-armhf/toolchain/usr/bin/${MARL_TARGET_TRIPLE}-g++")
  set(MARL_CROSS_BIN "${CMAKE_CURRENT_LIST_DIR}/../build-armhf/toolchain/usr/bin")
endif()
set(MARL_CROSS_BIN "${MARL_CROSS_BIN}" CACHE PATH "Folder of the cross compilers (empty: PATH)")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MARL_CROSS_BIN)
if(MARL_CROSS_BIN)
  get_filename_component(MARL_CROSS_BIN "${MARL_CROSS_BIN}" ABSOLUTE)
  set(CMAKE_C_COMPILER ${MARL_CROSS_BIN}/${MARL_TARGET_TRIPLE}-gcc)
  set(CMAKE_CXX_COMPILER ${MARL_CROSS_BIN}/${MARL_TARGET_TRIPLE}-g++)
else()
  set(CMAKE_C_COMPILER ${MARL_TARGET_TRIPLE}-gcc)
  set(CMAKE_CXX_COMPILER ${MARL_TARGET_TRIPLE}-g++)
endif()
set(CMAKE_SYSROOT ${MARL_SYSROOT})
set(CMAKE_LIBRARY_ARCHITECTURE ${MARL_TARGET_TRIPLE})

# Debian's compiler targets armv7-a, hard float, by default. The notes on a
# parameter-passing change of GCC 7.1 concern code built with older compilers.
set(CMAKE_CXX_FLAGS_INIT "-Wno-psabi")
# The armhf libraries' dependencies are found in the sysroot when linking.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-Wl,-rpath-link,${MARL_SYSROOT}/usr/lib/${MARL_TARGET_TRIPLE} -Wl,-rpath-link,${MARL_SYSROOT}/lib/${MARL_TARGET_TRIPLE}")
endforeach()

set(CMAKE_FIND_ROOT_PATH ${MARL_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config reads the sysroot's .pc files and prefixes their paths with it.
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_LIBDIR} "${MARL_SYSROOT}/usr/lib/${MARL_TARGET_TRIPLE}/pkgconfig:${MARL_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${MARL_SYSROOT}")

# Target programs run under user-mode emulation, with the sysroot's loader and
# libraries. qemu-user finds an absolute path in the sysroot when the program
# opens it, but not when the program only asks after it (statx): espeak-ng,
# which tests for its data files before opening them, is told where they are.
# The sysroot's /etc/ld.so.preload (scripts/test-appliance-target.sh) mends
# readdir() under emulation (cmake/emulation/readdir32.c).
find_program(MARL_QEMU_ARM qemu-arm-static qemu-arm)
if(MARL_QEMU_ARM)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${MARL_QEMU_ARM};-L;${MARL_SYSROOT}
    -E;ESPEAK_DATA_PATH=${MARL_SYSROOT}/usr/lib/${MARL_TARGET_TRIPLE})
endif()
