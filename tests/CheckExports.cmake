# Fails unless the shared library LIBRARY exports exactly the five functions of the border.

execute_process(COMMAND "${NM}" -D --defined-only --format=posix "${LIBRARY}" OUTPUT_VARIABLE table
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" table "${table}")
string(REPLACE "\n" ";" table "${table}")
list(TRANSFORM table REPLACE " .*" "" OUTPUT_VARIABLE exported)
list(SORT exported)
set(wanted CreateSenmark_1 DestroySenmark_1 GetLastException_1 GetLocalizedErrorMsg_1 GetSupportedFormats_1)
if(NOT exported STREQUAL wanted)
  list(JOIN exported "\n  " exported)
  message(FATAL_ERROR "${LIBRARY} exports\n  ${exported}")
endif()
message(STATUS "exports ${wanted}")
