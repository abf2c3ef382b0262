# 32-bit little-endian; an x86-64 kernel runs it natively through the target's own loader.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(ZEBCOMN_TRIPLET i686-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR
  /usr/i686-linux-gnu/lib/ld-linux.so.2 --library-path /usr/i686-linux-gnu/lib)
include("${CMAKE_CURRENT_LIST_DIR}/cross.cmake")
