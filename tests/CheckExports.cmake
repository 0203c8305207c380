# Fails unless the shared library LIBRARY exports exactly the functions in the list WANTED, which is sorted.

execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}" OUTPUT_VARIABLE table
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" table "${table}")
string(REPLACE "\n" ";" table "${table}")
list(TRANSFORM table REPLACE " .*" "" OUTPUT_VARIABLE exported)
list(SORT exported)
if(NOT exported STREQUAL WANTED)
  list(JOIN exported "\n  " exported)
  message(FATAL_ERROR "${LIBRARY} exports\n  ${exported}")
endif()
message(STATUS "exports ${WANTED}")
