# How converter modules are built, in this project and, by `find_package(Senmark)`, everywhere else.

set(SENMARK_MODULE_CMAKE_DIR "${CMAKE_CURRENT_LIST_DIR}")

# senmark_add_module(NAME <name> SOURCES <file>... MANIFEST <file>
#                    [IDENTIFIER <text>] [LIBRARIES <library>...] [FOLDER <folder>])
#
# Makes the target <name> and lays out the module as a folder <name>.tdx in FOLDER, or in the binary folder of the
# caller: the shared object under Contents/<machine>-linux (Contents/MacOS on macOS), the manifest and the identifier
# under Contents/Resources. IDENTIFIER is what InitializePlugin gets, <name> without it. The shared object exports
# InitializePlugin alone; a symbol that no library gives fails the build. The path of the folder becomes the property
# SENMARK_MODULE_FOLDER of the target.
function(senmark_add_module)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;MANIFEST;IDENTIFIER;FOLDER" "SOURCES;LIBRARIES")
  foreach(needed NAME MANIFEST SOURCES)
    if(NOT arg_${needed})
      message(FATAL_ERROR "senmark_add_module: ${needed} is missing")
    endif()
  endforeach()
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "senmark_add_module: unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT arg_IDENTIFIER)
    set(arg_IDENTIFIER "${arg_NAME}")
  endif()
  if(NOT arg_FOLDER)
    set(arg_FOLDER "${CMAKE_CURRENT_BINARY_DIR}")
  endif()
  set(contents "${arg_FOLDER}/${arg_NAME}.tdx/Contents")

  add_library(${arg_NAME} MODULE ${arg_SOURCES})
  target_compile_features(${arg_NAME} PRIVATE cxx_std_17)
  target_link_libraries(${arg_NAME} PRIVATE Senmark::module ${arg_LIBRARIES})
  if(APPLE)
    set(suffix "")
    set(code "${contents}/MacOS")
  else()
    set(suffix ".so")
    set(code "${contents}/${CMAKE_SYSTEM_PROCESSOR}-linux")
    target_link_options(${arg_NAME} PRIVATE "LINKER:--version-script=${SENMARK_MODULE_CMAKE_DIR}/senmark_module.map")
    # The symbols of a sanitizer come from the program.
    if(NOT "${CMAKE_CXX_FLAGS} ${SENMARK_SANITIZE}" MATCHES "sanitize|address|undefined|thread|fuzzer")
      target_link_options(${arg_NAME} PRIVATE "LINKER:--no-undefined")
    endif()
  endif()
  set_target_properties(${arg_NAME} PROPERTIES
      CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON PREFIX "" SUFFIX "${suffix}"
      LIBRARY_OUTPUT_DIRECTORY "${code}" SENMARK_MODULE_FOLDER "${arg_FOLDER}/${arg_NAME}.tdx")

  configure_file("${arg_MANIFEST}" "${contents}/Resources/SKPLUGINUIDS.txt" COPYONLY)
  file(CONFIGURE OUTPUT "${contents}/Resources/MODULE_IDENTIFIER.txt" CONTENT "${arg_IDENTIFIER}" @ONLY)
  if(APPLE)
    file(CONFIGURE OUTPUT "${contents}/Info.plist" @ONLY CONTENT "<?xml version=\"1.0\" encoding=\"UTF-8\"?>
<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>${arg_NAME}</string>
<key>CFBundleIdentifier</key><string>${arg_IDENTIFIER}</string></dict></plist>
")
  endif()
endfunction()
