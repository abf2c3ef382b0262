# Builds programs outside the tree against what install_check.cmake has installed, and runs them.
# cmake -DKIND=pkg-config|cmake|examples -DPREFIX=... -DWORK_DIR=... -DSOURCE_DIR=... -DVERSION=...
#   -DTOOLCHAIN=... -DEMULATOR=... -DC_COMPILER=... -DCXX_COMPILER=... -DPKG_CONFIG=... -P this
include("${CMAKE_CURRENT_LIST_DIR}/run_or_fail.cmake")
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(library_dir "${PREFIX}/lib")

# The project in `source`, configured as a user would and built in `build`.
function(build_project source build)
  set(compilers "-DCMAKE_C_COMPILER=${C_COMPILER}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
  if(TOOLCHAIN)
    set(compilers "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" "-Dzebcomn_DIR=${library_dir}/cmake/zebcomn")
  endif()
  run("${CMAKE_COMMAND}" -G Ninja -S "${source}" -B "${build}" "-DCMAKE_PREFIX_PATH=${PREFIX}"
    "-DVERSION_WANTED=${VERSION}" ${compilers} -Wno-dev --no-warn-unused-cli)
  run("${CMAKE_COMMAND}" --build "${build}")
endfunction()

if(KIND STREQUAL "pkg-config")
  # Nothing but the installed file answers, so that no other copy is found.
  set(ENV{PKG_CONFIG_LIBDIR} "${library_dir}/pkgconfig")
  unset(ENV{PKG_CONFIG_PATH})
  run("${PKG_CONFIG}" --modversion libzebcomn)
  string(STRIP "${run_output}" found)
  if(NOT found STREQUAL VERSION)
    message(FATAL_ERROR "libzebcomn.pc says ${found}, not ${VERSION}")
  endif()
  run("${PKG_CONFIG}" --cflags --libs libzebcomn)
  separate_arguments(flags UNIX_COMMAND "${run_output}")
  run("${C_COMPILER}" -std=c11 -Wall -Wextra -Wpedantic -Wconversion -Werror
    "${SOURCE_DIR}/c11.c" -o "${WORK_DIR}/c11" ${flags} "-Wl,-rpath,${library_dir}")
  run_and_expect("C11 is served" ${EMULATOR} "${WORK_DIR}/c11")
elseif(KIND STREQUAL "cmake")
  build_project("${SOURCE_DIR}" "${WORK_DIR}/build")
  run_and_expect("C++17 is served" ${EMULATOR} "${WORK_DIR}/build/cpp17")
  run_and_expect("C++20 is served" ${EMULATOR} "${WORK_DIR}/build/cpp20")
  run_and_expect("the library was loaded and unloaded"
    ${EMULATOR} "${WORK_DIR}/build/loader" "${library_dir}/libzebcomn.so.4")
elseif(KIND STREQUAL "examples")
  build_project("${PREFIX}/share/doc/zebcomn/examples" "${WORK_DIR}/build")
  # installed_examples_test runs the agent with its plug-in.
  file(GLOB programs "${WORK_DIR}/build/reference/reference_*")
  list(LENGTH programs count)
  if(count LESS 10)
    message(FATAL_ERROR "the examples of the reference are missing: ${programs}")
  endif()
  foreach(program IN LISTS programs)
    run(${EMULATOR} "${program}")
  endforeach()
else()
  message(FATAL_ERROR "there is no check of kind \"${KIND}\"")
endif()
