# Debian packages of an installation below /usr, one for each component, by `./dev package`.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zelcam)
set(CPACK_PACKAGE_VENDOR "ZelCam developers")
set(CPACK_PACKAGE_CONTACT "ZelCam developers <developers@zelcam.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development tools simulator)
if(ZELCAM_BUILD_PYTHON)
    list(APPEND CPACK_COMPONENTS_ALL python)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
if(CMAKE_SYSTEM_PROCESSOR MATCHES aarch64)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
endif()

# Written out, because what would compute them knows the libraries of this machine only.
set(libraries "libc6 (>= 2.36), libgcc-s1 (>= 12), libstdc++6 (>= 12)")

# describe_package(COMPONENT NAME SECTION DEPENDS TEXT)
function(describe_package component name section depends summary text)
    string(TOUPPER ${component} key)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section} PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)

    set(documents ${CMAKE_INSTALL_DATADIR}/doc/${name})
    install(FILES packaging/copyright DESTINATION ${documents}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian.gz DESTINATION ${documents}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()

describe_package(runtime libzelcam${PROJECT_VERSION_MAJOR} libs
    "${libraries}, libdeflate0, libexpat1, libjpeg62-turbo, liblog4cpp5v5, libtiff6, libtinyxml2-9, libzip4"
    "camera access library for machine vision"
    "Finds and drives cameras through GenICam GenTL producers, with every feature of\n\
interfaces, cameras and streams as a typed parameter. Brings a node-map engine\n\
with the interface of GenApi, a library that makes pictures of images in every\n\
pixel format, and simulated cameras.")
describe_package(development libzelcam-dev libdevel
    "libzelcam${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})"
    "camera access library for machine vision, files for development"
    "Headers, files for CMake and pkg-config, documents and examples of the\n\
library ZelCam and of its node-map engine.")
describe_package(tools zelcam-tools utils
    "libzelcam${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), \
${libraries}, libtinyxml2-9, libzip4"
    "cameras for machine vision from the command line"
    "The program zelcam lists cameras, grabs images, reads and sets features,\n\
saves and loads configurations, watches events and writes reports. With a\n\
rule for udev that lets users open USB3 Vision cameras, and an example of\n\
settings of the kernel for GigE Vision cameras.")
describe_package(simulator zelcam-simulator utils
    "${libraries}, libtinyxml2-9, libzip4"
    "simulated GigE Vision cameras on a network"
    "The program zelsim serves simulated cameras that any program for GigE Vision\n\
cameras finds and uses, by default on loopback, with faults of networks and\n\
quirks of devices on demand. With a service of users for systemd.")
describe_package(python python3-zelcam python
    "libzelcam${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), \
${libraries}, python3 (>= 3.11), python3 (<< 3.12), python3-numpy"
    "cameras for machine vision, package of Python"
    "Features of cameras as attributes, and their frames as arrays of numpy without\n\
a copy, through the library ZelCam.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/packaging/python/postinst ${PROJECT_SOURCE_DIR}/packaging/python/prerm)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)

find_program(GZIP gzip REQUIRED)
add_custom_command(
    OUTPUT changelog.Debian.gz
    COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/packaging/changelog >changelog.Debian.gz
    DEPENDS packaging/changelog)
add_custom_target(package_changelog ALL DEPENDS changelog.Debian.gz)

include(CPack)
