# How every target of the project is compiled and linked.

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_program(SENMARK_CCACHE ccache)
if(SENMARK_CCACHE)
  # Time stamps of precompiled headers and the place of the work tree do not change the code.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${SENMARK_CCACHE})
endif()

if(SENMARK_BUILD_FUZZ AND NOT SENMARK_SANITIZE)
  # The fuzzer finds its way by what the library itself does, so all of it is compiled for the fuzzer.
  set(SENMARK_SANITIZE fuzzer-no-link,address,undefined)
endif()
set(SENMARK_INSTRUMENT_FLAGS "")
if(SENMARK_SANITIZE)
  list(APPEND SENMARK_INSTRUMENT_FLAGS -fsanitize=${SENMARK_SANITIZE} -fno-sanitize-recover=all
       -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    list(APPEND SENMARK_INSTRUMENT_FLAGS -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitize_ignore.txt)
  endif()
endif()
if(SENMARK_COVERAGE)
  list(APPEND SENMARK_INSTRUMENT_FLAGS --coverage -fprofile-update=atomic)
endif()

function(senmark_compile target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  # No contraction: a result must be the same double on every machine.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off
                                           ${SENMARK_INSTRUMENT_FLAGS})
endfunction()

function(senmark_link target)
  target_link_options(${target} PUBLIC ${SENMARK_INSTRUMENT_FLAGS})
endfunction()
