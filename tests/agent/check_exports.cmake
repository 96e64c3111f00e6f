# The library must define the five exports and no other symbol that a program could see.
execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" names "${listing}")
list(TRANSFORM names STRIP)
list(SORT names)
set(expected ExecuteVBScript FilterCommand FilterExecute FilterInit FilterUnInit)
if(NOT names STREQUAL expected)
  message(FATAL_ERROR "exported: ${names}")
endif()
