// 3D cameras: frames of several components, each of which is a part.

#include <numeric>

#include <gmock/gmock.h>

#include "tests/simulator/cameranodestest.h"
#include "tests/support/components.h"
#include "tests/wire/bytes.h"

using namespace GENAPI_NAMESPACE;
using namespace GenTL;
using ::testing::ElementsAre;
using WireTest::Bytes;
using WireTest::Hex;
using ZelTest::ConfidenceBytes;
using ZelTest::RangeBytes;

namespace {

// Values of range are above 255, too.
constexpr char kKeys[] =
    "width='64' height='40' offsetX='4' offsetY='2' xPadding='3' yPadding='5' frameRate='0' "
    "payload='MultiPart' ";
constexpr size_t kIntensity = size_t{64 + 3} * 40 + 5;
constexpr size_t kRange = size_t{128 + 3} * 40 + 5;
constexpr size_t kAll = 2 * kIntensity + kRange;

class ComponentTest : public CameraNodesTest {
  protected:
    void Enable(const char* component, const char* whether) {
        nodes->Set("ComponentSelector", component);
        nodes->Set("ComponentEnable", whether);
    }
    size_t PayloadSize() { return static_cast<size_t>(nodes->Integer("PayloadSize")); }
    uint32_t NumParts(BUFFER_HANDLE buffer) {
        uint32_t count = 0;
        EXPECT_EQ(p.DSGetNumBufferParts(stream, buffer, &count), GC_ERR_SUCCESS);
        return count;
    }
    Info PartInfo(BUFFER_HANDLE buffer, uint32_t part, int32_t command) {
        return Ask(p.DSGetBufferPartInfo, stream, buffer, part, command);
    }
    // Type, offset, size, lines; format, source, region, purpose.
    std::vector<size_t> PartOf(BUFFER_HANDLE buffer, uint32_t part) {
        const auto size = [&](int32_t command) { return PartInfo(buffer, part, command).Size(); };
        const auto number = [&](int32_t command) {
            return PartInfo(buffer, part, command).Uint64();
        };
        const auto* const base =
            static_cast<uint8_t*>(PartInfo(buffer, part, BUFFER_PART_INFO_BASE).Pointer());
        return {size(BUFFER_PART_INFO_DATA_TYPE),     static_cast<size_t>(base - Data(buffer)),
                size(BUFFER_PART_INFO_DATA_SIZE),     size(BUFFER_PART_INFO_DELIVERED_IMAGEHEIGHT),
                number(BUFFER_PART_INFO_DATA_FORMAT), number(BUFFER_PART_INFO_SOURCE_ID),
                number(BUFFER_PART_INFO_REGION_ID),   number(BUFFER_PART_INFO_DATA_PURPOSE_ID)};
    }
    Bytes DataOf(BUFFER_HANDLE buffer, size_t offset, size_t size) {
        return {Data(buffer) + offset, Data(buffer) + offset + size};
    }
    Bytes TimestampOf(BUFFER_HANDLE buffer) {
        const Info info = BufferInfo(buffer, BUFFER_INFO_TIMESTAMP);
        return {info.bytes.begin(), info.bytes.end()};
    }
};

}  // namespace

