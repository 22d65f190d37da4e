# Runs at install time: writes libyh.pc for the prefix being installed into.
set(YH_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(YH_PC_FILE "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig/libyh.pc")
message(STATUS "Installing: ${YH_PC_FILE}")
configure_file("${YH_PC_TEMPLATE}" "${YH_PC_FILE}" @ONLY)
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${YH_PC_FILE}")
