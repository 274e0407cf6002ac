// Where cameras are on a network, and why some cannot be opened.
#pragma once

#include <string>

#include "tools/zelcam/camera/hostaddress.h"
#include "tools/zelcam/camera/session.h"

namespace ZelTool {

// Empty when the camera is on no network, or its interface does not report the address.
std::string AddressOf(const Camera& camera);

// Why the camera cannot be opened for everything, as its producer says it: "controlled by
// 10.0.0.7:40000". Empty when it can, or when the producer gives no reason.
std::string AccessReasonOf(const Camera& camera);

// Whether an address outside the network of its adapter keeps the camera from being opened.
bool NeedsAnAddress(const Camera& camera);

// What gives the camera an address in that network: "zelcam ip force CAMERA auto".
std::string ForceCommand(const Camera& camera);

// A free address in the network of the camera's adapter, and its mask and gateway. Throws Failure
// (FeatureFailed) when the interface proposes none.
Network ProposedNetwork(const Camera& camera);

}  // namespace ZelTool
