# Installs the build into a folder of its own, then builds and runs a program against that.
# cmake -DBUILD_DIR=... -DWORK_DIR=... -DSOURCE_DIR=... -DTOOLCHAIN=... -DEMULATOR=... -P this
file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE text ERROR_VARIABLE text)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\nended with ${status}:\n${text}")
  endif()
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")

file(GLOB_RECURSE internal "${prefix}/*_internal.h")
if(internal)
  message(FATAL_ERROR "internal headers were installed: ${internal}")
endif()
foreach(name IN ITEMS libzebcomn.so libzebcomn.so.4 libzebcomn.so.4.6.0)
  if(NOT EXISTS "${prefix}/lib/${name}")
    message(FATAL_ERROR "not installed: lib/${name}")
  endif()
endforeach()

set(toolchain "")
if(TOOLCHAIN)
  set(toolchain "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}")
endif()
run("${CMAKE_COMMAND}" -G Ninja -S "${SOURCE_DIR}" -B "${WORK_DIR}/build"
  "-Dzebcomn_DIR=${prefix}/lib/cmake/zebcomn" ${toolchain})
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
run(${EMULATOR} "${WORK_DIR}/build/consumer")
