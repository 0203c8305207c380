# Fails when senmark/Host.h includes, however indirectly, a header of Boost.
execute_process(COMMAND ${COMPILER} -std=c++17 -I ${INCLUDE} -M -x c++ ${INCLUDE}/senmark/Host.h
                OUTPUT_VARIABLE headers RESULT_VARIABLE failure)
if(failure)
  message(FATAL_ERROR "the headers cannot be listed")
endif()
string(FIND "${headers}" "senmark/host/File.h" own)
string(FIND "${headers}" "/boost/" boost)
if(own EQUAL -1 OR NOT boost EQUAL -1)
  message(FATAL_ERROR "${headers}")
endif()
