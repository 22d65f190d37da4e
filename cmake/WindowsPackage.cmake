# The Windows zip (cpack -G ZIP): yh.exe, libYH.dll and its import library,
# the header, and every DLL they need, in bin/, include/ and lib/.
install(FILES ${YH_WINDOWS_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT lib)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/README-Windows.txt DESTINATION . COMPONENT yh)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME libYH)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_SYSTEM_NAME windows-x86_64)
set(CPACK_STRIP_FILES ON)
set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
include(CPack)
