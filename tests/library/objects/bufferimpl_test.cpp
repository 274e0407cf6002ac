// Buffers: the getters, and the geometry of an image.
#include "ZelCameraApi/bufferimpl.h"

#include <algorithm>
#include <functional>

#include "tests/genapi/support/description.h"
#include "tests/library/support/fixture.h"
#include "tests/wire/bytes.h"

using testing::ElementsAre;

namespace {

class BufferTest : public SessionTest {
  protected:
    void SetUp() override {
        ASSERT_NO_FATAL_FAILURE(OpenStream());
        Create(0x10000);
    }

    // A new buffer; its description is made anew.
    void Create(size_t size) {
        if (buffer != nullptr) stream->RevokeBuffer(buffer);
        buffer = stream->CreateBuffer(size, &user, nullptr);
        ASSERT_NE(buffer, nullptr);
        Calls();
    }

    void AnswerSize(int command, size_t value) {
        Answer("DSGetBufferInfo", command, Scripted::Gives(value, GenTL::INFO_DATATYPE_SIZET));
    }
    void AnswerNumber(int command, uint64_t value) {
        Answer("DSGetBufferInfo", command, Scripted::Gives(value, GenTL::INFO_DATATYPE_UINT64));
    }

    int user = 0;
    ZelCam::Buffer* buffer = nullptr;
};

template <auto GETTER>
uint64_t Get(ZelCam::Buffer& buffer) {
    const auto value = (buffer.*GETTER)();
    if constexpr (std::is_pointer_v<decltype(value)>) {
        return reinterpret_cast<uintptr_t>(value);
    } else {
        return static_cast<uint64_t>(value);
    }
}

const struct {
    int command;
    GenTL::INFO_DATATYPE type;
    uint64_t (*get)(ZelCam::Buffer&);
    uint64_t value;  // the producer's default, 0 where it differs from buffer to buffer
} kGetters[] = {{0, 10, Get<&ZelCam::Buffer::GetBufferPtr>, 0},
                {18, 12, Get<&ZelCam::Buffer::GetImageOffset>, 8},
                {1, 12, Get<&ZelCam::Buffer::GetBufferSize>, 0x10000},
                {20, 8, Get<&ZelCam::Buffer::GetPixelFormat>, 0x01080001},
                {2, 10, Get<&ZelCam::Buffer::GetUserPtr>, 0},
                {3, 8, Get<&ZelCam::Buffer::GetTimestamp>, 1003},
                {16, 8, Get<&ZelCam::Buffer::GetFrameID>, 1016},
                {7, 11, Get<&ZelCam::Buffer::IsIncomplete>, 1},
                {10, 12, Get<&ZelCam::Buffer::GetWidth>, 100},
                {11, 12, Get<&ZelCam::Buffer::GetHeight>, 50},
                {12, 12, Get<&ZelCam::Buffer::GetXOffset>, 1012},
                {13, 12, Get<&ZelCam::Buffer::GetYOffset>, 1013},
                {14, 12, Get<&ZelCam::Buffer::GetXPadding>, 4},
                {15, 12, Get<&ZelCam::Buffer::GetYPadding>, 1015},
                {22, 12, Get<&ZelCam::Buffer::GetDeliveredHeight>, 1022},
                {1101, 11, Get<&ZelCam::Buffer::IsKacFrameB>, 1}};

}  // namespace

TEST_F(BufferTest, EveryGetterAsksItsCommandAndIsZeroOnAnyFault) {
    EXPECT_EQ(buffer->GetUserPtr(), &user);
    Calls();
    for (const auto& getter : kGetters) {
        SCOPED_TRACE(getter.command);
        for (int i = 0; i < 2; ++i) {
            const uint64_t value = getter.get(*buffer);
            EXPECT_THAT(Calls(), ElementsAre("DSGetBufferInfo " + std::to_string(getter.command)));
            EXPECT_NE(value, 0U);
            if (getter.value != 0) {
                EXPECT_EQ(value, getter.value);
            }
        }
        const bool flag = getter.type == GenTL::INFO_DATATYPE_BOOL8;
        const Scripted::Reply faults[] = {
            Scripted::Fails(-1001), Scripted::ReportsSize(flag ? 8 : 4),
            Scripted::ReportsType(flag ? GenTL::INFO_DATATYPE_UINT64 : GenTL::INFO_DATATYPE_INT64)};
        for (const Scripted::Reply& fault : faults) {
            Answer("DSGetBufferInfo", getter.command, fault);
            EXPECT_EQ(getter.get(*buffer), 0U);
        }
        producer.ClearRules();
        Calls();
    }
}

