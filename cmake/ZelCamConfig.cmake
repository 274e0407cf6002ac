# find_package(ZelCam): the targets ZelCam::ZelCam, the library, ZelCam::ZelImage, which makes pictures of
# images and needs no camera, and with the bundled node-map engine
# ZelCam::GenApi and ZelCam::GCBase, for programs that use node maps themselves, and ZelCam::GenTL, the
# headers of the GenTL standard.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/ZelCamTargets.cmake)
