# What an installation holds beside the targets, which install themselves: the files by which CMake
# finds them, and the documents.
include(CMakePackageConfigHelpers)

# Only the bundled engine is exported: ZelCam's headers do without one.
install(EXPORT ZelCamTargets NAMESPACE ZelCam:: DESTINATION ${package_config_dir})
write_basic_package_version_file(ZelCamConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/ZelCamConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/ZelCamConfigVersion.cmake
    DESTINATION ${package_config_dir})

install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelcam)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelcam/docs)
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/zelcam/examples
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.xml")
