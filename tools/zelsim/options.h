// The command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ZelSimTool {

struct Options {
    std::string config;           // a file; empty: the built-in cameras
    std::vector<std::string> on;  // addresses and interfaces; none: loopback
    std::string control;          // a socket; empty: none
    std::string tell;             // a command for the program behind that socket
    bool listsSwitches = false;
};

enum class ExitCode {
    Ok = 0,
    Usage = 1,   // a wrong command line
    Failed = 2,  // nothing can be served, or what was told cannot be done
};

// Fills the options. Returns an exit code when nothing is left to do: it has printed the help, or a
// message about a wrong command line.
std::optional<ExitCode> ParseOptions(int argc, char** argv, Options& options);

}  // namespace ZelSimTool
