# What every target is built with: the language, the warnings, the sanitizers, and the layout of the
# build tree, which is that of an installation (bin, lib, lib/zelcam) so that the run paths of both
# are the same.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/archive)

# RUNPATH, not RPATH: LD_LIBRARY_PATH comes before it, so that a user can put another default
# producer in place. The paths are written by hand because they are relative in both trees.
add_link_options(-Wl,--enable-new-dtags)
set(CMAKE_SKIP_BUILD_RPATH OFF)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH $ORIGIN/../lib)  # programs; shared objects set their own

find_package(Threads REQUIRED)

add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    # GNU unique symbols pin a shared object in memory; producers must really be unloaded.
    $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)

# What Debian builds its packages with. The sanitizers see more without it.
if(NOT ZELCAM_SANITIZE AND NOT ZELCAM_BUILD_FUZZERS)
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
        -fstack-protector-strong -fstack-clash-protection)
    add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()

# Fuzzers are built with the instrumented library, so the choice is one for everything.
if(ZELCAM_BUILD_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "ZELCAM_BUILD_FUZZERS needs clang, for its libFuzzer")
    endif()
    set(ZELCAM_SANITIZE address,undefined,fuzzer-no-link)
endif()

if(ZELCAM_COVERAGE)
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
    add_link_options(-fprofile-instr-generate)
endif()
if(ZELCAM_SANITIZE)
    add_compile_options(
        -fsanitize=${ZELCAM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${ZELCAM_SANITIZE})
    # GCC loses track of what is initialised in the code that a sanitizer adds to.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# In a group of sources, none is the one whose types may use its anonymous namespace.
if(CMAKE_UNITY_BUILD)
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
endif()

include_directories(${PROJECT_SOURCE_DIR})

# Compiles headers of the standard library once for a target: a third of what its sources take. Not
# for clang, so that clang-tidy still finds the source that forgets one.
function(zelcam_precompile target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_precompile_headers(${target} PRIVATE
            <algorithm> <array> <atomic> <chrono> <condition_variable> <cstdint> <cstring>
            <functional> <list> <map> <memory> <mutex> <optional> <set> <string> <thread>
            <unordered_map> <utility> <variant> <vector>)
    endif()
endfunction()

# Compiles the sources of a target that needs the JSON library in groups of `size`, which takes a
# third of the time: each source would compile the same templates. Not for clang, either.
function(zelcam_compile_in_groups target size)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${size})
    endif()
endfunction()
