# Writes a tiny backup of each index kind (or of those in KINDS) and runs a
# benchmark (BENCH) on it once: the benchmark must keep working, whatever its
# figures, and print EXPECT.
if(NOT KINDS)
  set(KINDS mbdb db)
endif()
foreach(kind ${KINDS})
  set(folder ${WORK}/${kind})
  execute_process(COMMAND ${MAKE_BACKUP} ${folder} ${kind} 0.01 RESULT_VARIABLE made)
  if(NOT made EQUAL 0)
    message(FATAL_ERROR "yh_bench_backup ${kind} failed")
  endif()
  execute_process(COMMAND ${BENCH} ${folder} 1 RESULT_VARIABLE ran OUTPUT_VARIABLE report)
  if(NOT ran EQUAL 0 OR NOT report MATCHES "${EXPECT}")
    message(FATAL_ERROR "${BENCH} ${kind} failed:\n${report}")
  endif()
endforeach()
file(REMOVE_RECURSE ${WORK})