TEST_F(BufferTest, TimestampIsAskedTwiceWhenItIsNotAvailable) {
    const struct {
        int32_t code;
        size_t failures;
        uint64_t value;
        size_t calls;
    } cases[] = {{-1014, 1, 1003, 2}, {-1003, 1, 1003, 2}, {-1014, 2, 0, 2},
                 {-1003, 2, 0, 2},    {-1001, 1, 0, 1},    {-1006, 1, 0, 1}};
    for (const auto& c : cases) {
        Fail("DSGetBufferInfo", c.code, 3, 0, c.failures);
        EXPECT_EQ(buffer->GetTimestamp(), c.value) << c.code;
        EXPECT_EQ(Calls(), std::vector<std::string>(c.calls, "DSGetBufferInfo 3")) << c.code;
        producer.ClearRules();
    }
    // A value of the wrong type is not asked for again, and the second answer is checked too.
    Answer("DSGetBufferInfo", 3, Scripted::ReportsType(GenTL::INFO_DATATYPE_UINT32));
    EXPECT_EQ(buffer->GetTimestamp(), 0U);
    EXPECT_EQ(Calls().size(), 1U);
    Fail("DSGetBufferInfo", -1014, 3, 0, 1);
    EXPECT_EQ(buffer->GetTimestamp(), 0U);
    EXPECT_EQ(Calls().size(), 2U);
}

TEST_F(BufferTest, DescriptionIsComplete) {
    const ZelImageInfo& image = *buffer->GetImage();
    EXPECT_EQ(image.structSize, 96U);
    EXPECT_EQ(image.version, 2U);
    EXPECT_EQ(image.pixelType, 0x01080101U);
    EXPECT_EQ(image.bitsPerChannel, 8U);
    EXPECT_EQ(image.reserved1, 0U);
    EXPECT_EQ(image.packing, 0x0100U);
    EXPECT_EQ(image.channels, 1U);
    EXPECT_EQ(image.bitsPerPixel, 8U);
    EXPECT_EQ(image.reserved2, 0U);
    EXPECT_EQ(image.width, 100U);
    EXPECT_EQ(image.height, 50U);
    EXPECT_EQ(image.imageSize, 104U * 50U);
    EXPECT_EQ(image.linePitch, 104U);  // with 4 bytes of padding
    EXPECT_EQ(image.timestamp, 1003U);
    EXPECT_EQ(image.frameId, 1016U);
    EXPECT_EQ(image.reserved3, 0U);
    EXPECT_EQ(image.bufferBase, buffer->GetBufferPtr());
    EXPECT_EQ(image.imageData, static_cast<uint8_t*>(image.bufferBase) + 8);
}

TEST_F(BufferTest, OnlyTimestampAndFrameIdFollowLaterFrames) {
    ZelImageInfo* const image = buffer->GetImage();
    const ZelImageInfo before = *image;
    AnswerSize(10, 640);
    AnswerSize(11, 480);
    AnswerNumber(20, 0x02180015);
    AnswerNumber(3, 5555);
    AnswerNumber(16, 6666);
    Calls();
    EXPECT_EQ(buffer->GetImage(), image);
    EXPECT_THAT(Calls(), testing::UnorderedElementsAre("DSGetBufferInfo 3", "DSGetBufferInfo 16"));
    EXPECT_EQ(image->timestamp, 5555U);
    EXPECT_EQ(image->frameId, 6666U);
    EXPECT_EQ(image->width, before.width);
    EXPECT_EQ(image->height, before.height);
    EXPECT_EQ(image->pixelType, before.pixelType);
    EXPECT_EQ(image->imageSize, before.imageSize);
}

