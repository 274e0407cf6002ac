# shellcheck shell=bash
# Sourced by the scripts that look at all sources.

# list_sources: the C and C++ sources of the project, one a line, by their paths from its root, which
# must be the current folder.
list_sources() {
    find . \( -path ./build -o -path '*/.*' \) -prune -o \
        -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.c' \) -printf '%P\n' | sort
}
