# What `find_package(Senmark)` gives: Senmark::senmark for hosts, Senmark::module and senmark_add_module for modules.

include("${CMAKE_CURRENT_LIST_DIR}/SenmarkTargets.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/SenmarkModule.cmake")
