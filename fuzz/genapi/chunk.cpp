// The chunks of a hostile device's buffers, for all adapters.
//
// The first byte of an input chooses the adapter: 0 GigE Vision, 1 USB3 Vision, 2 generic with
// numbers as ids, 3 generic with texts. The generic ones take from the input how many chunks there
// are (one byte), and of each the id (one byte), the offset and the length (eight bytes each). The
// rest is the buffer. GenericException is the only answer to a bad one; everything else is a
// finding.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <Base/GCException.h>
#include <GenApi/ChunkAdapterGEV.h>
#include <GenApi/ChunkAdapterGeneric.h>
#include <GenApi/ChunkAdapterU3V.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Pointer.h>

#include "fuzz/message.h"

using namespace GENAPI_NAMESPACE;

namespace {

const char kDescription[] = R"(<RegisterDescription ModelName="M" VendorName="V"
    StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="00000000-0000-0000-0000-000000000001"
    VersionGuid="00000000-0000-0000-0000-000000000002"
    xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>Plain</pFeature><pFeature>Cached</pFeature></Category>
  <Port Name="One"><ChunkID>01</ChunkID></Port>
  <Port Name="Two"><ChunkID>00000002</ChunkID><CacheChunkData>Yes</CacheChunkData></Port>
  <Port Name="Three"><pChunkID>Id</pChunkID></Port>
  <String Name="Id"><Value>03</Value></String>
  <IntReg Name="Plain"><Address>0</Address><Length>4</Length><AccessMode>RW</AccessMode>
    <pPort>One</pPort><Endianess>BigEndian</Endianess></IntReg>
  <IntReg Name="Cached"><Address>2</Address><Length>2</Length><AccessMode>RW</AccessMode>
    <pPort>Two</pPort><Endianess>LittleEndian</Endianess></IntReg>
  <IntReg Name="Dynamic"><Address>0</Address><Length>1</Length><AccessMode>RO</AccessMode>
    <pPort>Three</pPort><Endianess>LittleEndian</Endianess></IntReg>
  <StringReg Name="Far"><Address>0x7FFFFFFFFFFFFFF0</Address><Length>64</Length>
    <AccessMode>RO</AccessMode><pPort>One</pPort></StringReg>
</RegisterDescription>)";

template <typename Step>
void Try(Step step) {
    try {
        step();
    } catch (const GENICAM_NAMESPACE::GenericException&) {
        // refusing the input is right; only a crash or a hang is a fault
    }
}

void UseFeatures(INodeMap& map) {
    for (const char* name : {"Plain", "Cached", "Dynamic"}) {
        const CIntegerPtr feature(map.GetNode(name));
        Try([&] { feature->GetValue(); });
        Try([&] { feature->SetValue(1, false); });
    }
    Try([&] { CStringPtr(map.GetNode("Far"))->GetValue(); });
}

// A copy of its own on the heap, so that a sanitizer sees a use beyond it or after its end.
using Buffer = std::vector<uint8_t>;

// `attach(adapter, buffer, length)` is how the adapter is told of a buffer.
template <class Adapter, class Attach>
void Show(INodeMap& map, const Fuzz::Message& message, Attach attach) {
    Adapter adapter(&map, message.size % 2 == 0 ? -1 : 3);
    auto first = std::make_unique<Buffer>(message.data, message.data + message.size);
    auto second = std::make_unique<Buffer>(*first);
    const auto length = static_cast<int64_t>(message.size);
    Try([&] { adapter.CheckBufferLayout(first->data(), length); });
    Try([&] { attach(adapter, first->data(), length); });
    UseFeatures(map);
    Try([&] {
        const char* const ids[] = {"00", "01", "02", "03"};
        CStringPtr(map.GetNode("Id"))->SetValue(ids[length % 4]);
    });
    Try([&] { adapter.UpdateBuffer(second->data()); });
    UseFeatures(map);
    adapter.DetachBuffer();
    first.reset();
    second.reset();
    UseFeatures(map);
    adapter.ClearCaches();
    UseFeatures(map);
}

template <class Trailed>
void ShowTrailed(INodeMap& map, const Fuzz::Message& message) {
    Show<Trailed>(map, message, [](Trailed& adapter, uint8_t* buffer, int64_t length) {
        adapter.AttachBuffer(buffer, length);
    });
}

template <class Chunk>
void ShowListed(INodeMap& map, Fuzz::Message& message) {
    std::vector<Chunk> chunks(message.Number(1) % 8);
    for (Chunk& chunk : chunks) {
        const uint64_t id = message.Number(1) % 4;
        if constexpr (std::is_integral_v<decltype(chunk.ChunkID)>)
            chunk.ChunkID = id;
        else
            chunk.ChunkID = std::to_string(id).c_str();
        chunk.ChunkOffset = static_cast<ptrdiff_t>(message.Number(8));
        chunk.ChunkLength = message.Number(8);
    }
    Show<CChunkAdapterGeneric>(map, message,
                               [&](CChunkAdapterGeneric& adapter, uint8_t* buffer, int64_t length) {
                                   adapter.AttachBuffer(buffer, length, chunks.data(),
                                                        static_cast<int64_t>(chunks.size()));
                               });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static CNodeMapRef map;
    if (map._Ptr == nullptr) map._LoadXMLFromString(kDescription);
    Fuzz::Message input{data, size};
    switch (input.Number(1) % 4) {
        case 0:
            ShowTrailed<CChunkAdapterGEV>(*map._Ptr, input);
            break;
        case 1:
            ShowTrailed<CChunkAdapterU3V>(*map._Ptr, input);
            break;
        case 2:
            ShowListed<SingleChunkData_t>(*map._Ptr, input);
            break;
        default:
            ShowListed<SingleChunkDataStr_t>(*map._Ptr, input);
    }
    return 0;
}
