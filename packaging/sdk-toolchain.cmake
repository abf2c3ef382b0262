# For the SDK of the system that the agent ships on: source the SDK's environment script, which sets
# CC, CXX and SDKTARGETSYSROOT, then give this file as CMAKE_TOOLCHAIN_FILE.
foreach(name IN ITEMS CC CXX SDKTARGETSYSROOT)
  if("$ENV{${name}}" STREQUAL "")
    message(FATAL_ERROR "${name} is not set: source the SDK's environment script first")
  endif()
endforeach()

set(CMAKE_SYSTEM_NAME Linux)
# "CC" holds the compiler and its options in one text.
foreach(language IN ITEMS C CXX)
  if(language STREQUAL "C")
    separate_arguments(words UNIX_COMMAND "$ENV{CC}")
  else()
    separate_arguments(words UNIX_COMMAND "$ENV{CXX}")
  endif()
  list(POP_FRONT words CMAKE_${language}_COMPILER)
  list(JOIN words " " CMAKE_${language}_FLAGS_INIT)
endforeach()
set(CMAKE_SYSROOT "$ENV{SDKTARGETSYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
