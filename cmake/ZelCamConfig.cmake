# find_package(ZelCam): the targets ZelCam::ZelCam, the library, and with the bundled node-map engine
# ZelCam::GenApi and ZelCam::GCBase, for programs that use node maps themselves.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/ZelCamTargets.cmake)
