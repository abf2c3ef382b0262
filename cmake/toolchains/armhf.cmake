# 32-bit little-endian Arm; runs under user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(ZEBCOMN_TRIPLET arm-linux-gnueabihf)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L /usr/arm-linux-gnueabihf)
include("${CMAKE_CURRENT_LIST_DIR}/cross.cmake")
