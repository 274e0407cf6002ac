#include "producers/gigevision/control/debugger.h"

#include <fstream>
#include <string>

namespace ZelGev {

bool IsDebuggerAttached() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == "TracerPid:") return status >> word && word != "0";
    return false;
}

}  // namespace ZelGev
