// The producer with a camera on loopback, in the orders in which consumers call it.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"
#include "tests/support/components.h"
#include "tests/support/portnodemap.h"

using namespace GenTL;
using ZelTest::PortNodeMap;

namespace {

// Tests that run beside this one find each other's cameras: each has a MAC address of its own.
std::string MacOfThisProcess(const char* format) {
    std::array<char, 32> text{};
    const auto number = static_cast<unsigned>(getpid());
    std::snprintf(text.data(), text.size(), format, number >> 16 & 0xFF, number >> 8 & 0xFF,
                  number & 0xFF);
    return text.data();
}

// `keys` and `switches` are attributes of the camera and of its Network.
std::string Configuration(const std::string& keys, const std::string& switches) {
    return "<ZelSim><Interface id='I' type='GEV'><Camera id='C' serial='77' userName='left' "
           "width='64' height='48' frameRate='200' " +
           keys + "><Network Mac='" + MacOfThisProcess("02:77:00:%02x:%02x:%02x") + "' " +
           switches + "/></Camera></Interface></ZelSim>";
}

// A camera of 64 x 48 bytes on loopback, which the producer finds there. Nothing of it is open.
class ConsumerTest : public SimulatorTest {
  protected:
    ~ConsumerTest() override { p.ServeCameras(nullptr); }

    void SetUp() override { Serve("", ""); }

    void Serve(const std::string& keys, const std::string& switches) {
        UseConfig(Configuration(keys, switches));
        ASSERT_EQ(p.ServeCameras(""), GC_ERR_SUCCESS) << LastErrorText();
        ASSERT_EQ(p.TLUpdateInterfaceList(system, nullptr, kPatienceMs), GC_ERR_SUCCESS);
        interface = OpenInterface("GEV-lo");
        Find();
    }

    // Searches until the camera is listed and says who has it. A search ends soon after the latest
    // answer, so that another camera on loopback may end it before a slow one of this process
    // answers.
    void Find(IF_HANDLE where) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        do {
            Require(p.IFUpdateDeviceList(where, nullptr, kPatienceMs), "the search");
            const auto ids = DeviceIds(where);
            const bool isListed = std::find(ids.begin(), ids.end(), id_) != ids.end();
            if (isListed && AccessStatus(where) != DEVICE_ACCESS_STATUS_NOACCESS) return;
        } while (std::chrono::steady_clock::now() < end);
        throw std::runtime_error(id_ + " is not found");
    }
    void Find() { Find(interface); }

    void OpenDevice(DEVICE_ACCESS_FLAGS access = DEVICE_ACCESS_CONTROL) {
        Require(p.IFOpenDevice(interface, id_.c_str(), access, &device), "opening");
        remote_ = std::make_unique<PortNodeMap>(p, Remote());
    }
    void OpenStream() {
        std::vector<char> id(256);
        size_t size = id.size();
        ASSERT_EQ(p.DevGetDataStreamID(device, 0, id.data(), &size), GC_ERR_SUCCESS);
        ASSERT_EQ(p.DevOpenDataStream(device, id.data(), &stream), GC_ERR_SUCCESS)
            << LastErrorText();
        ASSERT_EQ(p.GCRegisterEvent(stream, EVENT_NEW_BUFFER, &newBuffer), GC_ERR_SUCCESS);
    }
    void Announce(size_t count) {
        const auto size = static_cast<size_t>(remote_->Integer("PayloadSize"));
        for (size_t i = 0; i < count; ++i) {
            BUFFER_HANDLE buffer = nullptr;
            ASSERT_EQ(p.DSAllocAndAnnounceBuffer(stream, size, nullptr, &buffer), GC_ERR_SUCCESS);
            buffers_.push_back(buffer);
        }
    }
    void QueueAll() {
        for (BUFFER_HANDLE buffer : buffers_)
            ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    }
    void OpenAll() {
        OpenDevice();
        OpenStream();
        Announce(4);
    }
    void StartCamera() {
        remote_->Set("TLParamsLocked", "1");
        remote_->Execute("AcquisitionStart");
    }
    void StopCamera() {
        remote_->Finish("AcquisitionStop");
        remote_->Set("TLParamsLocked", "0");
    }

