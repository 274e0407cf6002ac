// What users tell the running program through its control socket.
#pragma once

#include <string>

#include "producers/simulator/gige/networkserver.h"

namespace ZelSimTool {

// Does what a line says and returns the lines that answer it, each with its end. Throws
// std::runtime_error with the reason for what cannot be done. Words of a line stand between blanks;
// one with blanks in it stands between double quotes.
std::string RunCommand(ZelSim::NetworkServer& server, const std::string& line);

// All switches with their help texts, a line each.
std::string ListSwitches();

}  // namespace ZelSimTool