TEST_F(ComponentTest, FramesHaveAPartForEach) {
    Open(kKeys, "GEV");
    ASSERT_EQ(PayloadSize(), kAll);
    AllocateAndQueue(2);
    ASSERT_EQ(Start(2), GC_ERR_SUCCESS);
    for (uint64_t frame = 0; frame < 2; ++frame) {
        const BUFFER_HANDLE buffer = Fetch();
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PAYLOADTYPE).Size(),
                  size_t{PAYLOAD_TYPE_MULTI_PART});
        EXPECT_FALSE(BufferInfo(buffer, BUFFER_INFO_IMAGEPRESENT).Bool());
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(), kAll);
        ASSERT_EQ(NumParts(buffer), 3U);
        EXPECT_THAT(PartOf(buffer, 0), ElementsAre(1, 0, kIntensity, 40, 0x01080001, 1, 2, 1));
        EXPECT_THAT(PartOf(buffer, 1), ElementsAre(5, kIntensity, kRange, 40, 0x011000B8, 1, 2, 4));
        EXPECT_THAT(PartOf(buffer, 2),
                    ElementsAre(9, kIntensity + kRange, kIntensity, 40, 0x010800C6, 1, 2, 6));
        const std::pair<int32_t, size_t> places[] = {{BUFFER_PART_INFO_WIDTH, 64},
                                                     {BUFFER_PART_INFO_HEIGHT, 40},
                                                     {BUFFER_PART_INFO_XOFFSET, 4},
                                                     {BUFFER_PART_INFO_YOFFSET, 2},
                                                     {BUFFER_PART_INFO_XPADDING, 3}};
        for (const auto& [command, value] : places)
            EXPECT_EQ(PartInfo(buffer, 2, command).Size(), value) << command;
        Bytes gradient(64);  // of the last line, moved by 8 pixels a frame
        std::iota(gradient.begin(), gradient.end(), static_cast<uint8_t>(8 * frame));
        EXPECT_EQ(DataOf(buffer, size_t{67} * 39, 64), gradient);
        EXPECT_EQ(DataOf(buffer, kIntensity, kRange - 5), RangeBytes(frame, 64, 40, 3));
        EXPECT_EQ(DataOf(buffer, kIntensity + kRange, kIntensity - 5),
                  ConfidenceBytes(frame, 64, 40, 3));
    }
}

TEST_F(ComponentTest, AreEnabledWhileNothingIsLocked) {
    Open(kKeys, "GEV");
    Enable("Intensity", "false");
    EXPECT_EQ(PayloadSize(), kIntensity + kRange);
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size(), kIntensity + kRange);
    nodes->Set("ComponentSelector", "Range");
    EXPECT_EQ(nodes->Get("ComponentIDValue"), "4");
    Enable("Confidence", "false");
    EXPECT_EQ(nodes->Get("ComponentIDValue"), "6");
    EXPECT_EQ(PayloadSize(), kRange);
    EXPECT_THROW(Enable("Range", "false"), std::runtime_error) << "the last one";
    EXPECT_EQ(PayloadSize(), kRange);

    nodes->Set("TLParamsLocked", "1");
    EXPECT_EQ(nodes->Node("ComponentEnable")->GetAccessMode(), RO);
    const uint32_t on = 1;
    size_t size = sizeof on;
    EXPECT_EQ(p.GCWritePort(Remote(), 0x2140, &on, &size), GC_ERR_ACCESS_DENIED);
    nodes->Set("TLParamsLocked", "0");
    Enable("Confidence", "true");

    AllocateAndQueue(1);
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    const BUFFER_HANDLE buffer = Fetch();
    ASSERT_EQ(NumParts(buffer), 2U);
    EXPECT_THAT(PartOf(buffer, 0), ElementsAre(5, 0, kRange, 40, 0x011000B8, 1, 2, 4));
    EXPECT_EQ(DataOf(buffer, kRange, kIntensity - 5), ConfidenceBytes(0, 64, 40, 3));
}

TEST_F(ComponentTest, OnlyThreeDimensionalCamerasHave) {
    Open("imageOffset='16'", "GEV");
    EXPECT_EQ(nodes->Node("ComponentSelector"), nullptr);
    for (const char* keys : {"payload='3D'", "payload='MultiPart' imageOffset='16'"}) {
        const std::string config = std::string("<ZelSim><Interface id='I' type='GEV'>") +
                                   "<Camera id='C' " + keys + "/></Interface></ZelSim>";
        EXPECT_EQ(p.Configure(config.c_str()), GC_ERR_INVALID_PARAMETER) << keys;
    }
}