    // Frames that are whole, each with another number.
    void ExpectFrames(size_t count) {
        std::set<uint64_t> numbers;
        for (size_t i = 0; i < count; ++i) {
            BUFFER_HANDLE const buffer = Fetch();
            ASSERT_NE(buffer, nullptr);
            EXPECT_FALSE(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool());
            EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), 64U * 48U);
            numbers.insert(FrameId(buffer));
            ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
        }
        EXPECT_EQ(numbers.size(), count);
    }
    void DiscardAndRevoke() {
        EXPECT_EQ(p.DSFlushQueue(stream, ACQ_QUEUE_ALL_DISCARD), GC_ERR_SUCCESS);
        for (BUFFER_HANDLE buffer : buffers_)
            EXPECT_EQ(p.DSRevokeBuffer(stream, buffer, nullptr, nullptr), GC_ERR_SUCCESS);
        buffers_.clear();
    }
    void CloseDevice() {
        EXPECT_EQ(p.DevClose(device), GC_ERR_SUCCESS);
        device = nullptr;
        stream = nullptr;
        buffers_.clear();
    }
    // Ends the test: what follows needs it.
    void Require(GC_ERROR code, const std::string& what) {
        if (code != GC_ERR_SUCCESS) throw std::runtime_error(what + ": " + LastErrorText());
    }
    int32_t AccessStatus(IF_HANDLE where) {
        return DeviceInfo(where, id_.c_str(), DEVICE_INFO_ACCESS_STATUS).Int32();
    }
    int32_t AccessStatus() { return AccessStatus(interface); }

    const std::string id_ = MacOfThisProcess("GEV-027700%02x%02x%02x");
    std::unique_ptr<PortNodeMap> remote_;
    std::vector<BUFFER_HANDLE> buffers_;
};

TEST_F(ConsumerTest, KnowsACameraBeforeItIsOpened) {
    const auto text = [this](int32_t command) {
        return DeviceInfo(interface, id_.c_str(), command).Text();
    };
    EXPECT_EQ(text(DEVICE_INFO_TLTYPE), "GEV");
    EXPECT_EQ(text(DEVICE_INFO_SERIAL_NUMBER), "77");
    EXPECT_EQ(text(DEVICE_INFO_USER_DEFINED_NAME), "left");
    EXPECT_THAT(text(DEVICE_INFO_DISPLAYNAME), testing::HasSubstr("left"));
    EXPECT_EQ(AccessStatus(), DEVICE_ACCESS_STATUS_READWRITE);
    OpenDevice();
    EXPECT_EQ(AccessStatus(), DEVICE_ACCESS_STATUS_OPEN_READWRITE);
    EXPECT_EQ(DeviceInfo(interface, id_.c_str(), DEVICE_INFO_TIMESTAMP_FREQUENCY).Uint64(),
              1000000000U);
    Find();
    EXPECT_EQ(AccessStatus(), DEVICE_ACCESS_STATUS_OPEN_READWRITE);
    DEV_HANDLE second = nullptr;
    EXPECT_EQ(p.IFOpenDevice(interface, id_.c_str(), DEVICE_ACCESS_CONTROL, &second),
              GC_ERR_RESOURCE_IN_USE);
    CloseDevice();
    Find();
    EXPECT_EQ(AccessStatus(), DEVICE_ACCESS_STATUS_READWRITE);
}

TEST_F(ConsumerTest, GetsFramesInTheOrderOfTheStandard) {
    OpenAll();
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    ExpectFrames(20);
    StopCamera();
    EXPECT_EQ(StopStream(ACQ_STOP_FLAGS_DEFAULT), GC_ERR_SUCCESS);
    DiscardAndRevoke();
    EXPECT_EQ(p.GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
    EXPECT_EQ(p.DSClose(stream), GC_ERR_SUCCESS);
    CloseDevice();
}

// Some queue buffers only then, and some start the camera first.
TEST_F(ConsumerTest, GetsFramesWhenTheCameraOrTheStreamIsFirst) {
    OpenAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    QueueAll();
    ExpectFrames(10);
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
    StopCamera();
    EXPECT_EQ(p.DSFlushQueue(stream, ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS);

    StartCamera();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    ExpectFrames(10);
    StopCamera();
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
}

TEST_F(ConsumerTest, StartsAndStopsAsOftenAsTheyWant) {
    OpenAll();
    QueueAll();
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(StartStream(i == 2 ? 3 : GENTL_INFINITE), GC_ERR_SUCCESS);
        StartCamera();
        ExpectFrames(3);
        if (i % 2 == 0) {
            StopCamera();
            EXPECT_EQ(StopStream(ACQ_STOP_FLAGS_DEFAULT), GC_ERR_SUCCESS);
        } else {
            EXPECT_EQ(StopStream(ACQ_STOP_FLAGS_KILL), GC_ERR_SUCCESS);
            StopCamera();
        }
        EXPECT_EQ(p.DSFlushQueue(stream, ACQ_QUEUE_ALL_TO_INPUT), GC_ERR_SUCCESS);
    }
}

// Settings between two acquisitions, and those of the stream that applications look for.
TEST_F(ConsumerTest, ChangesSettingsBetweenAcquisitions) {
    OpenAll();
    PORT_HANDLE const port = stream;
    PortNodeMap settings(p, port);
    for (const char* const name : {"StreamAutoNegotiatePacketSize", "StreamPacketResendEnable"})
        settings.Set(name, "true");
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    ExpectFrames(3);
    StopCamera();
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
    DiscardAndRevoke();
    remote_->Set("PixelFormat", "Mono16");
    EXPECT_EQ(remote_->Integer("PayloadSize"), 2 * 64 * 48);
    Announce(3);
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    BUFFER_HANDLE const buffer = Fetch();
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), 2U * 64 * 48);
    EXPECT_GT(settings.Integer("GevStreamSeenPacketCount"), 0);
    StopCamera();
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
}

