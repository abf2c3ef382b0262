# Runs when cpack has put the files of all packages in place and packs none yet: Debian's man pages are
# compressed.
file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/*.[1-9]")
foreach(page IN LISTS pages)
  execute_process(COMMAND gzip -9n "${page}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
