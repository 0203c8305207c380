# Suites of the wrapper for hosts and of the command-line program.

# A shared object that holds a copy of the wrapper of its own and hides it.
add_library(senmark_host_module MODULE support/HostModule.cpp)
senmark_compile(senmark_host_module)
senmark_link(senmark_host_module)
target_include_directories(senmark_host_module PRIVATE "${PROJECT_SOURCE_DIR}/include")
set_target_properties(senmark_host_module PROPERTIES PREFIX "")

# Not linked with the library: it is loaded at run time.
add_executable(HostLoaded_test HostLoaded_test.cpp)
senmark_test_compile(HostLoaded_test)
senmark_link(HostLoaded_test)
add_dependencies(HostLoaded_test senmark senmark_host_module)
target_include_directories(HostLoaded_test PRIVATE "${PROJECT_SOURCE_DIR}/include")
target_compile_definitions(HostLoaded_test PRIVATE SENMARK_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
                                                   SENMARK_LIBRARY="$<TARGET_FILE:senmark>"
                                                   SENMARK_HOST_MODULE="$<TARGET_FILE:senmark_host_module>")
target_link_libraries(HostLoaded_test PRIVATE senmark_test_support GTest::gtest_main)
senmark_register(HostLoaded_test)

# The wrapper needs no Boost: none of its headers may reach one.
add_test(NAME HostHeaders.NeedNoBoost
         COMMAND ${CMAKE_COMMAND} "-DCOMPILER=${CMAKE_CXX_COMPILER}" "-DINCLUDE=${PROJECT_SOURCE_DIR}/include" -P
                 "${CMAKE_CURRENT_SOURCE_DIR}/CheckHostHeaders.cmake")

if(NOT TARGET senmark_tool)
  return()
endif()

# One suite of a part of the program.
function(senmark_tool_suite name)
  add_executable(${name}_test ${name}_test.cpp)
  senmark_test_compile(${name}_test)
  target_link_libraries(${name}_test PRIVATE senmark_tool_parts senmark_test_support GTest::gtest_main)
  target_precompile_headers(${name}_test REUSE_FROM senmark_host_test_pch)
  senmark_register(${name}_test)
endfunction()

senmark_tool_suite(BraillePlot)
senmark_tool_suite(ConverterChoice)
senmark_tool_suite(ConverterProbe)
senmark_tool_suite(CsvText)
senmark_tool_suite(Curve)
senmark_tool_suite(ElfImage)
senmark_tool_suite(Excerpt)
senmark_tool_suite(FileSignature)
senmark_tool_suite(FileState)
senmark_tool_suite(FolderRemoval)
senmark_tool_suite(InputFile)
senmark_tool_suite(JsonWriter)
senmark_tool_suite(LoadedModule)
senmark_tool_suite(ManifestConverters)
senmark_tool_suite(MeantWord)
senmark_tool_suite(ModuleCheckCommand)
senmark_tool_suite(ModuleCodeCheck)
senmark_tool_suite(ModuleDiscovery)
senmark_tool_suite(ModuleFindings)
senmark_tool_suite(ModuleLayoutCheck)
senmark_tool_suite(ModuleManifest)
senmark_tool_suite(ModuleProcess)
senmark_tool_suite(ModuleSearch)
senmark_tool_suite(ModuleTrials)
senmark_tool_suite(ModuleVariants)
senmark_tool_suite(NativeConverters)
senmark_tool_suite(NewModuleCommand)
senmark_tool_suite(OutputFile)
senmark_tool_suite(PlacedJson)
senmark_tool_suite(ProcessTraces)
senmark_tool_suite(ProgressLine)
senmark_tool_suite(ScratchFolder)
senmark_tool_suite(SignalCleanup)
senmark_tool_suite(SvgPlot)
senmark_tool_suite(SvgTicks)
senmark_tool_suite(TemporaryFolder)
senmark_tool_suite(TimeHeader)
senmark_tool_suite(TimeText)
senmark_tool_suite(Utf8)
foreach(suite ConverterChoice InputFile)
  target_compile_definitions(${suite}_test PRIVATE SENMARK_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
endforeach()

# The program as a whole, in processes of its own.
add_library(senmark_tool_runner OBJECT support/ToolRunner.cpp)
senmark_test_compile(senmark_tool_runner)
target_link_libraries(senmark_tool_runner PRIVATE senmark senmark_test_support)
target_compile_definitions(senmark_tool_runner PUBLIC SENMARK_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
                                                      SENMARK_TOOL="$<TARGET_FILE:senmark_tool>")
target_precompile_headers(senmark_tool_runner REUSE_FROM senmark_host_test_pch)
function(senmark_program_suite name)
  senmark_tool_suite(${name})
  target_link_libraries(${name}_test PRIVATE senmark_tool_runner)
  add_dependencies(${name}_test senmark_tool)
endfunction()

senmark_program_suite(Tool)
senmark_program_suite(ToolArguments)
senmark_program_suite(ToolConversion)
senmark_program_suite(ToolModuleCheck)
senmark_program_suite(ToolModules)
senmark_program_suite(ToolSamples)
senmark_program_suite(ToolSignals)

foreach(suite ConverterChoice ConverterProbe ElfImage FileSignature LoadedModule ModuleCheckCommand ModuleCodeCheck
              ModuleDiscovery ModuleLayoutCheck ModuleManifest ModuleSearch ToolArguments ToolConversion ToolModuleCheck
              ToolModules ToolSignals)
  target_link_libraries(${suite}_test PRIVATE senmark_module_folders)
endforeach()
target_compile_definitions(ToolModules_test PRIVATE SENMARK_INSTALLED_MODULES="${SENMARK_INSTALLED_MODULES}")
