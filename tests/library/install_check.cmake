# Installs the build and takes it back; installs it again, moves it elsewhere, and looks at what is
# there. consumers_check.cmake then builds against it.
# cmake -DBUILD_DIR=... -DWORK_DIR=... -DREADELF=... -DEMULATOR=... -DVERSION=... -P this
include("${CMAKE_CURRENT_LIST_DIR}/run_or_fail.cmake")
file(REMOVE_RECURSE "${WORK_DIR}")
unset(ENV{DESTDIR})

function(expect_files root)
  foreach(name IN LISTS ARGN)
    if(NOT EXISTS "${root}/${name}")
      message(SEND_ERROR "not installed: ${name}")
    endif()
  endforeach()
endfunction()

function(expect_link link target)
  file(READ_SYMLINK "${link}" found)
  if(NOT found STREQUAL target)
    message(SEND_ERROR "${link} leads to ${found}, not to ${target}")
  endif()
endfunction()

function(expect_run_path file run_path)
  run("${READELF}" --wide --dynamic "${file}")
  string(REGEX MATCHALL "\\((RUNPATH|RPATH)\\)[^\n]*" lines "${run_output}")
  if(NOT lines MATCHES "^\\(RUNPATH\\)[^\n;]*: \\[([^];]*)\\]$" OR NOT CMAKE_MATCH_1 STREQUAL run_path)
    message(SEND_ERROR "the run path of ${file} is to be ${run_path}, and is: ${lines}")
  endif()
endfunction()

# The agent's own place is the default. One folder was there before; it stays, the others go. DESTDIR is
# named from the folder in which the installation is started, and is not set any more afterwards.
set(stage "${WORK_DIR}/stage")
file(MAKE_DIRECTORY "${stage}/opt/Quenty/pelu/share")
foreach(time IN ITEMS first second)
  run("${CMAKE_COMMAND}" -E chdir "${WORK_DIR}"
    "${CMAKE_COMMAND}" -E env DESTDIR=stage "${CMAKE_COMMAND}" --install "${BUILD_DIR}")
  expect_files("${stage}/opt/Quenty/pelu" lib/libzebcomn.so.4 include/zebcomn/zebcomn.h)
endforeach()
run("${CMAKE_COMMAND}" --build "${BUILD_DIR}" --target uninstall)
file(GLOB_RECURSE left LIST_DIRECTORIES true RELATIVE "${stage}" "${stage}/*")
list(SORT left)
if(NOT left STREQUAL "opt;opt/Quenty;opt/Quenty/pelu;opt/Quenty/pelu/share")
  message(SEND_ERROR "what is left after the uninstallation: ${left}")
endif()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/first")
set(prefix "${WORK_DIR}/moved/away")
file(MAKE_DIRECTORY "${WORK_DIR}/moved")
file(RENAME "${WORK_DIR}/first" "${prefix}")

set(library "libzebcomn.so.${VERSION}")
expect_files("${prefix}" "lib/${library}" lib/pkgconfig/libzebcomn.pc
  lib/cmake/zebcomn/zebcomnConfig.cmake lib/cmake/zebcomn/zebcomnConfigVersion.cmake)
expect_link("${prefix}/lib/libzebcomn.so" libzebcomn.so.4)
expect_link("${prefix}/lib/libzebcomn.so.4" "${library}")
expect_run_path("${prefix}/lib/${library}" "/opt/Quenty/pelu/lib")
file(GLOB_RECURSE internal "${prefix}/*_internal.h")
if(internal)
  message(SEND_ERROR "internal headers were installed: ${internal}")
endif()
file(GLOB_RECURSE texts "${prefix}/*.pc" "${prefix}/*.cmake")
foreach(text IN LISTS texts)
  file(STRINGS "${text}" lines REGEX "${WORK_DIR}|${BUILD_DIR}")
  if(lines)
    message(SEND_ERROR "${text} names a folder of the build: ${lines}")
  endif()
endforeach()

# gdb looks for it by where the library was installed, before the move.
expect_files("${prefix}" "share/gdb/auto-load${WORK_DIR}/first/lib/${library}-gdb.py")
if(NOT WITH_ZEBINFO)
  return()
endif()
expect_files("${prefix}" bin/zebinfo share/man/man1/zebinfo.1
  share/bash-completion/completions/zebinfo share/zsh/site-functions/_zebinfo
  share/fish/vendor_completions.d/zebinfo.fish share/zebinfo/zebinfo.schema.json)
expect_run_path("${prefix}/bin/zebinfo" "$ORIGIN/../lib")
run_and_expect("${VERSION}" ${EMULATOR} "${prefix}/bin/zebinfo" --version)
