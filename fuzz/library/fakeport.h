// A module of a producer that exists only as one port: what the port announces and what its
// registers hold is the input's business.
#ifndef FUZZ_LIBRARY_FAKEPORT_H
#define FUZZ_LIBRARY_FAKEPORT_H

#include <string>

#include "ZelCameraApi/gentlmodule.h"

namespace Fuzz {

struct FakePort {
    std::string url;
    std::string tlType = "GEV";
    std::string
        registers;  // from address 0; registers behind them hold the low byte of their address

    // Valid as long as the port.
    ZelCameraApi::Internal::GenTLModule<void*> Module();

    // Lets the registers be a description, and the URL lead to it.
    void Announce(const std::string& description, const std::string& extension);
};

}  // namespace Fuzz

#endif  // FUZZ_LIBRARY_FAKEPORT_H
