// Chunk data in a node map.
#include <memory>
#include <string>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/ChunkAdapterGEV.h>
#include <GenApi/ChunkAdapterGeneric.h>
#include <GenApi/ChunkAdapterU3V.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/Pointer.h>
#include <gmock/gmock.h>

#include "tests/genapi/adapters/description.h"

using namespace GENAPI_NAMESPACE;

namespace {

using Bytes = std::vector<uint8_t>;

std::string ChunkPortNode(const std::string& name, const std::string& elements) {
    return "<Port Name=\"" + name + "\">" + elements + "</Port>";
}

const std::string kChunkNodes =
    ChunkPortNode("Device", "") + ChunkPortNode("Gain", "<ChunkID>9efc2cdb</ChunkID>") +
    ChunkPortNode("Kept", "<ChunkID>02</ChunkID><CacheChunkData>Yes</CacheChunkData>") +
    RegisterOn("Gain", "GainValue", 0, 2) + RegisterOn("Kept", "KeptValue", 0, 2);

// Image of four bytes (id 1), gain 0x2021.
Bytes GevBuffer(uint8_t gain = 0x21) {
    return {0x10, 0x11, 0x12, 0x13, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,
            0x04, 0x20, gain, 0x9E, 0xFC, 0x2C, 0xDB, 0x00, 0x00, 0x00, 0x02};
}
// Kept value 0x3031 with id 2.
const Bytes kKeptOnly = {0x30, 0x31, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x02};

void Attach(CChunkAdapter& adapter, Bytes& buffer, AttachStatistics_t* statistics = nullptr) {
    adapter.AttachBuffer(buffer.data(), static_cast<int64_t>(buffer.size()), statistics);
}

class ChunkAdapterTest : public testing::Test {
  protected:
    void SetUp() override { Load(map, kChunkNodes); }

    EAccessMode Mode(const char* name) { return map._GetNode(name)->GetAccessMode(); }
    int64_t Value(const char* name) { return CIntegerPtr(map._GetNode(name))->GetValue(); }

