# Runs at the start of an installation and notes where it goes and the folders that it is about to
# make, so that "uninstall" finds it again, and takes away those folders and none that was there before.
# To learn which they are, the installation is rehearsed in a scratch folder.
if(DEFINED ENV{ZEBCOMN_INSTALL_REHEARSAL})
  return()
endif()

# DESTDIR may be named from the folder in which the installation was started.
set(stage "$ENV{DESTDIR}")
if(stage)
  file(REAL_PATH "${stage}" stage)
endif()
file(WRITE "${zebcomn_build_dir}/install_stage.txt" "${stage}")

set(rehearsal "${zebcomn_build_dir}/install_rehearsal")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -E env ZEBCOMN_INSTALL_REHEARSAL=1 "DESTDIR=${rehearsal}"
    "${CMAKE_COMMAND}" --install "${zebcomn_build_dir}" --prefix "${CMAKE_INSTALL_PREFIX}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE folders LIST_DIRECTORIES true RELATIVE "${rehearsal}" "${rehearsal}/*")
list(SORT folders)
set(new_folders "")
foreach(folder IN LISTS folders)
  if(IS_DIRECTORY "${rehearsal}/${folder}" AND NOT EXISTS "${stage}/${folder}")
    list(APPEND new_folders "${stage}/${folder}")
  endif()
endforeach()
file(REMOVE_RECURSE "${rehearsal}")

# A second installation finds the folders of the first.
set(record "${zebcomn_build_dir}/install_folders.txt")
if(EXISTS "${record}")
  file(STRINGS "${record}" known_folders)
  list(APPEND new_folders ${known_folders})
  list(REMOVE_DUPLICATES new_folders)
endif()
list(JOIN new_folders "\n" text)
file(WRITE "${record}" "${text}\n")
