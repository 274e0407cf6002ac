# What an installation holds beside the targets, which install themselves: the files by which CMake
# finds them, and the documents.
include(CMakePackageConfigHelpers)

# Only the bundled engine is exported: ZelCam's headers do without one.
install(EXPORT ZelCamTargets NAMESPACE ZelCam:: DESTINATION ${package_config_dir})
write_basic_package_version_file(ZelCamConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/ZelCamConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/ZelCamConfigVersion.cmake
    DESTINATION ${package_config_dir})

# The documents lie to one another as in the source tree, so that their links lead somewhere.
set(documents ${CMAKE_INSTALL_DATADIR}/doc/zelcam)
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md DESTINATION ${documents})
install(FILES genapi/README.md DESTINATION ${documents}/genapi)
install(DIRECTORY docs/ DESTINATION ${documents}/docs PATTERN Doxyfile EXCLUDE)
install(DIRECTORY examples/ DESTINATION ${documents}/examples
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.xml")

# zelcam_link_headers(<folder of documents> <folder of headers>): "include" beside the documents.
function(zelcam_link_headers folder headers)
    set(link ${CMAKE_CURRENT_BINARY_DIR}/links/${folder}/include)
    file(RELATIVE_PATH target /${folder} /${headers})
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/links/${folder})
    file(CREATE_LINK ${target} ${link} SYMBOLIC)
    install(FILES ${link} DESTINATION ${folder})
endfunction()

zelcam_link_headers(${documents} ${CMAKE_INSTALL_INCLUDEDIR})
if(ZELCAM_GENAPI STREQUAL "bundled")
    zelcam_link_headers(${documents}/genapi ${genapi_includedir})
endif()
