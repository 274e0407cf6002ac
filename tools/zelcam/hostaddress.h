// Whether a camera can be reached under an address.
#ifndef ZELCAM_TOOLS_ZELCAM_HOSTADDRESS_H
#define ZELCAM_TOOLS_ZELCAM_HOSTADDRESS_H

#include <string>

// Each in the form "192.168.0.1"; the gateway 0.0.0.0 is none.
struct Network {
    std::string address;
    std::string mask;
    std::string gateway;
};

// Throws Failure (Usage) for a text of another form: the library takes more than that, and the
// camera would get something else. Unless `anyAddress`, also for a mask that is none, for an
// address that no machine in the network can have, and for a gateway outside the network.
void CheckNetwork(const Network& network, bool anyAddress);

#endif  // ZELCAM_TOOLS_ZELCAM_HOSTADDRESS_H
