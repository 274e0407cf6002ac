// Events that a camera sends by itself.

#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterU3V.h>
#include <gmock/gmock.h>

#include "tests/simulator/cameranodestest.h"
#include "tests/simulator/producer.h"
#include "tests/support/allocationfaults.h"

using namespace GENAPI_NAMESPACE;
using namespace GenTL;
using ::testing::ElementsAre;

namespace {

using Bytes = std::vector<uint8_t>;

class CameraEventTest : public CameraNodesTest {
  protected:
    void Open(const std::string& keys, const std::string& type) {
        CameraNodesTest::Open(keys, type);
        ASSERT_EQ(p.GCRegisterEvent(device, EVENT_REMOTE_DEVICE, &event), GC_ERR_SUCCESS);
    }
    void Switch(const char* name, const char* value) {
        nodes->Set("EventSelector", name);
        nodes->Set("EventNotification", value);
    }
    // The next message of the camera; empty, and a failed test, when none comes.
    Bytes Message(uint64_t timeoutMs = kPatienceMs) {
        Bytes message(1024);
        size_t size = message.size();
        EXPECT_EQ(p.EventGetData(event, message.data(), &size, timeoutMs), GC_ERR_SUCCESS);
        message.resize(size);
        return message;
    }
    uint64_t NumFired() { return Ask(p.EventGetInfo, event, EVENT_NUM_FIRED).Uint64(); }

    // With frames 0 and 1 the events of two exposures reach the features.
    void CheckExposureEnds(CEventAdapter& adapter, uint64_t exposureNs) {
        Switch("ExposureEnd", "On");
        EXPECT_EQ(nodes->Node("EventExposureEndFrameID")->GetAccessMode(), NA);
        AllocateAndQueue(2);
        ASSERT_EQ(Start(2), GC_ERR_SUCCESS);
        int64_t last = 0;
        for (int64_t frame = 0; frame < 2; ++frame) {
            const Bytes message = Message();
            adapter.DeliverMessage(message.data(), static_cast<uint32_t>(message.size()));
            EXPECT_EQ(nodes->Integer("EventExposureEndFrameID"), frame);
            const int64_t time = nodes->Integer("EventExposureEndTimestamp");
            EXPECT_GT(time, last);
            last = time;
            EXPECT_EQ(BufferInfo(Fetch(), BUFFER_INFO_TIMESTAMP).Uint64() + exposureNs,
                      static_cast<uint64_t>(time));
        }
        EXPECT_EQ(Stop(), GC_ERR_SUCCESS);
    }

    EVENT_HANDLE event = nullptr;
};

TEST_F(CameraEventTest, GevMessagesReachTheFeatures) {
    Open("frameRate='0'", "GEV");
    CEventAdapterGEV adapter(&nodes->Map());
    CheckExposureEnds(adapter, 0);  // the camera keeps no time
}

TEST_F(CameraEventTest, U3vMessagesReachTheFeatures) {
    Open("frameRate='100' bigEndian='true'", "U3V");
    CEventAdapterU3V adapter(&nodes->Map());
    CheckExposureEnds(adapter, 5000000);
}

TEST_F(CameraEventTest, MessagesHaveTheFormOfTheTransport) {
    const auto message = [&](const char* type) {
        Open("frameRate='0' timestampFrequency='1'", type);
        nodes->Execute("TestEventGenerate");
        return Message();
    };
    Bytes gev = message("GEV");
    ASSERT_EQ(gev.size(), 24U);
    EXPECT_LT(gev[23], 60);  // seconds since the camera was configured
    gev[23] = 0;
    EXPECT_THAT(gev, ElementsAre(0x42, 0x01, 0x00, 0xC0, 0x00, 0x10, 0x00, 0x01,  //
                                 0x00, 0x00, 0x9F, 0xFF, 0xFF, 0xFF, 0x00, 0x00,  //
                                 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00));
    Bytes u3v = message("U3V");
    ASSERT_EQ(u3v.size(), 24U);
    EXPECT_LT(u3v[16], 60);
    u3v[16] = 0;
    EXPECT_THAT(u3v, ElementsAre(0x55, 0x33, 0x56, 0x45, 0x00, 0x00, 0x00, 0x0C,  //
                                 0x0C, 0x00, 0x01, 0x00, 0x00, 0x00, 0xFF, 0x9F,  //
                                 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00));
}

TEST_F(CameraEventTest, AreSentInOrderWhenSwitchedOn) {
    Open("frameRate='0'", "GEV");
    for (const char* name : {"AcquisitionStart", "AcquisitionEnd", "FrameStart", "FrameEnd"})
        Switch(name, "On");
    Switch("Test", "Off");
    nodes->Execute("TestEventGenerate");
    nodes->Set("AcquisitionMode", "SingleFrame");
    AllocateAndQueue(1);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    std::vector<int> ids;
    for (int i = 0; i < 4; ++i) {
        const Bytes message = Message();
        ASSERT_GE(message.size(), 24U);
        ids.push_back(message[10] << 8 | message[11]);
    }
    EXPECT_THAT(ids, ElementsAre(0x9011, 0x9021, 0x9022, 0x9012));
    EXPECT_EQ(NumFired(), 4U);
}

// Neither do the frames need any.
TEST_F(CameraEventTest, AreCountedAndLostWithoutMemory) {
    Open("frameRate='0'", "GEV");
    Switch("ExposureEnd", "On");
    AllocateAndQueue(1);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    BUFFER_HANDLE buffer = Fetch();
    EXPECT_EQ(Message().back(), 0);  // the number of the frame
    {
        const ZelTest::OutOfMemory full(1);
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
        buffer = Fetch();
    }
    EXPECT_EQ(NumFired(), 2U);
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    EXPECT_EQ(Message().back(), 2);
}

TEST_F(CameraEventTest, TellsWhichFeaturesChanged) {
    Open("frameRate='0'", "GEV");
    ASSERT_EQ(p.GCRegisterEvent(device, EVENT_FEATURE_INVALIDATE, &event), GC_ERR_SUCCESS);
    nodes->Set("ChunkModeActive", "true");
    const Bytes name = Message();
    EXPECT_EQ(std::string(name.begin(), name.end()), std::string("PayloadSize") + '\0');
    nodes->Set("Width", "320");
    EXPECT_EQ(Message(), Bytes({'W', 'i', 'd', 't', 'h', '\0'}));
    EXPECT_EQ(Message(), name);
    EXPECT_EQ(NumFired(), 3U);
}

}  // namespace
