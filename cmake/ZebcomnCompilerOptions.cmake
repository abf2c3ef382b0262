# One set of compiler options for everything that the project compiles itself. Targets take them
# by linking zebcomn_options.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)

add_library(zebcomn_options INTERFACE)
target_compile_definitions(zebcomn_options INTERFACE _GNU_SOURCE)
# A file over 2 GiB, or an inode number over 32 bits, must not be an error on a 32-bit target.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_definitions(zebcomn_options INTERFACE _FILE_OFFSET_BITS=64)
endif()

target_compile_options(zebcomn_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wformat=2 -Wundef -Wcast-align
  -pthread
  # The same bytes come out of every folder.
  "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" "-ffile-prefix-map=${PROJECT_BINARY_DIR}/=build/")
target_link_options(zebcomn_options INTERFACE -pthread)
if(ZEBCOMN_WERROR)
  target_compile_options(zebcomn_options INTERFACE -Werror)
else()
  target_compile_options(zebcomn_options INTERFACE -Werror=format-security)
endif()

# Debian's hardening=+all, with the formats above, the checked functions below, and the programs
# that check_pie_supported() makes position-independent.
target_compile_options(zebcomn_options INTERFACE -fstack-protector-strong)
target_link_options(zebcomn_options INTERFACE -Wl,-z,relro -Wl,-z,now)
if(ZEBCOMN_SANITIZE)
  target_compile_options(zebcomn_options INTERFACE
    "-fsanitize=${ZEBCOMN_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zebcomn_options INTERFACE "-fsanitize=${ZEBCOMN_SANITIZE}")
elseif(CMAKE_BUILD_TYPE MATCHES "Rel")
  target_compile_definitions(zebcomn_options INTERFACE _FORTIFY_SOURCE=2)
endif()
