# For cmake -P scripts of the tests: runs one step, stopping the script with
# what failed and its exit status.
function(run_step what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${what} failed (${result})")
  endif()
endfunction()
