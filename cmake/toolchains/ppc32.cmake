# 32-bit big-endian PowerPC with glibc, the reference target; runs under user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ppc)
set(ZEBCOMN_TRIPLET powerpc-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-ppc-static -L /usr/powerpc-linux-gnu)
include("${CMAKE_CURRENT_LIST_DIR}/cross.cmake")
