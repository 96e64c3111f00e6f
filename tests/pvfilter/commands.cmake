# What the scripts of this folder share.
cmake_minimum_required(VERSION 3.24)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})

# run(<argument>...): runs pvfilter; sets `status`, `out` and `err`. Through files, because a pipe into Wine stays open.
function(run)
  execute_process(COMMAND ${EMULATOR} ${PVFILTER} ${ARGN} WORKING_DIRECTORY ${WORK}
                  RESULT_VARIABLE result OUTPUT_FILE ${WORK}/out.txt ERROR_FILE ${WORK}/err.txt)
  file(READ ${WORK}/out.txt printed)
  file(READ ${WORK}/err.txt complained)
  string(REPLACE "\r\n" "\n" printed "${printed}")
  string(REPLACE "\r\n" "\n" complained "${complained}")
  set(status "${result}" PARENT_SCOPE)
  set(out "${printed}" PARENT_SCOPE)
  set(err "${complained}" PARENT_SCOPE)
endfunction()

# expect(<what> <condition>...): ends the test unless the condition holds.
function(expect what)
  if(${ARGN})
    return()
  endif()
  message(FATAL_ERROR "${what}\nstatus: ${status}\nstandard output:\n${out}\nstandard error:\n${err}")
endfunction()

# field(<variable> <json path>...): one value of the JSON in `out`.
function(field variable)
  string(JSON value GET "${out}" ${ARGN})
  set(${variable} "${value}" PARENT_SCOPE)
endfunction()
