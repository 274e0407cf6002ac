# The shared library exports its two functions, the type information of the interfaces that
# applications cast between, and nothing else.
#   cmake -DNM=... -DLIBRARY=<file> -P symbols.cmake
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
set(expected ZelCam_CreateDevice ZelCam_GetSystem)
foreach(class IN ITEMS 5Array 5Param 3Int 5Float 6String 4Enum 9EnumEntry 7Boolean 7Command 8Category)
    list(APPEND expected _ZTIN11ZelGenParam${class}E _ZTSN11ZelGenParam${class}E)
endforeach()
list(SORT symbols)
list(SORT expected)
if(NOT symbols STREQUAL expected)
    message(FATAL_ERROR "exported: ${symbols}")
endif()
