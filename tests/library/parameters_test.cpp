// Without a node map, operations on parameters fail and leave everything else alone.
#include <functional>

#include "tests/library/fixture.h"

namespace {

using ParametersTest = SessionTest;

}  // namespace

TEST_F(ParametersTest, OperationsGiveNullAndTheirCode) {
    OpenStream();
    const std::function<const void*(ZelCamErr*)> operations[] = {
        [&](ZelCamErr* err) { return system->CreateDeviceFromConfig("camera.xml", err); },
        [&](ZelCamErr* err) { return iface->CreateDeviceFromConfig("camera.xml", err); },
        [&](ZelCamErr* err) { return iface->GetParameters(err); },
        [&](ZelCamErr* err) { return info->GetIPAddress(err); },
        [&](ZelCamErr* err) { return info->GetIPMask(err); },
        [&](ZelCamErr* err) { return info->GetIPGateway(err); },
        [&](ZelCamErr* err) { return device->GetTransportParameters(err); },
        [&](ZelCamErr* err) { return device->GetCameraParameters(err); },
        [&](ZelCamErr* err) { return stream->GetParameters(err); }};
    for (const auto& operation : operations) {
        ZelCamErr err = ZelCamErr_Success;
        EXPECT_EQ(operation(&err), nullptr);
        EXPECT_EQ(err, ZelCamErr_NoNodeMap);
        EXPECT_EQ(operation(nullptr), nullptr);
    }
}

TEST_F(ParametersTest, OperationsReturnTheirCode) {
    OpenDevice();
    uint32_t address = 1;
    EXPECT_EQ(info->GetIP(&address, &address, &address), ZelCamErr_NoNodeMap);
    EXPECT_EQ(address, 1U);
    EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_NoNodeMap);
    EXPECT_EQ(info->ForceIP("10.0.0.1", "255.0.0.0", "10.0.0.2"), ZelCamErr_NoNodeMap);
    EXPECT_EQ(device->SaveConfiguration("camera.xml"), ZelCamErr_NoNodeMap);
    EXPECT_EQ(device->LoadConfiguration("camera.xml"), ZelCamErr_NoNodeMap);
}