TEST_F(BufferTest, GeometryOfEveryPacking) {
    const struct {
        uint64_t format;
        size_t width;
        uint32_t pixelType;
        uint32_t bitsPerChannel;
        uint32_t channels;
        uint32_t bytesPerLine;
    } cases[] = {{0x01080001, 101, 0x01080101, 8, 1, 101},   // Mono8
                 {0x01100003, 101, 0x01100202, 10, 1, 202},  // Mono10
                 {0x010A0046, 101, 0x010A2203, 10, 1, 126},  // truncated: 126.25
                 {0x010A0046, 103, 0x010A2203, 10, 1, 128},  // 128.75
                 {0x010C0047, 101, 0x010C2307, 12, 1, 151},  // Mono12p, 151.5
                 {0x010C0004, 101, 0x010C1204, 10, 1, 151},  // Mono10Packed
                 {0x010C0006, 101, 0x010C1308, 12, 1, 151},  // Mono12Packed
                 {0x010A0058, 3, 0x030A221B, 10, 1, 3},      // BayerRG10p, 3.75
                 {0x010C0059, 3, 0x030C2323, 12, 1, 4},      // BayerRG12p, 4.5
                 {0x02180015, 3, 0x02180172, 8, 3, 9},       // BGR8
                 {0x02200017, 3, 0x02200174, 8, 4, 12},      // BGRa8
                 {0x0210003B, 3, 0x05100185, 8, 3, 6},       // YCbCr422_8
                 {0x02180014, 3, 0x01080101, 8, 1, 3},       // RGB8 has no code: Mono8
                 {0x021E0048, 3, 0x01080101, 8, 1, 3},       // BGR10p likewise
                 {0x12345678, 3, 0x01080101, 8, 1, 3},       // unknown
                 {0x101080009, 3, 0x01080101, 8, 1, 3},      // more than BayerRG8
                 {0x1010C0006, 3, 0x010C1308, 12, 1, 4},     // Mono12Packed in its lower 32 bits
                 {0, 3, 0x01080101, 8, 1, 3},
                 {0x01080001, 0, 0x01080101, 8, 1, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.format << ' ' << std::dec << c.width);
        for (const uint32_t padding : {0U, 3U}) {
            Create(0x10000);
            AnswerNumber(20, c.format);
            AnswerSize(10, c.width);
            AnswerSize(14, padding);
            const ZelImageInfo& image = *buffer->GetImage();
            EXPECT_EQ(image.pixelType, c.pixelType);
            EXPECT_EQ(image.packing, c.pixelType & 0xFF00U);
            EXPECT_EQ(image.bitsPerPixel, c.pixelType >> 16 & 0xFFU);
            EXPECT_EQ(image.bitsPerChannel, c.bitsPerChannel);
            EXPECT_EQ(image.channels, c.channels);
            EXPECT_EQ(image.linePitch, c.bytesPerLine + padding);
            EXPECT_EQ(image.imageSize, (c.bytesPerLine + padding) * 50);
        }
    }
}

TEST_F(BufferTest, ImageSizeIsAtMostTheBuffers) {
    const std::pair<size_t, uint32_t> sizes[] = {{5199, 5199}, {5200, 5200}, {5201, 5200}, {1, 1}};
    for (const auto& [size, expected] : sizes) {
        Create(size);
        EXPECT_EQ(buffer->GetImage()->imageSize, expected);
        EXPECT_EQ(buffer->GetImage()->linePitch, 104U);
    }
}

TEST_F(BufferTest, FailingGettersCountAsZeroInTheDescription) {
    Fail("DSGetBufferInfo", -1014);
    const ZelImageInfo& image = *buffer->GetImage();
    EXPECT_EQ(image.structSize, 96U);
    EXPECT_EQ(image.pixelType, 0x01080101U);
    EXPECT_EQ(image.width + image.height + image.linePitch + image.imageSize, 0U);
    EXPECT_EQ(image.timestamp + image.frameId, 0U);
    EXPECT_EQ(image.bufferBase, nullptr);
    EXPECT_EQ(image.imageData, nullptr);
}

// ---- Parts and chunks --------------------------------------------------------------------------

TEST_F(BufferTest, DescribesPartsAndWhatTheProducerDoesNotSayIsZero) {
    EXPECT_EQ(buffer->GetNumParts(), 2U);
    ZelBufferPart part{};
    ASSERT_EQ(buffer->GetPart(1, &part, sizeof part), ZelCamErr_Success);
    EXPECT_EQ(part.data, buffer->GetBufferPtr());
    EXPECT_THAT(
        (std::vector<uint64_t>{part.size, part.dataType, part.format, part.formatNamespace,
                               part.width, part.height, part.xOffset, part.yOffset, part.xPadding,
                               part.sourceId, part.deliveredHeight, part.regionId,
                               part.dataPurposeId}),
        ElementsAre(2101, 2102, 2103, 2104, 2105, 2106, 2107, 2108, 2109, 2110, 2111, 2112, 2113));
    Fail("DSGetBufferPartInfo", -1003, 12);
    ASSERT_EQ(buffer->GetPart(1, &part, sizeof part), ZelCamErr_Success);
    EXPECT_EQ(part.regionId, 0U);
    EXPECT_EQ(part.dataPurposeId, 2113U);
}

