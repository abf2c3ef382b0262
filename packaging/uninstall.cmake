# Takes back the last installation from a build folder: its files, and the folders that it made if
# nothing else has come into them. cmake -DBUILD_DIR=... -P this; DESTDIR as when it was installed.
set(manifest "${BUILD_DIR}/install_manifest.txt")
if(NOT EXISTS "${manifest}")
  message(FATAL_ERROR "Nothing to uninstall: there is no ${manifest}. "
    "It is written by `cmake --install ${BUILD_DIR}`.")
endif()

file(STRINGS "${manifest}" files)
foreach(file IN LISTS files)
  message(STATUS "Uninstalling: $ENV{DESTDIR}${file}")
  file(REMOVE "$ENV{DESTDIR}${file}")
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
file(REMOVE "${manifest}" "${record}")
