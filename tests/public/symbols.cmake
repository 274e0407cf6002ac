# A shared library exports its functions and nothing else; libZelCameraApi also the type information of
# the interfaces that applications cast between.
#   cmake -DNM=... -DLIBRARY=<file> -P symbols.cmake
if(LIBRARY MATCHES "libZelImage")
    # Their names contain the types of their parameters.
    set(expected
        _ZN8ZelImage10FileTypeOfEPKcPNS_8FileTypeE
        _ZN8ZelImage10FormatNameEm
        _ZN8ZelImage10LastReasonEv
        _ZN8ZelImage12FormatByNameEPKc
        _ZN8ZelImage12UnpackedSizeERKNS_4ViewE
        _ZN8ZelImage13ConvertedSizeERKNS_4ViewEmm
        _ZN8ZelImage14DescribeFormatEmPNS_10FormatInfoEm
        _ZN8ZelImage4SaveERKNS_4ViewEPKcPKNS_11SaveOptionsE
        _ZN8ZelImage6EncodeERKNS_4ViewENS_8FileTypeEPKNS_11SaveOptionsEPFbPvPKvmES7_
        _ZN8ZelImage6UnpackERKNS_4ViewEPvm
        _ZN8ZelImage7ConvertERKNS_4ViewEmPKNS_14ConvertOptionsEPvmm
        _ZN8ZelImage8FormatAtEm
        _ZN8ZelImage9ImageSizeERKNS_4ViewE
        _ZN8ZelImage9LineBytesEmm)
else()
    set(expected ZelCam_CreateDevice ZelCam_GetSystem)
endif()
execute_process(COMMAND ${NM} -D --defined-only --format=posix ${LIBRARY}
    OUTPUT_VARIABLE output RESULT_VARIABLE code ERROR_VARIABLE errors)
if(NOT code EQUAL 0)
    message(FATAL_ERROR "${NM}: ${errors}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${output}")
set(symbols)
foreach(line IN LISTS lines)
    string(REGEX REPLACE " .*" "" symbol "${line}")
    list(APPEND symbols "${symbol}")
endforeach()
# Which of the interfaces have type information of their own in the library is the compiler's choice.
list(FILTER symbols EXCLUDE REGEX "^_ZT[IS]N11ZelGenParam[0-9]+[A-Za-z]+E$")
list(SORT symbols)
if(NOT symbols STREQUAL expected)
    message(FATAL_ERROR "exported: ${symbols}")
endif()
