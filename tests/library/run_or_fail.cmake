# run(COMMAND...): runs it; its output is the caller's `run_output`, and shown only when it fails.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE text ERROR_VARIABLE text)
  if(NOT status EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nended with ${status}:\n${text}")
  endif()
  set(run_output "${text}" PARENT_SCOPE)
endfunction()

# run_and_expect(TEXT COMMAND...): the output must hold that text as well.
function(run_and_expect expected)
  run(${ARGN})
  string(FIND "${run_output}" "${expected}" place)
  if(place EQUAL -1)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\nis to say \"${expected}\", and said:\n${run_output}")
  endif()
endfunction()