// What programs do that end in a hurry: the camera is free at once.
TEST_F(ConsumerTest, ClosesInAnyOrder) {
    for (int i = 0; i < 3; ++i) {
        OpenAll();
        QueueAll();
        ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
        StartCamera();
        ExpectFrames(2);
        const GC_ERROR code = i == 1 ? p.DSClose(stream) : i == 2 ? StopStream() : GC_ERR_SUCCESS;
        EXPECT_EQ(code, GC_ERR_SUCCESS);
        CloseDevice();
        Find();
        EXPECT_EQ(AccessStatus(), DEVICE_ACCESS_STATUS_READWRITE);
    }
    OpenAll();
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    ExpectFrames(2);
    EXPECT_EQ(p.TLClose(system), GC_ERR_SUCCESS);
    ASSERT_EQ(p.TLOpen(&system), GC_ERR_SUCCESS);
    interface = OpenInterface("GEV-lo");
    Find();
    EXPECT_EQ(AccessStatus(), DEVICE_ACCESS_STATUS_READWRITE);
}

// A second system handle is another client, as another program would be.
TEST_F(ConsumerTest, ReadsWhatAnotherControls) {
    OpenDevice();
    TL_HANDLE other = nullptr;
    ASSERT_EQ(p.TLOpen(&other), GC_ERR_SUCCESS);
    IF_HANDLE otherInterface = nullptr;
    ASSERT_EQ(p.TLOpenInterface(other, "GEV-lo", &otherInterface), GC_ERR_SUCCESS);
    Find(otherInterface);
    DEV_HANDLE second = nullptr;
    EXPECT_THAT(p.IFOpenDevice(otherInterface, id_.c_str(), DEVICE_ACCESS_CONTROL, &second),
                testing::AnyOf(GC_ERR_RESOURCE_IN_USE, GC_ERR_ACCESS_DENIED));
    ASSERT_EQ(p.IFOpenDevice(otherInterface, id_.c_str(), DEVICE_ACCESS_READONLY, &second),
              GC_ERR_SUCCESS)
        << LastErrorText();
    PORT_HANDLE port = nullptr;
    ASSERT_EQ(p.DevGetPort(second, &port), GC_ERR_SUCCESS);
    PortNodeMap reader(p, port);
    EXPECT_EQ(reader.Integer("Width"), 64);
    EXPECT_THROW(reader.SetInteger("Width", 32), std::exception);
    remote_->SetInteger("Width", 32);
    EXPECT_EQ(remote_->Integer("Width"), 32);
    EXPECT_EQ(p.TLClose(other), GC_ERR_SUCCESS);
}

// The events of a camera, beside its frames; a waiting call is ended before they are unregistered.
TEST_F(ConsumerTest, GetsEventsBesideFrames) {
    OpenAll();
    EVENT_HANDLE events = nullptr;
    ASSERT_EQ(p.GCRegisterEvent(device, EVENT_REMOTE_DEVICE, &events), GC_ERR_SUCCESS);
    remote_->Set("EventSelector", "FrameEnd");
    remote_->Set("EventNotification", "On");
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    ExpectFrames(2);
    std::vector<char> data(1024);
    size_t size = data.size();
    ASSERT_EQ(p.EventGetData(events, data.data(), &size, kPatienceMs), GC_ERR_SUCCESS);
    std::vector<char> number(16);
    size_t numberSize = number.size();
    INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
    EXPECT_EQ(p.EventGetDataInfo(events, data.data(), size, EVENT_DATA_ID, &type, number.data(),
                                 &numberSize),
              GC_ERR_SUCCESS);
    EXPECT_STREQ(number.data(), "9022");
    EXPECT_EQ(p.EventKill(newBuffer), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCUnregisterEvent(device, EVENT_REMOTE_DEVICE), GC_ERR_SUCCESS);
    EXPECT_EQ(p.GCUnregisterEvent(stream, EVENT_NEW_BUFFER), GC_ERR_SUCCESS);
    CloseDevice();
}

// A 3D camera that loses one packet in nine.
class ComponentConsumerTest : public ConsumerTest {
  protected:
    static constexpr size_t kWidth = 64;
    static constexpr size_t kHeight = 48;

    void SetUp() override {}  // each test serves its own

