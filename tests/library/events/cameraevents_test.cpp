// Events of a camera in its node map.
#include <GenApi/GenApi.h>
#include <GenApi/NodeCallback.h>

#include "ZelGenParam/Array.h"
#include "tests/genapi/adapters/messages.h"
#include "tests/library/support/moduledescription.h"
#include "tests/library/support/sink.h"

namespace {

using test::Bytes;
using test::kGevEventData;
using test::kU3vEvent;

class CameraEventsTest : public SessionTest {
  protected:
    // The camera's parameters, on an interface of that transport-layer type.
    ZelGenParam::Array* Open(const std::string& type) {
        producer.SetDescription(Description::Xml());
        producer.SetWorld({{"if0", type, {"cam0"}}});
        iface = nullptr;
        device = nullptr;
        system.reset();
        OpenDevice();
        return device != nullptr ? device->GetCameraParameters(nullptr) : nullptr;
    }

    // Delivers an event as the camera, and waits until the library is through with it.
    void Fire(const Bytes& message) {
        void* const handle = HandleOf("device cam0");
        ASSERT_TRUE(producer.AwaitWaiter(handle, GenTL::EVENT_REMOTE_DEVICE));
        const size_t calls = producer.GetCount("EventGetData");
        ASSERT_TRUE(producer.FireEvent(handle, GenTL::EVENT_REMOTE_DEVICE, message));
        ASSERT_TRUE(producer.AwaitCount("EventGetData", calls + 1));
    }
};

}  // namespace

TEST_F(CameraEventsTest, ReachTheSinksOfTheFeaturesOfTheEvent) {
    const struct {
        const char* type;
        const Bytes& message;
        const char* feature;
        int64_t value;
    } cases[] = {{"GEV", kGevEventData, "GevBlock", 9},
                 {"U3V", kU3vEvent, "U3vTimestamp", 0x0102030405060708},
                 {"Custom", kU3vEvent, "U3vTimestamp", 0x0102030405060708},
                 {"HDSDI", kU3vEvent, "U3vTimestamp", 0x0102030405060708}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        ZelGenParam::Array* const parameters = Open(c.type);
        ASSERT_NE(parameters, nullptr);
        ZelGenParam::Int* const feature = parameters->GetInt(c.feature, nullptr);
        ASSERT_NE(feature, nullptr);
        EXPECT_FALSE(feature->IsAvailable());  // until there was an event

        std::vector<int64_t> values;
        Sink sink([&](ZelGenParam::Param* param) {
            values.push_back(param->ToInt()->GetValue(nullptr));
        });
        ASSERT_EQ(feature->RegisterEventSink(&sink), ZelCamErr_Success);
        Fire({0x00, 0x01});  // malformed: dropped, and the next one arrives
        Fire(c.message);
        EXPECT_THAT(values, testing::Contains(c.value));
        EXPECT_EQ(feature->GetValue(nullptr), c.value);
        EXPECT_EQ(feature->UnregisterEventSink(&sink), ZelCamErr_Success);
    }
}

TEST_F(CameraEventsTest, AreDroppedWhereTheTransportHasNone) {
    for (const char* type : {"CL", "CXP"}) {
        ZelGenParam::Array* const parameters = Open(type);
        ASSERT_NE(parameters, nullptr);
        Fire(kGevEventData);
        Fire(kU3vEvent);
        EXPECT_FALSE(parameters->GetInt("GevBlock", nullptr)->IsAvailable()) << type;
    }
}

TEST_F(CameraEventsTest, ParametersDoNotNeedThem) {
    Fail("GCRegisterEvent", -1003, GenTL::EVENT_REMOTE_DEVICE);
    EXPECT_NE(Open("GEV"), nullptr);
    producer.ClearRules();
    // An event identifier that makes no sense leaves the other features usable.
    producer.SetDescription(
        test::Document("<Category Name='Root'/><Port Name='Odd'><EventID>901"
                       "</EventID></Port>" +
                       test::kPort + test::IntReg("Plain", 0)));
    device->Release();
    device = ZelCam_CreateDevice(info, ZelCam::DeviceAccess::Control, nullptr);
    ZelCamErr err = ZelCamErr_Error;
    ZelGenParam::Array* const parameters = device->GetCameraParameters(&err);
    ASSERT_NE(parameters, nullptr);
    EXPECT_EQ(parameters->GetIntegerValue("Plain", &err), 0);
    EXPECT_EQ(err, ZelCamErr_Success);
}

// The features of events vanish with the device. That reaches neither a sink nor the closed port.
TEST_F(CameraEventsTest, NobodyHearsOfTheDevicesEnd) {
    int calls = 0;
    Sink sink([&](ZelGenParam::Param*) { ++calls; });
    struct Writer {
        void Write(GenApi::INode* /*node*/) {
            ++calls;
            EXPECT_THROW(GenApi::CIntegerPtr(height)->SetValue(calls), GenICam::AccessException);
        }
        GenApi::INode* height;
        int calls = 0;
    };
    ZelGenParam::Array* const parameters = Open("GEV");
    ASSERT_NE(parameters, nullptr);
    ZelGenParam::Int* const block = parameters->GetInt("GevBlock", nullptr);
    block->RegisterEventSink(&sink);
    device->GetTransportParameters(nullptr)->GetInt("GevBlock", nullptr)->RegisterEventSink(&sink);
    Fire(kGevEventData);
    EXPECT_EQ(calls, 1);
    Writer writer{parameters->GetInt("Height", nullptr)->GetNode()};
    GenApi::Register(block->GetNode(), writer, &Writer::Write);
    device->Release();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(writer.calls, 1);  // the fixture looks for calls with a closed handle
}
