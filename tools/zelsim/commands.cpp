#include "tools/zelsim/commands.h"

#include <algorithm>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace ZelSimTool {

using ZelSim::NetworkServer;
using ZelSim::NetworkSwitches;

namespace {

using Words = std::vector<std::string>;

struct Command {
    const char* name;
    const char* arguments;
    const char* help;
    size_t minArguments;
    size_t maxArguments;
    std::string (*run)(NetworkServer&, const Words& arguments);
};

Words WordsOf(const std::string& line) {
    Words words;
    bool quoted = false;
    bool inWord = false;
    for (const char c : line) {
        if (c == '"') {
            quoted = !quoted;
            if (!inWord) words.emplace_back();
            inWord = true;
        } else if (!quoted && (c == ' ' || c == '\t' || c == '\r')) {
            inWord = false;
        } else {
            if (!inWord) words.emplace_back();
            inWord = true;
            words.back() += c;
        }
    }
    if (quoted) throw std::runtime_error("a quotation mark is missing");
    return words;
}

// The cameras that an argument names.
std::vector<std::string> CamerasOf(const NetworkServer& server, const std::string& argument) {
    if (argument == "all") return server.CameraIds();
    return {argument};
}

std::string Padded(std::string_view text, size_t width) {
    std::string padded(text);
    padded.resize(std::max(padded.size(), width), ' ');
    return padded;
}

std::string List(NetworkServer& server, const Words&) {
    std::string answer;
    for (const std::string& id : server.CameraIds())
        answer += id + ": " + server.Describe(id) + '\n';
    return answer;
}

std::string Set(NetworkServer& server, const Words& arguments) {
    for (const std::string& id : CamerasOf(server, arguments[0]))
        server.Set(id, arguments[1], arguments[2]);
    return {};
}

std::string Get(NetworkServer& server, const Words& arguments) {
    const NetworkSwitches& switches = server.Device(arguments[0])->Switches();
    if (arguments.size() == 2) return switches.Get(arguments[1]) + '\n';
    std::string answer;
    NetworkSwitches::ForEach([&](const NetworkSwitches::Switch& known) {
        answer += std::string(known.name) + '=' + switches.Get(known.name) + '\n';
    });
    return answer;
}

std::string Reset(NetworkServer& server, const Words& arguments) {
    for (const std::string& id : CamerasOf(server, arguments[0]))
        server.Device(id)->Switches().Reset();
    return {};
}

std::string PowerCycle(NetworkServer& server, const Words& arguments) {
    for (const std::string& id : CamerasOf(server, arguments[0]))
        server.Device(id)->PowerCycle();
    return {};
}

std::string Unplug(NetworkServer& server, const Words& arguments) {
    for (const std::string& id : CamerasOf(server, arguments[0]))
        server.Unplug(id);
    return {};
}

std::string Plug(NetworkServer& server, const Words& arguments) {
    for (const std::string& id : CamerasOf(server, arguments[0]))
        server.Plug(id);
    return {};
}

std::string Move(NetworkServer& server, const Words& arguments) {
    server.Set(arguments[0], "Address", arguments[1]);
    return {};
}

std::string FireEvent(NetworkServer& server, const Words& arguments) {
    for (const std::string& id : CamerasOf(server, arguments[0]))
        server.Device(id)->FireTestEvent();
    return {};
}

std::string Statistics(NetworkServer& server, const Words& arguments) {
    const ZelSim::NetworkStatistics statistics = server.Device(arguments[0])->Statistics();
    std::ostringstream answer;
    answer << "datagrams=" << statistics.datagrams << "\nignored=" << statistics.ignored
           << "\nblocks=" << statistics.blocks << "\npackets=" << statistics.packets
           << "\nlost-blocks=" << statistics.lostBlocks << "\nresent=" << statistics.resent << '\n';
    return answer.str();
}

std::string Help(NetworkServer& server, const Words& arguments);

constexpr Command kCommands[] = {
    {"help", "", "this text, and the switches", 0, 0, Help},
    {"list", "", "all cameras: where they are, and who controls them", 0, 0, List},
    {"set", "CAMERA NAME VALUE", "sets a switch", 3, 3, Set},
    {"get", "CAMERA [NAME]", "a switch, or all of them", 1, 2, Get},
    {"reset", "CAMERA", "all switches as they were at the start, except for the address", 1, 1,
     Reset},
    {"power-cycle", "CAMERA", "switches the camera off and on again", 1, 1, PowerCycle},
    {"unplug", "CAMERA", "pulls the cable of the camera", 1, 1, Unplug},
    {"plug", "CAMERA", "puts it back", 1, 1, Plug},
    {"address", "CAMERA ADDRESS", "gives the camera another address", 2, 2, Move},
    {"event", "CAMERA", "lets the camera send its test event", 1, 1, FireEvent},
    {"stats", "CAMERA", "what the camera has received and sent since it was plugged in", 1, 1,
     Statistics}};

std::string Help(NetworkServer& /*server*/, const Words& /*arguments*/) {
    std::string answer = "CAMERA is an identifier, or all where nothing is returned.\n";
    for (const Command& command : kCommands) {
        const std::string usage = std::string(command.name) + ' ' + command.arguments;
        answer += "  " + Padded(usage, 24) + "  " + command.help + '\n';
    }
    return answer + "Switches:\n" + ListSwitches();
}

}  // namespace

std::string ListSwitches() {
    size_t width = 0;
    NetworkSwitches::ForEach(
        [&](const NetworkSwitches::Switch& known) { width = std::max(width, known.name.size()); });
    std::string list;
    NetworkSwitches::ForEach([&](const NetworkSwitches::Switch& known) {
        list += "  " + Padded(known.name, width) + "  " + std::string(known.help) + '\n';
    });
    return list;
}

std::string RunCommand(NetworkServer& server, const std::string& line) {
    Words words = WordsOf(line);
    if (words.empty()) return {};
    const std::string name = words.front();
    words.erase(words.begin());
    for (const Command& command : kCommands) {
        if (name != command.name) continue;
        if (words.size() < command.minArguments || words.size() > command.maxArguments) {
            throw std::runtime_error("usage: " + name + ' ' + command.arguments);
        }
        return command.run(server, words);
    }
    throw std::runtime_error("there is no command \"" + name + "\"; see help");
}

}  // namespace ZelSimTool
