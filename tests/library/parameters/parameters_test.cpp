// Parameters of every module of the object tree, with a description and without one.
#include <functional>

#include "ZelGenParam/Array.h"
#include "tests/library/support/moduledescription.h"

using testing::ElementsAre;

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

TEST_F(ParametersTest, AreMadeOnceOfTheModulesOwnPort) {
    producer.SetDescription(Description::Xml());
    OpenStream();
    const struct {
        const char* module;
        std::function<ZelGenParam::Array*(ZelCamErr*)> get;
    } cases[] = {
        {"interface if0", [&](ZelCamErr* err) { return iface->GetParameters(err); }},
        {"device cam0", [&](ZelCamErr* err) { return device->GetTransportParameters(err); }},
        {"port cam0", [&](ZelCamErr* err) { return device->GetCameraParameters(err); }},
        {"stream stream0", [&](ZelCamErr* err) { return stream->GetParameters(err); }}};
    for (const auto& [module, get] : cases) {
        SCOPED_TRACE(module);
        ZelCamErr err = ZelCamErr_Error;
        Fail("GCGetNumPortURLs", -1010);
        EXPECT_EQ(get(&err), nullptr);
        EXPECT_EQ(err, ZelCamErr_GenTL_Io);
        producer.ClearRules();

        ZelGenParam::Array* const parameters = get(&err);  // tries again
        ASSERT_NE(parameters, nullptr);
        EXPECT_EQ(err, ZelCamErr_Success);
        if (module == std::string("port cam0")) {  // whose events are waited for in a thread
            ASSERT_TRUE(producer.AwaitWaiter(HandleOf("device cam0"), GenTL::EVENT_REMOTE_DEVICE));
        }
        Calls();
        err = ZelCamErr_Error;
        EXPECT_EQ(get(&err), parameters);
        EXPECT_EQ(err, ZelCamErr_Success);
        EXPECT_THAT(Calls(), testing::IsEmpty());
        EXPECT_EQ(parameters->SetIntegerValue("Width", 5), ZelCamErr_Success);
        for (const Scripted::Call& call : producer.TakeCalls())
            EXPECT_EQ(call.handle, HandleOf(module)) << call.Text();
    }
}

TEST_F(ParametersTest, OfTheCameraFollowTheExternalDescription) {
    producer.SetDescription(Description::Xml());
    OpenDevice();
    const TemporaryFile file(
        "external.xml",
        test::Document("<Category Name='Root'/>" + test::kPort + test::IntReg("External", 0)));
    ZelCamErr err = ZelCamErr_Success;
    info->SetExternalXml("/no/such/file.xml");
    EXPECT_EQ(device->GetCameraParameters(&err), nullptr);
    EXPECT_EQ(err, ZelCamErr_FileOpenFailed);
    info->SetExternalXml(file.Path().c_str());
    EXPECT_NE(device->GetCameraParameters(&err)->GetInt("External", nullptr), nullptr);
    EXPECT_EQ(device->GetTransportParameters(&err)->GetInt("External", nullptr), nullptr);
}

TEST_F(ParametersTest, EndWithTheirModules) {
    producer.SetDescription(Description::Xml());
    OpenStream();
    iface->GetParameters(nullptr);
    device->GetTransportParameters(nullptr);
    stream->GetParameters(nullptr);
    ASSERT_NE(device->GetCameraParameters(nullptr), nullptr);
    ASSERT_TRUE(producer.AwaitWaiter(HandleOf("device cam0"), GenTL::EVENT_REMOTE_DEVICE));
    Calls();
    device->Release();
    EXPECT_THAT(Calls(),
                ElementsAre("EventKill", "GCUnregisterEvent 4", "DSGetInfo 8",
                            "GCUnregisterEvent 1", "DSFlushQueue 4", "DSClose", "DevClose"));
}
