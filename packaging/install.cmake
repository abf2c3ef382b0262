# What every install() of the tree shares, and the target "uninstall". Included before the folders
# that install, so that the rehearsal runs before their files are put in place.

# The components are the Debian packages; a file without one is for those who build on the library.
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME libzebcomn-dev)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# Only an installation of everything can be taken back, so that packing runs none of this.
install(CODE "set(zebcomn_build_dir \"${PROJECT_BINARY_DIR}\")" COMPONENT uninstall)
install(SCRIPT packaging/note_new_folders.cmake COMPONENT uninstall)
add_custom_target(uninstall
  COMMAND "${CMAKE_COMMAND}" "-DBUILD_DIR=${PROJECT_BINARY_DIR}"
    -P "${PROJECT_SOURCE_DIR}/packaging/uninstall.cmake"
  VERBATIM)
