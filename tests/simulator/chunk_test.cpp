// Chunks behind the image.

#include <GenApi/ChunkAdapterGEV.h>
#include <GenApi/ChunkAdapterU3V.h>

#include "tests/simulator/cameranodestest.h"
#include "tests/simulator/producer.h"

using namespace GENAPI_NAMESPACE;
using namespace GenTL;

namespace {

class ChunkTest : public CameraNodesTest {
  protected:
    void EnableChunks(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            nodes->Set("ChunkSelector", name);
            nodes->Set("ChunkEnable", "true");
        }
        nodes->Set("ChunkModeActive", "true");
    }
    GC_ERROR ChunkData(BUFFER_HANDLE buffer, std::vector<SINGLE_CHUNK_DATA>& chunks) {
        size_t count = 0;
        const GC_ERROR code = p.DSGetBufferChunkData(stream, buffer, nullptr, &count);
        if (code != GC_ERR_SUCCESS) return code;
        chunks.resize(count);
        return p.DSGetBufferChunkData(stream, buffer, chunks.data(), &count);
    }
    void Attach(CChunkAdapter& adapter, BUFFER_HANDLE buffer,
                CChunkAdapter::AttachStatistics_t* statistics = nullptr) {
        const size_t size = BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size();
        adapter.AttachBuffer(const_cast<uint8_t*>(Data(buffer)), static_cast<int64_t>(size),
                             statistics);
    }

    // The chunks of frames 0 and 1 are what the buffer and the features say.
    void CheckAllChunks(CChunkAdapter& adapter) {
        EnableChunks(
            {"Width", "Height", "PixelFormat", "FrameID", "Timestamp", "ExposureTime", "Gain"});
        nodes->Set("Gain", "6.5");
        AllocateAndQueue(2);
        ASSERT_EQ(Start(2), GC_ERR_SUCCESS);
        for (int64_t frame = 0; frame < 2; ++frame) {
            const BUFFER_HANDLE buffer = Fetch();
            CChunkAdapter::AttachStatistics_t statistics{};
            Attach(adapter, buffer, &statistics);
            EXPECT_EQ(statistics.NumChunks, 8);
            EXPECT_EQ(statistics.NumAttachedChunks, 7);
            EXPECT_EQ(nodes->Integer("ChunkWidth"), 34);
            EXPECT_EQ(nodes->Integer("ChunkHeight"), 33);
            EXPECT_EQ(nodes->Get("ChunkPixelFormat"), "BGR8");
            EXPECT_EQ(nodes->Integer("ChunkFrameID"), frame);
            EXPECT_EQ(static_cast<uint64_t>(nodes->Integer("ChunkTimestamp")),
                      BufferInfo(buffer, BUFFER_INFO_TIMESTAMP).Uint64());
            EXPECT_EQ(nodes->Get("ChunkExposureTime"), nodes->Get("ExposureTime"));
            EXPECT_EQ(nodes->Get("ChunkGain"), "6.5");
        }
        adapter.DetachBuffer();
        EXPECT_EQ(nodes->Node("ChunkWidth")->GetAccessMode(), NA);
    }
};

// The byte order of the registers is the other one than that of the layout.
constexpr char kOddFrames[] = "width='34' height='33' pixelFormat='BGR8' frameRate='0'";

TEST_F(ChunkTest, GevLayoutReachesTheFeatures) {
    Open(kOddFrames, "GEV");
    CChunkAdapterGEV adapter(&nodes->Map());
    CheckAllChunks(adapter);
}

TEST_F(ChunkTest, U3vLayoutReachesTheFeatures) {
    Open(std::string(kOddFrames) + " bigEndian='true'", "U3V");
    CChunkAdapterU3V adapter(&nodes->Map());
    CheckAllChunks(adapter);
}

TEST_F(ChunkTest, TheProducerSaysWhereChunksAre) {
    Open(kOddFrames, "GEV");
    constexpr size_t kImage = size_t{34} * 3 * 33;  // 3366
    constexpr size_t kImageChunk = kImage + 2 + 8;  // whole words, and the trailer
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size(), kImage);
    EnableChunks({"Height", "FrameID"});
    EXPECT_EQ(StreamInfo(STREAM_INFO_PAYLOAD_SIZE).Size(), kImageChunk + 4 + 8 + 8 + 8);
    EXPECT_EQ(nodes->Integer("PayloadSize"), static_cast<int64_t>(kImageChunk + 28));
    AllocateAndQueue(1);
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    EXPECT_EQ(nodes->Node("ChunkModeActive")->GetAccessMode(), RO);
    const BUFFER_HANDLE buffer = Fetch();
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_PAYLOADTYPE).Size(), size_t{PAYLOAD_TYPE_IMAGE});
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_CONTAINS_CHUNKDATA).Bool());
    EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_DELIVERED_CHUNKPAYLOADSIZE).Size(), kImageChunk + 28);
    std::vector<SINGLE_CHUNK_DATA> chunks;
    ASSERT_EQ(ChunkData(buffer, chunks), GC_ERR_SUCCESS);
    ASSERT_EQ(chunks.size(), 3U);
    EXPECT_EQ(chunks[0].ChunkOffset, 0);
    EXPECT_EQ(chunks[0].ChunkLength, kImage + 2);
    EXPECT_EQ(chunks[1].ChunkOffset, static_cast<ptrdiff_t>(kImageChunk));
    EXPECT_EQ(chunks[1].ChunkLength, 4U);
    EXPECT_EQ(Data(buffer)[chunks[1].ChunkOffset], 33);
    size_t tooFew = 2;
    EXPECT_EQ(p.DSGetBufferChunkData(stream, buffer, chunks.data(), &tooFew),
              GC_ERR_BUFFER_TOO_SMALL);
}

TEST_F(ChunkTest, FramesWithoutChunksHaveNone) {
    Open("incompleteEvery='2' frameRate='0'", "GEV");
    AllocateAndQueue(1);  // too small for the image with chunks
    std::vector<SINGLE_CHUNK_DATA> chunks;
    const auto fetchWithout = [&] {
        const BUFFER_HANDLE buffer = Fetch();
        EXPECT_EQ(ChunkData(buffer, chunks), GC_ERR_NO_DATA);
        EXPECT_FALSE(BufferInfo(buffer, BUFFER_INFO_CONTAINS_CHUNKDATA).Bool());
        EXPECT_EQ(BufferInfo(buffer, BUFFER_INFO_CHUNKLAYOUTID).code, GC_ERR_NOT_AVAILABLE);
        return buffer;
    };
    ASSERT_EQ(Start(1), GC_ERR_SUCCESS);
    const BUFFER_HANDLE buffer = fetchWithout();
    ASSERT_EQ(Stop(), GC_ERR_SUCCESS);
    EnableChunks({});
    ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    AllocateAndQueue(1);
    ASSERT_EQ(Start(2), GC_ERR_SUCCESS);
    EXPECT_EQ(fetchWithout(), buffer);
    EXPECT_TRUE(BufferInfo(buffer, BUFFER_INFO_DATA_LARGER_THAN_BUFFER).Bool());
    EXPECT_TRUE(BufferInfo(fetchWithout(), BUFFER_INFO_IS_INCOMPLETE).Bool());
}

}  // namespace
