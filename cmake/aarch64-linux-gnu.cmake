# Builds for 64-bit ARM Linux with Debian's cross compiler and the arm64 libraries installed next to
# the machine's own; tests run through qemu's user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
# The loader and the C library are those of the arm64 packages, in their usual places. With the cross
# compiler's copies first (-L) the two may differ in version, and threads hang.
# Named by its whole path, since tests also run the tool where PATH leads nowhere.
find_program(CAMCFG_QEMU qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CAMCFG_QEMU})
