// The folder of the program.
#pragma once

#include <string>

// The folder of the running program's file, without a slash at its end; empty if the system does
// not report it.
std::string ExecutableDirectory();
