include(CMakeFindDependencyMacro)
find_dependency(Qt6 6.4 COMPONENTS Core Network)
include(${CMAKE_CURRENT_LIST_DIR}/OmbuTargets.cmake)
