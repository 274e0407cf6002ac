# The shared library exports its two functions and nothing else.
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
list(SORT symbols)
if(NOT symbols STREQUAL "ZelCam_CreateDevice;ZelCam_GetSystem")
    message(FATAL_ERROR "exported: ${symbols}")
endif()
