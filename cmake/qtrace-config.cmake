# find_package(qtrace): targets qtrace::qtrace (shared) and qtrace::qtrace_static.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/qtrace-targets.cmake)
