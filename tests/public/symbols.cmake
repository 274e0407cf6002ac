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
# Which of the interfaces have type information of their own in the library is the compiler's choice.
list(FILTER symbols EXCLUDE REGEX "^_ZT[IS]N11ZelGenParam[0-9]+[A-Za-z]+E$")
list(SORT symbols)
if(NOT symbols STREQUAL "ZelCam_CreateDevice;ZelCam_GetSystem")
    message(FATAL_ERROR "exported beside type information: ${symbols}")
endif()
