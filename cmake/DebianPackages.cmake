# `cpack -G DEB` makes one Debian package per install component: libyh0 (the
# shared object, named after its SONAME), libyh-dev and yh.
set(YH_PACKAGE_MAINTAINER "libYH developers <libyh@example.org>"
    CACHE STRING "Maintainer named in the Debian packages and their changelog")
set(YH_DEB_LIBRARY libyh${PROJECT_VERSION_MAJOR})

# Each package carries the copyright file and the changelog Debian asks for.
string(TIMESTAMP YH_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${PROJECT_BINARY_DIR}/debian/changelog @ONLY)
add_custom_command(
  OUTPUT ${PROJECT_BINARY_DIR}/debian/changelog.gz
  COMMAND gzip -9 -n -c ${PROJECT_BINARY_DIR}/debian/changelog > ${PROJECT_BINARY_DIR}/debian/changelog.gz
  DEPENDS ${PROJECT_BINARY_DIR}/debian/changelog
  VERBATIM)
add_custom_target(yh_debian_changelog ALL DEPENDS ${PROJECT_BINARY_DIR}/debian/changelog.gz)
foreach(component lib dev yh)
  set(package_of_lib ${YH_DEB_LIBRARY})
  set(package_of_dev libyh-dev)
  set(package_of_yh yh)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package_of_${component}}
          COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_PACKAGE_NAME libyh)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${YH_PACKAGE_MAINTAINER}")
# The pkg-config file is written for CMAKE_INSTALL_PREFIX, which must be /usr
# while packaging, not the staging folder.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL lib dev yh)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE libyh)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# dpkg-shlibdeps names libplist, SQLite, libgcrypt, zlib and the C++ runtime.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# yh's own libYH.so.0 is found in the build; the dependency on its package
# comes from the components.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_DEBIAN_LIB_PACKAGE_NAME ${YH_DEB_LIBRARY})
set(CPACK_DEBIAN_LIB_PACKAGE_SECTION libs)
# Only the library's package holds a shared object: it gets the shlibs file,
# and dpkg runs ldconfig through its trigger.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_LIB_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_COMPONENT_LIB_DESCRIPTION "reads iPhone and iPad backups - shared library
libYH finds the backups that desktop sync software keeps for iPhone, iPad
and iPod touch, reads each backup's index and extracts calls, contacts,
messages and attachments, notes, Safari history, calendar, voice memos and
photos as libplist trees. It never writes into a backup.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libyh-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libplist-dev")
set(CPACK_COMPONENT_DEV_DEPENDS lib)
set(CPACK_COMPONENT_DEV_DESCRIPTION "reads iPhone and iPad backups - development files
libYH finds the backups that desktop sync software keeps for iPhone, iPad
and iPod touch and extracts their content as libplist trees.
.
This package holds the C header, the pkg-config file and the CMake package
needed to build programs that use libYH.")

set(CPACK_DEBIAN_YH_PACKAGE_NAME yh)
set(CPACK_DEBIAN_YH_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_YH_DEPENDS lib)
set(CPACK_COMPONENT_YH_DESCRIPTION "lists, shows and exports iPhone and iPad backups
yh lists the backups that desktop sync software keeps for iPhone, iPad and
iPod touch, shows each kind of content of one of them as JSON, XML, CSV or a
table, and exports it with copies of its photos, attachments and voice memos.")

include(CPack)
