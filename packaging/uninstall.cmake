# Takes back the last installation from a build folder: its files, and the folders that it made if
# nothing else has come into them. cmake -DBUILD_DIR=... -P this
set(manifest "${BUILD_DIR}/install_manifest.txt")
if(NOT EXISTS "${manifest}")
  message(FATAL_ERROR "Nothing to uninstall: there is no ${manifest}. "
    "It is written by `cmake --install ${BUILD_DIR}`.")
endif()

# Where DESTDIR led when it was installed.
file(READ "${BUILD_DIR}/install_stage.txt" stage)
file(STRINGS "${manifest}" files)
foreach(file IN LISTS files)
  message(STATUS "Uninstalling: ${stage}${file}")
  file(REMOVE "${stage}${file}")
endforeach()

set(record "${BUILD_DIR}/install_folders.txt")
if(EXISTS "${record}")
  file(STRINGS "${record}" folders)
  list(SORT folders ORDER DESCENDING)
  foreach(folder IN LISTS folders)
    file(GLOB entries LIST_DIRECTORIES true "${folder}/*" "${folder}/.*")
    if(IS_DIRECTORY "${folder}" AND NOT entries)
      file(REMOVE_RECURSE "${folder}")
    endif()
  endforeach()
endif()
file(REMOVE "${manifest}" "${record}" "${BUILD_DIR}/install_stage.txt")
