# What the scripts of this folder share.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

# run(<argument>...): runs pvfilter; sets `status`, `out` and `err`.
macro(run)
  execute_process(COMMAND ${PVFILTER} ${ARGN} WORKING_DIRECTORY ${WORK}
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
endmacro()

# expect(<what> <condition>...): ends the test unless the condition holds.
macro(expect what)
  if(${ARGN})
  else()
    message(FATAL_ERROR "${what}\nstatus: ${status}\nstandard output:\n${out}\nstandard error:\n${err}")
  endif()
endmacro()

# field(<variable> <json path>...): one value of the JSON in `out`.
macro(field variable)
  string(JSON ${variable} GET "${out}" ${ARGN})
endmacro()
