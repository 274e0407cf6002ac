# Finds an installation of the GenICam reference implementation (GenApi and GCBase, from 3.0) for
# ZELCAM_GENAPI=external.
#
# GENICAM_ROOT, a cache variable or else the environment variable of GenICam, names its root:
#   library/CPP/include/GenApi/GenApi.h
#   bin/PLATFORM/ or library/CPP/lib/PLATFORM/ with lib<Library>_<toolset>_v<major>_<minor>.so
# GENICAM_PLATFORM chooses the platform's folder; it follows from the target where it is not set.
#
# Defines the targets ZelCam::GCBase and ZelCam::GenApi, and GenICam_VERSION (major.minor).

set(GENICAM_ROOT "$ENV{GENICAM_ROOT}" CACHE PATH "Root of a GenICam installation")

if(NOT GENICAM_PLATFORM)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
        set(GENICAM_PLATFORM Linux64_ARM)
    elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^arm")
        set(GENICAM_PLATFORM Linux32_ARM)
    elseif(CMAKE_SIZEOF_VOID_P EQUAL 8)
        set(GENICAM_PLATFORM Linux64_x64)
    else()
        set(GENICAM_PLATFORM Linux32_i86)
    endif()
endif()

find_path(GenICam_INCLUDE_DIR GenApi/GenApi.h
    PATHS ${GENICAM_ROOT}/library/CPP/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
foreach(library GenApi GCBase)
    file(GLOB found
        ${GENICAM_ROOT}/bin/${GENICAM_PLATFORM}/lib${library}_*_v[0-9]*_[0-9]*.so
        ${GENICAM_ROOT}/library/CPP/lib/${GENICAM_PLATFORM}/lib${library}_*_v[0-9]*_[0-9]*.so)
    if(found)
        list(GET found 0 GenICam_${library}_LIBRARY)
    endif()
endforeach()
if(GenICam_GenApi_LIBRARY MATCHES "_v([0-9]+)_([0-9]+)\\.so$")
    set(GenICam_VERSION ${CMAKE_MATCH_1}.${CMAKE_MATCH_2})
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GenICam
    REQUIRED_VARS GenICam_GenApi_LIBRARY GenICam_GCBase_LIBRARY GenICam_INCLUDE_DIR
    VERSION_VAR GenICam_VERSION
    REASON_FAILURE_MESSAGE
        "GENICAM_ROOT is \"${GENICAM_ROOT}\", the platform is ${GENICAM_PLATFORM}")

if(GenICam_FOUND AND NOT TARGET ZelCam::GenApi)
    foreach(library GenApi GCBase)
        get_filename_component(folder ${GenICam_${library}_LIBRARY} DIRECTORY)
        add_library(ZelCam::${library} SHARED IMPORTED GLOBAL)
        # What these libraries need in their turn lies beside them, when linking and later.
        set_target_properties(ZelCam::${library} PROPERTIES
            IMPORTED_LOCATION ${GenICam_${library}_LIBRARY}
            IMPORTED_NO_SONAME ON
            INTERFACE_INCLUDE_DIRECTORIES ${GenICam_INCLUDE_DIR}
            INTERFACE_LINK_OPTIONS "LINKER:-rpath,${folder};LINKER:-rpath-link,${folder}")
    endforeach()
    string(REPLACE . _ GenICam_suffix ${GenICam_VERSION})
    set_target_properties(ZelCam::GenApi PROPERTIES
        INTERFACE_LINK_LIBRARIES ZelCam::GCBase
        INTERFACE_COMPILE_DEFINITIONS "ZELCAM_GENAPI_NAMESPACE=GenApi_${GenICam_suffix}")
endif()
