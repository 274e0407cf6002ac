// Where the program lies.
#ifndef LOG_EXECUTABLEDIRECTORY_H
#define LOG_EXECUTABLEDIRECTORY_H

#include <string>

// The folder of the running program's file, without a slash at its end; empty when the system does
// not tell.
std::string ExecutableDirectory();

#endif  // LOG_EXECUTABLEDIRECTORY_H
