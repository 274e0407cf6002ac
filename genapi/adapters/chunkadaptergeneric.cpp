#include <Base/GCException.h>
#include <GenApi/ChunkAdapterGeneric.h>

#include "genapi/adapters/chunks.h"
#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {
namespace {

bool MakeId(uint64_t number, std::string& id) {
    id = Engine::HexId(number);
    return true;
}

bool MakeId(const GENICAM_NAMESPACE::gcstring& text, std::string& id) {
    return Engine::ParseHexId(text, id);
}

template <class Place>
Engine::Chunk ChunkAt(const Place& place, int64_t bufferLength) {
    Engine::Chunk chunk{{}, place.ChunkOffset, static_cast<int64_t>(place.ChunkLength)};
    if (!MakeId(place.ChunkID, chunk.id)) {
        throw RUNTIME_EXCEPTION("A chunk's ID is not a hexadecimal number");
    }
    const bool starts = 0 <= chunk.offset && chunk.offset <= bufferLength;
    if (!starts || chunk.length < 0 || chunk.length > bufferLength - chunk.offset) {
        throw RUNTIME_EXCEPTION("The chunk with ID %s is not inside the buffer", chunk.id.c_str());
    }
    return chunk;
}

template <class Place>
std::vector<Engine::Chunk> ChunksAt(const uint8_t* buffer, int64_t bufferLength,
                                    const Place* places, int64_t numPlaces) {
    if (buffer == nullptr || numPlaces < 0 || (places == nullptr && numPlaces > 0)) {
        throw INVALID_ARGUMENT_EXCEPTION("The buffer and the list of chunks must not be NULL");
    }
    std::vector<Engine::Chunk> chunks;
    for (int64_t i = 0; i < numPlaces; ++i) {
        chunks.push_back(ChunkAt(places[i], bufferLength));
    }
    return chunks;
}

}  // namespace

CChunkAdapterGeneric::CChunkAdapterGeneric(INodeMap* pNodeMap, int64_t MaxChunkCacheSize)
    : CChunkAdapter(pNodeMap, MaxChunkCacheSize) {}

CChunkAdapterGeneric::~CChunkAdapterGeneric() = default;

bool CChunkAdapterGeneric::CheckBufferLayout(uint8_t*, int64_t) {
    return false;
}

void CChunkAdapterGeneric::AttachBuffer(uint8_t*, int64_t, AttachStatistics_t*) {
    throw RUNTIME_EXCEPTION("The generic chunk adapter needs a list of the chunks");
}

void CChunkAdapterGeneric::AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                                        SingleChunkData_t* ChunkData, int64_t NumChunks,
                                        AttachStatistics_t* pAttachStatistics) {
    AttachChunks(pBuffer, ChunksAt(pBuffer, BufferLength, ChunkData, NumChunks), pAttachStatistics);
}

void CChunkAdapterGeneric::AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                                        SingleChunkDataStr_t* ChunkData, int64_t NumChunks,
                                        AttachStatistics_t* pAttachStatistics) {
    AttachChunks(pBuffer, ChunksAt(pBuffer, BufferLength, ChunkData, NumChunks), pAttachStatistics);
}

}  // namespace GENAPI_NAMESPACE
