# 64-bit little-endian Arm; runs under user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(ZEBCOMN_TRIPLET aarch64-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L /usr/aarch64-linux-gnu)
include("${CMAKE_CURRENT_LIST_DIR}/cross.cmake")
