#include "tools/zelcam/doctor/machinereader.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/doctor/systemfiles.h"

namespace ZelTool {

namespace {

// Whether this user gets a larger receive buffer than the limit: by trying.
bool MayExceedLimit() {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return false;
    const int size = 1 << 20;
    const bool may = setsockopt(descriptor, SOL_SOCKET, SO_RCVBUFFORCE, &size, sizeof size) == 0;
    close(descriptor);
    return may;
}

std::vector<std::string> ReadGovernors() {
    std::vector<std::string> governors;
    std::error_code ignored;
    for (const auto& entry :
         std::filesystem::directory_iterator("/sys/devices/system/cpu", ignored)) {
        const auto governor = ReadText(entry.path() / "cpufreq/scaling_governor");
        if (!governor) continue;
        if (std::find(governors.begin(), governors.end(), *governor) == governors.end()) {
            governors.push_back(*governor);
        }
    }
    std::sort(governors.begin(), governors.end());
    return governors;
}

double ReadLoad() {
    double load = 0;
    std::istringstream(ReadText("/proc/loadavg").value_or("")) >> load;
    return load;
}

bool UfwIsOn() {
    std::ifstream in("/etc/ufw/ufw.conf");
    for (std::string line; std::getline(in, line);) {
        if (line == "ENABLED=yes") return true;
    }
    return false;
}

bool HasUsbRule() {
    constexpr std::array<const char*, 3> kFolders = {"/etc", "/usr/lib", "/lib"};
    return std::any_of(kFolders.begin(), kFolders.end(), [](const char* folder) {
        return access((std::string(folder) + "/udev/rules.d/70-zelcam.rules").c_str(), F_OK) == 0;
    });
}

// Such a file has pairs of lines: "TcpExt: NAME NAME ...", "TcpExt: NUMBER NUMBER ...".
uint64_t CountNamed(const std::string& text, const std::string& wanted) {
    std::istringstream lines(text);
    std::string names;
    std::string numbers;
    while (std::getline(lines, names) && std::getline(lines, numbers)) {
        std::istringstream namesIn(names);
        std::istringstream numbersIn(numbers);
        std::string name;
        std::string number;
        while (namesIn >> name && numbersIn >> number) {
            if (name == wanted) return std::strtoull(number.c_str(), nullptr, 10);
        }
    }
    return 0;
}

}  // namespace

MachineFacts ReadMachine() {
    MachineFacts machine;
    machine.receiveLimit = ReadCount("/proc/sys/net/core/rmem_max");
    machine.exceedsLimit = MayExceedLimit();
    machine.governors = ReadGovernors();
    machine.load = ReadLoad();
    machine.processors = static_cast<unsigned>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
    machine.usesUfw = UfwIsOn();
    machine.hasUsbRule = HasUsbRule();
    machine.searchedInterfaces = TextOrEmpty(std::getenv("ZELGEV_INTERFACES"));
    return machine;
}

KernelCounts ReadKernelCounts() {
    KernelCounts counts;
    // A line for each processor, in hexadecimal digits.
    std::istringstream lines(ReadText("/proc/net/softnet_stat").value_or(""));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream numbers(line);
        uint64_t processed = 0;
        uint64_t dropped = 0;
        uint64_t squeezed = 0;
        numbers >> std::hex >> processed >> dropped >> squeezed;
        counts.backlogDrops += dropped;
        counts.squeezes += squeezed;
    }
    counts.reversePathDrops =
        CountNamed(ReadText("/proc/net/netstat").value_or(""), "IPReversePathFilter");
    return counts;
}

}  // namespace ZelTool
