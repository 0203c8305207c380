# How converter modules are built, in this project and, by `find_package(Senmark)`, everywhere else.

set(SENMARK_MODULE_CMAKE_DIR "${CMAKE_CURRENT_LIST_DIR}")

# What a module's headers include of Boost: headers alone, none of its libraries.
find_path(SENMARK_BOOST_INCLUDE_DIR boost/variant.hpp DOC "Folder of the headers of Boost, for converter modules")
mark_as_advanced(SENMARK_BOOST_INCLUDE_DIR)
if(SENMARK_BOOST_INCLUDE_DIR)
  get_property(aliased TARGET Senmark::module PROPERTY ALIASED_TARGET)
  if(aliased)
    # Not for those who find the library: they look for themselves.
    target_include_directories(${aliased} SYSTEM INTERFACE $<BUILD_INTERFACE:${SENMARK_BOOST_INCLUDE_DIR}>)
  else()
    target_include_directories(Senmark::module SYSTEM INTERFACE "${SENMARK_BOOST_INCLUDE_DIR}")
  endif()
endif()

# Fails unless the text of a manifest is a JSON object with a list of converters; the library says no more of it than
# that it does not use the module. `senmark module check` looks at every key.
function(senmark_check_manifest manifest)
  file(READ "${manifest}" text)
  string(JSON count ERROR_VARIABLE problem LENGTH "${text}" converter)
  if(problem)
    message(FATAL_ERROR "senmark_add_module: ${manifest} is no manifest: ${problem}")
  endif()
  if(count EQUAL 0)
    message(FATAL_ERROR "senmark_add_module: ${manifest} lists no converter")
  endif()
endfunction()

# senmark_add_module(NAME <name> SOURCES <file>... MANIFEST <file>
#                    [IDENTIFIER <text>] [LIBRARIES <library>...] [FOLDER <folder>])
#
# Makes the target <name> and lays out the module as a folder <name>.tdx in FOLDER, or in the binary folder of the
# caller: the shared object under Contents/<machine>-linux (Contents/MacOS on macOS), the manifest and the identifier
# under Contents/Resources, where they follow changes with the next build. <name> is made of ASCII letters, digits,
# dashes and underscores, for hosts choose modules by it. IDENTIFIER is what InitializePlugin gets, <name> without it.
# The shared object exports InitializePlugin alone; a symbol that no library gives fails the build. The path of the
# folder becomes the property SENMARK_MODULE_FOLDER of the target.
function(senmark_add_module)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;MANIFEST;IDENTIFIER;FOLDER" "SOURCES;LIBRARIES")
  if(DEFINED arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "senmark_add_module: unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(DEFINED arg_KEYWORDS_MISSING_VALUES)
    message(FATAL_ERROR "senmark_add_module: nothing follows ${arg_KEYWORDS_MISSING_VALUES}")
  endif()
  foreach(needed NAME MANIFEST SOURCES)
    if(NOT DEFINED arg_${needed})
      message(FATAL_ERROR "senmark_add_module: ${needed} is missing")
    endif()
  endforeach()
  if(NOT arg_NAME MATCHES "^[A-Za-z0-9_][A-Za-z0-9_-]*$")
    message(FATAL_ERROR "senmark_add_module: \"${arg_NAME}\" is no name for a module: letters, digits, - and _")
  endif()
  if(TARGET ${arg_NAME})
    message(FATAL_ERROR "senmark_add_module: there is a target ${arg_NAME} already")
  endif()
  if(NOT SENMARK_BOOST_INCLUDE_DIR)
    message(FATAL_ERROR "senmark_add_module: the headers of Boost are needed, and boost/variant.hpp was not found; "
                        "install them or set SENMARK_BOOST_INCLUDE_DIR")
  endif()
  get_filename_component(manifest "${arg_MANIFEST}" ABSOLUTE)
  if(NOT EXISTS "${manifest}")
    message(FATAL_ERROR "senmark_add_module: there is no manifest ${manifest}")
  endif()
  senmark_check_manifest("${manifest}")
  if(NOT DEFINED arg_IDENTIFIER)
    set(arg_IDENTIFIER "${arg_NAME}")
  endif()
  if(NOT DEFINED arg_FOLDER)
    set(arg_FOLDER "${CMAKE_CURRENT_BINARY_DIR}")
  endif()
  get_filename_component(folder "${arg_FOLDER}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  set(contents "${folder}/${arg_NAME}.tdx/Contents")

  add_library(${arg_NAME} MODULE ${arg_SOURCES})
  target_compile_features(${arg_NAME} PRIVATE cxx_std_17)
  target_link_libraries(${arg_NAME} PRIVATE Senmark::module ${arg_LIBRARIES})
  if(APPLE)
    set(suffix "")
    set(code "${contents}/MacOS")
  else()
    set(suffix ".so")
    set(code "${contents}/${CMAKE_SYSTEM_PROCESSOR}-linux")
    set(exports "${SENMARK_MODULE_CMAKE_DIR}/senmark_module.map")
    target_link_options(${arg_NAME} PRIVATE "LINKER:--version-script=${exports}")
    set_property(TARGET ${arg_NAME} APPEND PROPERTY LINK_DEPENDS "${exports}")
    # The symbols of a sanitizer come from the program.
    if(NOT SENMARK_SANITIZE AND NOT "${CMAKE_CXX_FLAGS} ${CMAKE_MODULE_LINKER_FLAGS}" MATCHES "-fsanitize")
      target_link_options(${arg_NAME} PRIVATE "LINKER:--no-undefined")
    endif()
  endif()
  set_target_properties(${arg_NAME} PROPERTIES
      CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON PREFIX "" SUFFIX "${suffix}" DEBUG_POSTFIX ""
      SENMARK_MODULE_FOLDER "${folder}/${arg_NAME}.tdx"
      # An expression, so that no generator adds a folder of the configuration.
      LIBRARY_OUTPUT_DIRECTORY "$<1:${code}>")

  configure_file("${manifest}" "${contents}/Resources/SKPLUGINUIDS.txt" COPYONLY)
  file(CONFIGURE OUTPUT "${contents}/Resources/MODULE_IDENTIFIER.txt" CONTENT "@arg_IDENTIFIER@" @ONLY)
  if(APPLE)
    file(CONFIGURE OUTPUT "${contents}/Info.plist" @ONLY CONTENT "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>${arg_NAME}</string>
<key>CFBundleIdentifier</key><string>${arg_IDENTIFIER}</string></dict></plist>
")
  endif()
endfunction()