    CNodeMapRef map;
};

TEST_F(ChunkAdapterTest, ShowsTheAttachedBuffer) {
    auto adapter = std::make_unique<CChunkAdapterGEV>(map._Ptr);
    EXPECT_EQ(Mode("GainValue"), NA);
    EXPECT_EQ(Mode("Device"), NI);

    Bytes buffer = GevBuffer();
    EXPECT_TRUE(adapter->CheckBufferLayout(buffer.data(), static_cast<int64_t>(buffer.size())));
    CChunkAdapter::AttachStatistics_t statistics{};
    Attach(*adapter, buffer, &statistics);
    EXPECT_EQ(statistics.NumChunkPorts, 2);
    EXPECT_EQ(statistics.NumChunks, 2);
    EXPECT_EQ(statistics.NumAttachedChunks, 1);
    EXPECT_EQ(Mode("GainValue"), RO);
    EXPECT_EQ(Value("GainValue"), 0x2021);
    EXPECT_EQ(Mode("KeptValue"), NA);

    uint8_t bytes[3];
    EXPECT_THROW(CPortPtr(map._GetNode("Gain"))->Read(bytes, 0, 3),
                 GENICAM_NAMESPACE::RuntimeException);

    // Another buffer of the same layout, read where it is.
    Bytes next = GevBuffer(0x42);
    adapter->UpdateBuffer(next.data());
    EXPECT_EQ(Value("GainValue"), 0x2042);

    adapter->DetachBuffer();
    EXPECT_EQ(Mode("GainValue"), NA);
    EXPECT_THROW(adapter->UpdateBuffer(next.data()), GENICAM_NAMESPACE::LogicalErrorException);
    adapter.reset();
    EXPECT_EQ(Mode("GainValue"), NA);
}

TEST_F(ChunkAdapterTest, ABufferWithoutTheChunkShowsNone) {
    CChunkAdapterGEV adapter(map._Ptr);
    Bytes buffer = GevBuffer();
    Bytes next = kKeptOnly;
    Attach(adapter, buffer);
    Attach(adapter, next);
    EXPECT_EQ(Mode("GainValue"), NA);
    EXPECT_EQ(Value("KeptValue"), 0x3031);
}

TEST_F(ChunkAdapterTest, MalformedBuffersChangeNothing) {
    CChunkAdapterGEV adapter(map._Ptr);
    Bytes buffer = GevBuffer();
    Attach(adapter, buffer);
    Bytes bad = GevBuffer();
    bad.back() = 3;
    EXPECT_FALSE(adapter.CheckBufferLayout(bad.data(), static_cast<int64_t>(bad.size())));
    EXPECT_THROW(Attach(adapter, bad), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_EQ(Value("GainValue"), 0x2021);
}

TEST_F(ChunkAdapterTest, CachedChunksOutliveTheirBuffer) {
    CChunkAdapterGEV adapter(map._Ptr);
    Bytes buffer = kKeptOnly;
    Attach(adapter, buffer);
    adapter.ClearCaches();  // not while the buffer is there
    buffer[1] = 0xFF;
    EXPECT_EQ(Value("KeptValue"), 0x3031);
    adapter.DetachBuffer();
    EXPECT_EQ(Value("KeptValue"), 0x3031);
    adapter.ClearCaches();
    EXPECT_EQ(Mode("KeptValue"), NA);

    CChunkAdapterGEV small(map._Ptr, 1);
    Attach(small, buffer);
    EXPECT_EQ(Value("KeptValue"), 0x30FF);
    small.DetachBuffer();
    EXPECT_EQ(Mode("KeptValue"), NA);
}

TEST_F(ChunkAdapterTest, CallbacksSeeAllChunksOfTheBuffer) {
    CChunkAdapterGEV adapter(map._Ptr);
    Bytes buffer = GevBuffer();
    buffer.insert(buffer.end(), kKeptOnly.begin(), kKeptOnly.end());
    std::vector<int64_t> seen;
    for (const char* name : {"Gain", "Kept"}) {
        Register(map._GetNode(name), [&](INode*) {
            seen.push_back(Value("GainValue"));
            seen.push_back(Value("KeptValue"));
        });
    }
    Attach(adapter, buffer);
    EXPECT_THAT(seen, testing::ElementsAre(0x2021, 0x3031, 0x2021, 0x3031));
}

TEST_F(ChunkAdapterTest, CallbacksMayDetach) {
    CChunkAdapterGEV adapter(map._Ptr);
    Register(map._GetNode("Gain"), [&](INode*) { adapter.DetachNodeMap(); });
    Bytes buffer = GevBuffer();
    Attach(adapter, buffer);
    EXPECT_EQ(Mode("Gain"), NA);
    EXPECT_EQ(Mode("Kept"), NA);
}

TEST_F(ChunkAdapterTest, U3vIsLittleEndian) {
    CChunkAdapterU3V adapter(map._Ptr);
    Bytes buffer = {0x20, 0x21, 0xDB, 0x2C, 0xFC, 0x9E, 0x02, 0x00, 0x00, 0x00};
    Attach(adapter, buffer);
    EXPECT_EQ(Value("GainValue"), 0x2021);
    Bytes big = GevBuffer();
    EXPECT_THROW(Attach(adapter, big), GENICAM_NAMESPACE::RuntimeException);
}

TEST_F(ChunkAdapterTest, GenericTakesAList) {
    CChunkAdapterGeneric adapter(map._Ptr);
    Bytes buffer = {0, 0x20, 0x21, 0x30, 0x31};
    SingleChunkData_t chunks[] = {{0x9EFC2CDB, 1, 2}, {7, 0, 5}, {2, 3, 2}};
    AttachStatistics_t statistics{};
    adapter.AttachBuffer(buffer.data(), 5, chunks, 3, &statistics);
    EXPECT_EQ(statistics.NumChunks, 3);
    EXPECT_EQ(statistics.NumAttachedChunks, 2);
    EXPECT_EQ(Value("GainValue"), 0x2021);
    EXPECT_EQ(Value("KeptValue"), 0x3031);

    SingleChunkDataStr_t named[] = {{"9EFC2CDB", 0, 2}};
    adapter.AttachBuffer(buffer.data(), 5, named, 1);
    EXPECT_EQ(Value("GainValue"), 0x20);

    for (const SingleChunkData_t& place :
         {SingleChunkData_t{2, -1, 2}, {2, 6, 0}, {2, 4, 2}, {2, 0, SIZE_MAX}}) {
        SingleChunkData_t bad = place;
        EXPECT_THROW(adapter.AttachBuffer(buffer.data(), 5, &bad, 1),
                     GENICAM_NAMESPACE::RuntimeException);
    }
    EXPECT_THROW(Attach(adapter, buffer), GENICAM_NAMESPACE::RuntimeException);
    EXPECT_EQ(Value("GainValue"), 0x20);
}

TEST_F(ChunkAdapterTest, TheIdMayBeTheValueOfANode) {
    CNodeMapRef variable;
    Load(variable, ChunkPortNode("Chunk", "<pChunkID>Which</pChunkID>") +
                       "<String Name=\"Which\"><Value>02</Value></String>" +
                       RegisterOn("Chunk", "ChunkValue", 0, 2));
    CChunkAdapterGEV adapter(variable._Ptr);
    Bytes buffer = kKeptOnly;
    Attach(adapter, buffer);
    CIntegerPtr value(variable._GetNode("ChunkValue"));
    EXPECT_EQ(value->GetValue(), 0x3031);
    CStringPtr(variable._GetNode("Which"))->SetValue("03");
    Attach(adapter, buffer);
    EXPECT_FALSE(IsReadable(value));
}

}  // namespace
