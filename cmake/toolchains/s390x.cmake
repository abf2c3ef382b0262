# 64-bit big-endian; runs under user-mode emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(ZEBCOMN_TRIPLET s390x-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x-static -L /usr/s390x-linux-gnu)
include("${CMAKE_CURRENT_LIST_DIR}/cross.cmake")
