// Parameters of every module of the object tree, with a description and without one.
#include <functional>

#include "tests/library/fixture.h"

namespace {

using ParametersTest = SessionTest;

}  // namespace

TEST_F(ParametersTest, WithoutADescriptionOperationsFail) {
    OpenStream();
    const std::pair<ZelCamErr, std::function<const void*(ZelCamErr*)>> operations[] = {
        {ZelCamErr_NoNodeMap, [&](ZelCamErr* err) { return iface->GetParameters(err); }},
        {ZelCamErr_NoNodeMap, [&](ZelCamErr* err) { return device->GetTransportParameters(err); }},
        {ZelCamErr_NoNodeMap, [&](ZelCamErr* err) { return device->GetCameraParameters(err); }},
        {ZelCamErr_NoNodeMap, [&](ZelCamErr* err) { return stream->GetParameters(err); }},
        {ZelCamErr_NotFound, [&](ZelCamErr* err) { return info->GetIPAddress(err); }},
        {ZelCamErr_NotFound, [&](ZelCamErr* err) { return info->GetIPMask(err); }},
        {ZelCamErr_NotFound, [&](ZelCamErr* err) { return info->GetIPGateway(err); }}};
    for (const auto& [code, operation] : operations) {
        ZelCamErr err = ZelCamErr_Success;
        EXPECT_EQ(operation(&err), nullptr);
        EXPECT_EQ(err, code);
        EXPECT_EQ(operation(nullptr), nullptr);
    }
    uint32_t address = 1;
    EXPECT_EQ(info->GetIP(&address, &address, &address), ZelCamErr_NotFound);
    EXPECT_EQ(address, 1U);
    EXPECT_EQ(info->ForceIP(1U, 2U, 3U), ZelCamErr_NoNodeMap);
    EXPECT_EQ(device->SaveConfiguration("camera.xml"), ZelCamErr_NoNodeMap);
    EXPECT_EQ(device->LoadConfiguration("camera.xml"), ZelCamErr_NoNodeMap);
}
