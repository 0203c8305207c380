# What `find_package(Senmark)` gives: Senmark::senmark for hosts, Senmark::module and senmark_add_module for modules.
#
# Hosts need nothing else. Modules need the headers of Boost; senmark_add_module says so where they are not found.

include("${CMAKE_CURRENT_LIST_DIR}/SenmarkTargets.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/SenmarkModule.cmake")
