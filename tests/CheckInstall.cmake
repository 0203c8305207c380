# Installs the build BUILD into a folder of its own below WORK, and holds what was installed to its promises: STEP is
# the part of it that is tried. FLAGS: of the compiler, as the library has them where it is built for a sanitizer.

macro(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGN}\ngave ${status}:\n${output}")
  endif()
endmacro()

function(expect text expected)
  if(NOT text STREQUAL expected)
    message(FATAL_ERROR "got\n${text}\ninstead of\n${expected}")
  endif()
endfunction()

set(prefix "${WORK}/installed")
set(senmark "${prefix}/bin/senmark")

# Copies a folder out of the tree and builds it against what was installed. Gives its binary folder as BINARY.
macro(build_apart source)
  get_filename_component(name "${source}" NAME)
  set(copy "${WORK}/${STEP}/${name}")
  set(BINARY "${WORK}/${STEP}/build-${name}")
  file(REMOVE_RECURSE "${copy}" "${BINARY}")
  file(COPY "${source}/" DESTINATION "${copy}")
  build_here("${copy}")
endmacro()
macro(build_here folder)
  run("${CMAKE_COMMAND}" -S "${folder}" -B "${BINARY}" -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}"
      "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}" -DCMAKE_BUILD_TYPE=Debug)
  run("${CMAKE_COMMAND}" --build "${BINARY}")
endmacro()

# The first morning of the example, in order.
set(heart_rate "seconds,value\n0,71\n0.65,71.5\n0.85,72\n")

if(STEP STREQUAL "install")
  file(REMOVE_RECURSE "${WORK}")
  run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${prefix}")

elseif(STEP STREQUAL "hosts")
  build_apart("${SOURCE}/examples/host")
  foreach(host raw_host wrapper_host)
    run("${BINARY}/${host}" "${SOURCE}/tests/data/example_v2.tdjson" T)
    if(NOT output MATCHES "2\\.48 s: -0\\.5")
      message(FATAL_ERROR "${host} printed\n${output}")
    endif()
  endforeach()

elseif(STEP STREQUAL "module")
  build_apart("${SOURCE}/examples/module")
  set(input "${WORK}/${STEP}/module/morning.beats")
  run("${senmark}" --modules "${BINARY}" samples --csv "${input}" Heartrate)
  expect("${output}" "${heart_rate}")
  run("${senmark}" --modules "${BINARY}" convert --force "${input}" "${WORK}/${STEP}/morning.tdjson")
  run("${senmark}" samples --csv "${WORK}/${STEP}/morning.tdjson" Notes)
  expect("${output}" "seconds,value\n0.85,start of the run\n")
  # The manifest follows: under another extension the same file is taken too.
  file(READ "${WORK}/${STEP}/module/SKPLUGINUIDS.txt" manifest)
  string(REPLACE "\"beats\"]" "\"beats\", \"pulse\"]" manifest "${manifest}")
  file(WRITE "${WORK}/${STEP}/module/SKPLUGINUIDS.txt" "${manifest}")
  run("${CMAKE_COMMAND}" --build "${BINARY}")
  run("${senmark}" --modules "${BINARY}" formats)
  if(NOT output MATCHES "pulse +Beats of a heart")
    message(FATAL_ERROR "after a change of the manifest:\n${output}")
  endif()

elseif(STEP STREQUAL "arguments")
  # Each with what the message has to say.
  set(fine "NAME beats SOURCES beats.cpp MANIFEST SKPLUGINUIDS.txt")
  set(faults
      "SOURCES beats.cpp MANIFEST SKPLUGINUIDS.txt|NAME is missing"
      "NAME beats MANIFEST SKPLUGINUIDS.txt|SOURCES is missing"
      "NAME beats SOURCES beats.cpp|MANIFEST is missing"
      "${fine} FOLDER|nothing follows FOLDER"
      "more ${fine}|unknown arguments more"
      "NAME a.b SOURCES beats.cpp MANIFEST SKPLUGINUIDS.txt|\"a\\.b\" is no name for a module"
      "NAME taken SOURCES beats.cpp MANIFEST SKPLUGINUIDS.txt|there is a target taken already"
      "NAME beats SOURCES beats.cpp MANIFEST none.txt|there is no manifest .*/none.txt"
      "NAME beats SOURCES beats.cpp MANIFEST beats.cpp|[^ ]*beats.cpp is no manifest"
      "NAME beats SOURCES beats.cpp MANIFEST empty.txt|[^ ]*empty.txt lists no converter")
  set(folder "${WORK}/${STEP}")
  file(REMOVE_RECURSE "${folder}")
  file(COPY "${SOURCE}/examples/module/" DESTINATION "${folder}")
  file(WRITE "${folder}/empty.txt" "{\"converter\": []}")
  foreach(fault IN LISTS faults)
    string(REGEX MATCH "^[^|]*" arguments "${fault}")
    string(REGEX REPLACE "^[^|]*\\|" "" expected "${fault}")
    file(WRITE "${folder}/CMakeLists.txt" "cmake_minimum_required(VERSION 3.25)\nproject(fault LANGUAGES CXX)\n"
         "find_package(Senmark REQUIRED)\nadd_custom_target(taken)\nsenmark_add_module(${arguments})\n")
    execute_process(COMMAND "${CMAKE_COMMAND}" -S "${folder}" -B "${folder}/build" -G Ninja
                            "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${COMPILER}"
                    RESULT_VARIABLE status OUTPUT_QUIET ERROR_VARIABLE output)
    string(REGEX REPLACE "[ \n]+" " " output "${output}")
    if(status EQUAL 0 OR NOT output MATCHES "senmark_add_module: ${expected}")
      message(FATAL_ERROR "senmark_add_module(${arguments}) gave ${status}:\n${output}")
    endif()
  endforeach()

elseif(STEP STREQUAL "undefined")
  set(folder "${WORK}/${STEP}")
  file(REMOVE_RECURSE "${folder}")
  file(COPY "${SOURCE}/examples/module/" DESTINATION "${folder}")
  file(APPEND "${folder}/beats.cpp" "void DefinedNowhere();\nvoid CallsIt() { DefinedNowhere(); }\n")
  run("${CMAKE_COMMAND}" -S "${folder}" -B "${folder}/build" -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}"
      "-DCMAKE_CXX_COMPILER=${COMPILER}" -DCMAKE_BUILD_TYPE=Debug)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${folder}/build" RESULT_VARIABLE status OUTPUT_VARIABLE output
                  ERROR_VARIABLE output)
  if(status EQUAL 0 OR NOT output MATCHES "DefinedNowhere")
    message(FATAL_ERROR "a symbol that is defined nowhere gave ${status}:\n${output}")
  endif()

elseif(STEP STREQUAL "new-module")
  set(folder "${WORK}/${STEP}/steps")
  set(BINARY "${WORK}/${STEP}/build")
  file(REMOVE_RECURSE "${WORK}/${STEP}")
  run("${senmark}" new-module steps "${folder}" --extension stp)
  build_here("${folder}")
  run("${senmark}" --modules "${BINARY}" samples --csv "${folder}/sample.stp" Value)
  expect("${output}" "seconds,value\n0,1.5\n0.25,-2\n1,3.25\n")

else()
  message(FATAL_ERROR "no such step: ${STEP}")
endif()
