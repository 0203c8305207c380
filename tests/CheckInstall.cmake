# Installs the build BUILD into a folder of its own below WORK, then configures, builds and runs the example
# hosts in EXAMPLES against what was installed, on the file DATA.

file(REMOVE_RECURSE "${WORK}")
macro(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\ngave ${status}:\n${output}")
  endif()
endmacro()

run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/installed")
run("${CMAKE_COMMAND}" -S "${EXAMPLES}" -B "${WORK}/build" -G Ninja "-DCMAKE_PREFIX_PATH=${WORK}/installed"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" -DCMAKE_BUILD_TYPE=Debug)
run("${CMAKE_COMMAND}" --build "${WORK}/build")
run("${WORK}/build/raw_host" "${DATA}" T)
if(NOT output MATCHES "2\\.48 s: -0\\.5")
  message(FATAL_ERROR "raw_host printed\n${output}")
endif()
