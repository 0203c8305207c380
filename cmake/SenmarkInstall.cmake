# What `cmake --install` puts into the system, and the package that `find_package(Senmark)` finds there.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

install(DIRECTORY include/senmark TYPE INCLUDE)
install(TARGETS senmark senmark_module EXPORT SenmarkTargets)
if(TARGET senmark_tool)
  set_target_properties(senmark_tool PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS senmark_tool)
endif()

set(SENMARK_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Senmark)
install(EXPORT SenmarkTargets NAMESPACE Senmark:: DESTINATION ${SENMARK_PACKAGE_DIR})
install(FILES cmake/SenmarkConfig.cmake cmake/SenmarkModule.cmake cmake/senmark_module.map
        DESTINATION ${SENMARK_PACKAGE_DIR})
write_basic_package_version_file(SenmarkConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/SenmarkConfigVersion.cmake" DESTINATION ${SENMARK_PACKAGE_DIR})
