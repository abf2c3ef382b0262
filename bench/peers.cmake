# The libraries that a user might pick instead. Each one that this machine has becomes a target
# peer_NAME; the others are left out of the tables.

find_package(PkgConfig)

# peer_of_pkg_config(PEER MODULE...)
function(peer_of_pkg_config peer)
  if(NOT PkgConfig_FOUND)
    return()
  endif()
  pkg_check_modules(bench_${peer} QUIET IMPORTED_TARGET ${ARGN})
  if(bench_${peer}_FOUND)
    add_library(peer_${peer} INTERFACE)
    target_link_libraries(peer_${peer} INTERFACE PkgConfig::bench_${peer})
  endif()
endfunction()

# peer_of_package(PEER PACKAGE TARGETS... COMPONENTS ...)
function(peer_of_package peer package)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "COMPONENTS")
  find_package(${package} QUIET COMPONENTS ${arg_COMPONENTS})
  if(${package}_FOUND)
    add_library(peer_${peer} INTERFACE)
    target_link_libraries(peer_${peer} INTERFACE ${arg_UNPARSED_ARGUMENTS})
  endif()
endfunction()

peer_of_pkg_config(winpr winpr2)
peer_of_pkg_config(glib glib-2.0 gthread-2.0 gmodule-2.0 gio-2.0)
peer_of_pkg_config(apr apr-1)
peer_of_pkg_config(libuv libuv)
peer_of_package(poco Poco Poco::Foundation Poco::Net COMPONENTS Foundation Net)
peer_of_package(boost Boost Boost::thread Boost::chrono Boost::filesystem
  COMPONENTS thread chrono filesystem)
peer_of_package(abseil absl absl::synchronization absl::time absl::strings)

# The C++ standard library is always there.
add_library(peer_std INTERFACE)
