# Fails unless the shared library exports exactly the C entry points of the
# public header, listed here once for every system's build.
# Usage: cmake -DLIBRARY=<path> [-DOBJDUMP=<objdump>] -P CheckExports.cmake
# A DLL's exports are read from its export table with OBJDUMP, a shared
# object's from its dynamic symbols with nm; each listed line ends in a name.
if(LIBRARY MATCHES "\\.dll$")
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE listing RESULT_VARIABLE failed)
  string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table[^\n]*\n(([ \t]+\\[[ 0-9]+\\] [^\n]+\n)*)" table "${listing}")
  string(REGEX MATCHALL "\\[[ 0-9]+\\] [A-Za-z_0-9]+" entries "${CMAKE_MATCH_1}")
else()
  execute_process(COMMAND nm -D --defined-only ${LIBRARY} OUTPUT_VARIABLE listing RESULT_VARIABLE failed)
  string(REGEX MATCHALL "[^\n]+" entries "${listing}")
endif()
if(failed)
  message(FATAL_ERROR "listing the exports of ${LIBRARY} failed")
endif()
set(exported "")
foreach(entry ${entries})
  string(REGEX REPLACE "^.* " "" symbol "${entry}")
  list(APPEND exported ${symbol})
endforeach()
list(SORT exported)
set(expected CarveDatabaseFile CreateCurrentDataRecoveryService CreateDataRecoveryService DecryptBackup
    FreeiDeviceBackupService GetBackupDeviceListAt GetContentRecords GetDeletedContentList GetDeletedContentRecords
    SetTemporaryFolder UnlockBackup YHFree)
list(SORT expected)
if(NOT exported STREQUAL expected)
  message(FATAL_ERROR "exported: ${exported}\nexpected: ${expected}")
endif()