TEST_F(BufferTest, ThereIsNoPartWithoutPlaceOrSize) {
    ZelBufferPart part{};
    EXPECT_EQ(buffer->GetPart(0, nullptr, sizeof part), ZelCamErr_GenTL_InvalidParameter);
    part.width = 1;
    EXPECT_EQ(buffer->GetPart(2, &part, sizeof part), ZelCamErr_GenTL_NotAvailable);
    EXPECT_EQ(part.width, 0U);
    EXPECT_EQ(buffer->GetPart(size_t{1} << 32, &part, sizeof part), -1017);
    for (const int64_t command : {0, 1}) {
        Fail("DSGetBufferPartInfo", -1010, command);
        EXPECT_EQ(buffer->GetPart(0, &part, sizeof part), ZelCamErr_GenTL_Io);
        producer.ClearRules();
    }
    Fail("DSGetNumBufferParts", -1008);
    EXPECT_EQ(buffer->GetNumParts(), 0U);
}

// A container with one part, a line of 4 bytes, which the producer hands over as it is.
TEST_F(BufferTest, FindsThePartsOfAContainerThatTheProducerDoesNotList) {
    const auto container = WireTest::Hex(
        "474e4443 01000000 0010 0000 40000000 0000000000000000 0000000000000000 0400000000000000"
        "a000000000000000 a0000000 01000000 4000000000000000"
        "0020 0000 38000000 0000 0000 0000 0000 00000000 00000000 0000000000000000"
        "0180000000000000 01000801 0000 0100 7800000000000000"
        "0041 0000 28000000 01000801 0000 0000 0000000000000000 0400000000000000"
        "a000000000000000 d0d1d2d3");
    Create(container.size());
    auto* const bytes = static_cast<uint8_t*>(buffer->GetBufferPtr());
    std::copy(container.begin(), container.end(), bytes);
    AnswerSize(GenTL::BUFFER_INFO_PAYLOADTYPE, GenTL::PAYLOAD_TYPE_GENDC);
    EXPECT_EQ(buffer->GetNumParts(), 2U) << "those that the producer lists";
    Fail("DSGetNumBufferParts", -1008);
    ASSERT_EQ(buffer->GetNumParts(), 1U);
    ZelBufferPart part{};
    ASSERT_EQ(buffer->GetPart(0, &part, sizeof part), ZelCamErr_Success);
    EXPECT_EQ(part.data, bytes + 160);
    EXPECT_EQ(part.size, 4U);
    EXPECT_EQ(part.dataPurposeId, 0x8001U);
    EXPECT_EQ(buffer->GetPart(1, &part, sizeof part), -1017);

    AnswerSize(GenTL::BUFFER_INFO_SIZE, container.size() - 1);
    EXPECT_EQ(buffer->GetNumParts(), 0U);
    part.size = 1;
    EXPECT_EQ(buffer->GetPart(0, &part, sizeof part), ZelCamErr_GenTL_InvalidBuffer);
    EXPECT_EQ(part.size, 0U);
    AnswerSize(GenTL::BUFFER_INFO_PAYLOADTYPE, GenTL::PAYLOAD_TYPE_RAW_DATA);
    EXPECT_NE(buffer->GetPart(0, &part, sizeof part), ZelCamErr_GenTL_InvalidBuffer);
}

// As programs do that know fewer members.
TEST_F(BufferTest, WritesNoMoreOfAPartThanTheCallerHas) {
    ZelBufferPart part{};
    part.width = part.dataPurposeId = 7;
    ASSERT_EQ(buffer->GetPart(0, &part, offsetof(ZelBufferPart, width)), ZelCamErr_Success);
    EXPECT_EQ(part.size, 2001U);
    EXPECT_EQ(part.width, 7U);
    EXPECT_EQ(part.dataPurposeId, 7U);
}

// The producer does not list chunks, and the camera is one of GigE Vision: data, id and length,
// both big-endian.
TEST_F(BufferTest, FindsChunksByTheLayoutOfTheTransport) {
    producer.SetDescription(test::Document("<Category Name='Root'/>" + test::kPort));
    Create(12);
    auto* const bytes = static_cast<uint8_t*>(buffer->GetBufferPtr());
    std::fill_n(bytes, 12, uint8_t{0});
    bytes[7] = 1;
    bytes[11] = 4;
    EXPECT_EQ(buffer->AttachChunks(), ZelCamErr_Success);
    bytes[11] = 5;
    EXPECT_EQ(buffer->AttachChunks(), -1018);
    Fail("DSGetBufferInfo", -1008, GenTL::BUFFER_INFO_SIZE_FILLED);
    EXPECT_EQ(buffer->AttachChunks(), ZelCamErr_GenTL_NoData);
}
