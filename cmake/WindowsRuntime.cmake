# The DLLs a Windows program of this build needs besides libYH.dll, copied
# beside the programs: libplist (hosts share it with the library), libgcrypt
# with libgpg-error, zlib, and the MinGW runtime of programs linked against
# its DLLs.
set(YH_MINGW_GCC_DIR /usr/lib/gcc/${YH_MINGW}/12-posix)
set(YH_WINDOWS_DLLS
  ${YH_WINDOWS_DEPS}/bin/libplist-2.0.dll
  /usr/${YH_MINGW}/bin/libgcrypt-20.dll
  /usr/${YH_MINGW}/bin/libgpg-error-0.dll
  /usr/${YH_MINGW}/lib/zlib1.dll
  /usr/${YH_MINGW}/lib/libwinpthread-1.dll
  ${YH_MINGW_GCC_DIR}/libstdc++-6.dll
  ${YH_MINGW_GCC_DIR}/libgcc_s_seh-1.dll)
file(MAKE_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
foreach(dll ${YH_WINDOWS_DLLS})
  if(NOT EXISTS ${dll})
    message(FATAL_ERROR "${dll} is missing: run scripts/build-windows-deps first")
  endif()
  file(COPY ${dll} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
endforeach()
