// Where the program lies.
#pragma once

#include <string>

// The folder of the running program's file, without a slash at its end; empty when the system does
// not tell.
std::string ExecutableDirectory();
