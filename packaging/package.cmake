# `cpack` packs Debian packages out of a build folder that scripts/package has configured: the one with
# the API reference where that is built, the other three elsewhere.
if(NOT ZEBCOMN_DEBIAN)
  return()
endif()
set(ZEBCOMN_DEBIAN_REVISION 1)
set(debian_dir "${PROJECT_SOURCE_DIR}/packaging/debian")
if(ZEBCOMN_BUILD_DOCS)
  set(packages libzebcomn-doc)
else()
  set(packages libzebcomn4 libzebcomn-dev zebinfo)
endif()

# What every package says of itself.
foreach(name IN ITEMS "changelog.Debian:packaging/debian/changelog" "changelog:CHANGELOG.md")
  string(REPLACE ":" ";" name "${name}")
  list(GET name 0 packed)
  list(GET name 1 source)
  execute_process(COMMAND gzip -9nc "${PROJECT_SOURCE_DIR}/${source}"
    OUTPUT_FILE "${PROJECT_BINARY_DIR}/${packed}.gz" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(package IN LISTS packages)
  install(FILES "${debian_dir}/copyright" "${PROJECT_BINARY_DIR}/changelog.Debian.gz"
    "${PROJECT_BINARY_DIR}/changelog.gz"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${package})
endforeach()
install(FILES "${debian_dir}/libzebcomn4.lintian-overrides" RENAME libzebcomn4
  DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT libzebcomn4)
install(FILES "${debian_dir}/libzebcomn-doc.doc-base" RENAME libzebcomn-doc
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc-base" COMPONENT libzebcomn-doc)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME libzebcomn)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_CONTACT "libzebcomn maintainers <libzebcomn@quenty.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${packages})
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/compress_man_pages.cmake")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${ZEBCOMN_DEBIAN_REVISION}")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE "${ZEBCOMN_DEBIAN_ARCHITECTURE}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SOURCE libzebcomn)
set(exact_version "${PROJECT_VERSION}-${ZEBCOMN_DEBIAN_REVISION}")

# dpkg-shlibdeps names what a native build needs. It asks the packages of this machine, and for a
# cross build those are the compiler's own, which no target has: the versions that the files themselves
# ask for are named instead. scripts/check-packages compares the two.
if(CMAKE_CROSSCOMPILING)
  set(runtime "libc6 (>= 2.34), libgcc-s1 (>= 4.2), libstdc++6 (>= 11)")
else()
  set(CPACK_DEBIAN_LIBZEBCOMN4_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_ZEBINFO_PACKAGE_SHLIBDEPS ON)
  # zebinfo's need of the library is named below; it is not installed here.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/zebcomn")
endif()

set(CPACK_COMPONENT_LIBZEBCOMN4_DESCRIPTION "common-utility library of a management agent
Windows-style handles, events, waits, threads, files and dynamic libraries
on POSIX, lists and a shared/exclusive lock, the catalogue of system
properties, network addresses, and text, time and file helpers, for the
components of a management agent.")
set(CPACK_DEBIAN_LIBZEBCOMN4_PACKAGE_NAME libzebcomn4)
set(CPACK_DEBIAN_LIBZEBCOMN4_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBZEBCOMN4_PACKAGE_DEPENDS "${runtime}")
# Written by scripts/package from what was built and abi/libzebcomn4.symbols.
set(CPACK_DEBIAN_LIBZEBCOMN4_PACKAGE_CONTROL_EXTRA
  "${PROJECT_BINARY_DIR}/control/symbols;${PROJECT_BINARY_DIR}/control/shlibs;${PROJECT_BINARY_DIR}/control/triggers")

set(CPACK_COMPONENT_LIBZEBCOMN-DEV_DESCRIPTION "headers of a management agent's common-utility library
What it takes to build a component of the agent on libzebcomn: the headers
in C and C++, the packages for CMake and pkg-config, and examples.")
set(CPACK_DEBIAN_LIBZEBCOMN-DEV_PACKAGE_NAME libzebcomn-dev)
set(CPACK_DEBIAN_LIBZEBCOMN-DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBZEBCOMN-DEV_PACKAGE_DEPENDS "libzebcomn4 (= ${exact_version})")
set(CPACK_DEBIAN_LIBZEBCOMN-DEV_PACKAGE_SUGGESTS libzebcomn-doc)

set(CPACK_COMPONENT_LIBZEBCOMN-DOC_DESCRIPTION "API reference of a management agent's common-utility library
What each call of libzebcomn promises: its arguments, results, errors,
ownership and thread rule, with an example for each family, as HTML and as
man pages.")
set(CPACK_DEBIAN_LIBZEBCOMN-DOC_PACKAGE_NAME libzebcomn-doc)
set(CPACK_DEBIAN_LIBZEBCOMN-DOC_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_LIBZEBCOMN-DOC_PACKAGE_SUGGESTS libzebcomn-dev)

set(CPACK_COMPONENT_ZEBINFO_DESCRIPTION "shows what a management agent's library knows about this host
Prints the catalogue of system properties, network interfaces and
addresses, clocks and the agent's identity, as text for people and as JSON
for scripts.")
set(CPACK_DEBIAN_ZEBINFO_PACKAGE_NAME zebinfo)
set(CPACK_DEBIAN_ZEBINFO_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_ZEBINFO_PACKAGE_DEPENDS "libzebcomn4 (>= ${PROJECT_VERSION})")
if(runtime)
  string(APPEND CPACK_DEBIAN_ZEBINFO_PACKAGE_DEPENDS ", ${runtime}")
endif()
include(CPack)
