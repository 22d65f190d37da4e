# What `cmake --install` puts under the prefix, in the three components that
# are also the Debian packages: lib (the shared object), dev (the header, the
# link for the linker, the pkg-config file and the CMake package) and yh (the
# command and its manual page, installed by tools/yh).
include(CMakePackageConfigHelpers)

install(TARGETS YH EXPORT libYHTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT lib NAMELINK_COMPONENT dev
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT lib
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
install(FILES ${PROJECT_SOURCE_DIR}/include/libYH.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)

# find_package(libYH CONFIG) gives libYH::libYH.
set(YH_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/libYH)
install(EXPORT libYHTargets NAMESPACE libYH:: DESTINATION ${YH_CMAKE_DIR} COMPONENT dev)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/libYHConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/libYHConfig.cmake INSTALL_DESTINATION ${YH_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/libYHConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/libYHConfig.cmake ${PROJECT_BINARY_DIR}/libYHConfigVersion.cmake
        DESTINATION ${YH_CMAKE_DIR} COMPONENT dev)

# The pkg-config file names the prefix, which is known only at install time.
install(CODE "
  set(YH_PC_TEMPLATE \"${PROJECT_SOURCE_DIR}/cmake/libyh.pc.in\")
  set(PROJECT_VERSION \"${PROJECT_VERSION}\")
  set(CMAKE_INSTALL_LIBDIR \"${CMAKE_INSTALL_LIBDIR}\")
  set(CMAKE_INSTALL_INCLUDEDIR \"${CMAKE_INSTALL_INCLUDEDIR}\")
  include(\"${PROJECT_SOURCE_DIR}/cmake/WritePkgConfig.cmake\")"
  COMPONENT dev)