TEST_F(ComponentTest, LosesTheLowerHalfOrWhatHasNoRoom) {
    Open(std::string(kKeys) + "incompleteEvery='2'", "GEV");
    AllocateAndQueue(2);
    ASSERT_EQ(Start(2), GC_ERR_SUCCESS);
    EXPECT_FALSE(BufferInfo(Fetch(), BUFFER_INFO_IS_INCOMPLETE).Bool());
    BUFFER_HANDLE buffer = Fetch();
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_IS_INCOMPLETE).Bool());
    EXPECT_THAT(PartOf(buffer, 1),
                ElementsAre(5, kIntensity, size_t{131} * 20, 20, 0x011000B8, 1, 2, 4));
    EXPECT_EQ(DataOf(buffer, kIntensity + kRange, size_t{67} * 20), ConfidenceBytes(1, 64, 20, 3));
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size(),
              kIntensity + kRange + size_t{67} * 20);

    ASSERT_EQ(Stop(), GC_ERR_SUCCESS);
    constexpr size_t kRoom = kIntensity + size_t{131} * 10 + 130;
    buffer = QueueMemory(kRoom);
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    ASSERT_EQ(Fetch(), buffer);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_DATA_LARGER_THAN_BUFFER).Bool());
    EXPECT_THAT(PartOf(buffer, 1),
                ElementsAre(5, kIntensity, size_t{131} * 10, 10, 0x011000B8, 1, 2, 4));
    EXPECT_THAT(PartOf(buffer, 2), ElementsAre(9, kRoom, 0, 0, 0x010800C6, 1, 2, 6));
    EXPECT_EQ(DataOf(buffer, kRoom - 130, 130), Bytes(130, 0xEE)) << "no part of a line";
}

TEST_F(ComponentTest, ChunksFollowTheParts) {
    Open(kKeys, "GEV");
    nodes->Set("ChunkModeActive", "true");
    EXPECT_EQ(PayloadSize(), kAll) << "the image is no chunk";
    nodes->Set("ChunkSelector", "Height");
    nodes->Set("ChunkEnable", "true");
    ASSERT_EQ(PayloadSize(), kAll + 12);
    AllocateAndQueue(1);
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    const BUFFER_HANDLE buffer = Fetch();
    ASSERT_EQ(NumParts(buffer), 4U);
    EXPECT_THAT(PartOf(buffer, 3), ElementsAre(1010, kAll, 12, 0, 0, 0, 0, 0));
    std::vector<SINGLE_CHUNK_DATA> chunks(4);
    size_t count = chunks.size();
    ASSERT_EQ(p.DSGetBufferChunkData(stream, buffer, chunks.data(), &count), GC_ERR_SUCCESS);
    ASSERT_EQ(count, 1U);
    EXPECT_EQ(chunks[0].ChunkOffset, static_cast<ptrdiff_t>(kAll));
    EXPECT_EQ(Data(buffer)[kAll], 40);
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE).Size(), 12U);
}

TEST_F(ComponentTest, AContainerDescribesItself) {
    std::string keys(kKeys);
    Open(keys.replace(keys.find("MultiPart"), 9, "GenDC"), "GEV");
    EXPECT_EQ(nodes->Node("ChunkModeActive"), nullptr);
    EXPECT_EQ(PayloadSize(), 56 + 120 * 3 + kAll);
    Enable("Intensity", "false");
    Enable("Confidence", "false");
    ASSERT_EQ(PayloadSize(), 176 + kRange);
    AllocateAndQueue(1);
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    const BUFFER_HANDLE buffer = Fetch();
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PAYLOADTYPE).Size(), size_t{PAYLOAD_TYPE_GENDC});
    uint32_t count = 0;
    EXPECT_EQ(p.DSGetNumBufferParts(stream, buffer, &count), GC_ERR_NO_DATA);
    Bytes descriptor = DataOf(buffer, 0, 176);
    std::fill_n(descriptor.begin() + 88, 8, uint8_t{0xEE});  // the time stamp
    EXPECT_EQ(descriptor,
              Hex("474e4443 010000 00 0010 0000 40000000 0000000000000000 2100 0000 00000000"
                  "7d14000000000000 b000000000000000 b0000000 01000000 4000000000000000"
                  "0020 0000 38000000 0000 0000 0100 0200 04000000 02000000 eeeeeeeeeeeeeeee"
                  "0400000000000000 b8001001 0000 0100 7800000000000000"
                  "0042 0000 38000000 b8001001 0000 0000 0000000000000000 7d14000000000000"
                  "b000000000000000 40000000 28000000 0300 0500 00000000"));
    EXPECT_EQ(DataOf(buffer, 88, 8), TimestampOf(buffer));
    EXPECT_EQ(DataOf(buffer, 176, kRange - 5), RangeBytes(0, 64, 40, 3));
}