    std::vector<uint8_t> DataOf(BUFFER_HANDLE buffer, uint32_t part) {
        const auto info = [&](int32_t command) {
            return Ask(p.DSGetBufferPartInfo, stream, buffer, part, command);
        };
        const auto* data = static_cast<uint8_t*>(info(BUFFER_PART_INFO_BASE).Pointer());
        return {data, data + info(BUFFER_PART_INFO_DATA_SIZE).Size()};
    }
    uint64_t Number(BUFFER_HANDLE buffer, uint32_t part, int32_t command) {
        return Ask(p.DSGetBufferPartInfo, stream, buffer, part, command).Uint64();
    }
};

TEST_F(ComponentConsumerTest, GetsWholePartsAndTheirChunks) {
    Serve("payload='MultiPart' xPadding='2'", "LossEvery='9'");
    OpenDevice();
    OpenStream();
    remote_->Set("ChunkSelector", "FrameID");
    remote_->Set("ChunkEnable", "1");
    remote_->Set("ChunkModeActive", "1");
    Announce(4);
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    for (uint8_t i = 0; i < 20; ++i) {
        BUFFER_HANDLE const buffer = Fetch();
        ASSERT_FALSE(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool());
        uint32_t count = 0;
        ASSERT_EQ(p.DSGetNumBufferParts(stream, buffer, &count), GC_ERR_SUCCESS);
        ASSERT_EQ(count, 4U);
        const uint64_t frame = FrameId(buffer) - 1;
        EXPECT_EQ(DataOf(buffer, 0).size(), (kWidth + 2) * kHeight);
        EXPECT_EQ(DataOf(buffer, 1), ZelTest::RangeBytes(frame, kWidth, kHeight, 2));
        EXPECT_EQ(DataOf(buffer, 2), ZelTest::ConfidenceBytes(frame, kWidth, kHeight, 2));
        EXPECT_EQ(Number(buffer, 1, BUFFER_PART_INFO_DATA_FORMAT), 0x011000B8U);
        EXPECT_EQ(Number(buffer, 1, BUFFER_PART_INFO_SOURCE_ID), 1U);
        EXPECT_EQ(Number(buffer, 1, BUFFER_PART_INFO_REGION_ID), 2U);
        EXPECT_EQ(Number(buffer, 1, BUFFER_PART_INFO_DATA_PURPOSE_ID), 4U);
        SINGLE_CHUNK_DATA chunk{};
        size_t numChunks = 1;
        ASSERT_EQ(p.DSGetBufferChunkData(stream, buffer, &chunk, &numChunks), GC_ERR_SUCCESS);
        EXPECT_EQ(Data(buffer)[chunk.ChunkOffset + 7], frame);
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    }
    StopCamera();
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
}

// GenDC is of 2.2; earlier cameras send the same parts.
TEST_F(ComponentConsumerTest, GetsWholeContainersOfCamerasThatMaySendThem) {
    Serve("payload='GenDC'", "LossEvery='9' Version='2.2'");
    OpenDevice();
    OpenStream();
    Announce(4);
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    constexpr size_t kDescriptor = 416;
    constexpr size_t kImage = kWidth * kHeight;
    for (int i = 0; i < 20; ++i) {
        BUFFER_HANDLE const buffer = Fetch();
        ASSERT_FALSE(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool());
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PAYLOADTYPE).Size(), size_t{PAYLOAD_TYPE_GENDC});
        ASSERT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), kDescriptor + 4 * kImage);
        const uint64_t frame = FrameId(buffer) - 1;
        const uint8_t* const bytes = Data(buffer);
        EXPECT_EQ(std::string(bytes, bytes + 4), "GNDC");
        EXPECT_EQ(bytes[16], frame) << "the number of the frame";
        const auto* const range = bytes + kDescriptor + kImage;
        EXPECT_EQ(std::vector<uint8_t>(range, range + 2 * kImage),
                  ZelTest::RangeBytes(frame, kWidth, kHeight, 0));
        EXPECT_EQ(std::vector<uint8_t>(range + 2 * kImage, range + 3 * kImage),
                  ZelTest::ConfidenceBytes(frame, kWidth, kHeight, 0));
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    }
    StopCamera();
    EXPECT_EQ(StopStream(), GC_ERR_SUCCESS);
    CloseDevice();

    p.ServeCameras(nullptr);
    Serve("payload='GenDC'", "Version='2.1'");
    OpenDevice();
    OpenStream();
    Announce(1);
    QueueAll();
    ASSERT_EQ(StartStream(), GC_ERR_SUCCESS);
    StartCamera();
    uint32_t count = 0;
    EXPECT_EQ(p.DSGetNumBufferParts(stream, Fetch(), &count), GC_ERR_SUCCESS);
    EXPECT_EQ(count, 3U);
}

}  // namespace
