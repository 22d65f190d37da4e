# Fails unless the shared library exports exactly the expected C entry points.
# Usage: cmake -DLIBRARY=<path> -DEXPECTED="a;b" -P CheckExports.cmake
execute_process(COMMAND nm -D --defined-only ${LIBRARY} OUTPUT_VARIABLE listing RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "nm failed on ${LIBRARY}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(exported "")
foreach(line ${lines})
  string(REGEX REPLACE "^.* " "" symbol "${line}")
  list(APPEND exported ${symbol})
endforeach()
list(SORT exported)
set(expected ${EXPECTED})
list(SORT expected)
if(NOT exported STREQUAL expected)
  message(FATAL_ERROR "exported: ${exported}\nexpected: ${expected}")
endif()

