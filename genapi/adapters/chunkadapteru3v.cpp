#include <GenApi/ChunkAdapterU3V.h>

#include "genapi/adapters/chunks.h"

namespace GENAPI_NAMESPACE {

CChunkAdapterU3V::CChunkAdapterU3V(INodeMap* pNodeMap, int64_t MaxChunkCacheSize)
    : CChunkAdapter(pNodeMap, MaxChunkCacheSize) {}

CChunkAdapterU3V::~CChunkAdapterU3V() = default;

bool CChunkAdapterU3V::CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) {
    std::vector<Engine::Chunk> chunks;
    return Engine::FindTrailedChunks(pBuffer, BufferLength, Engine::ByteOrder::kLittle, chunks);
}

void CChunkAdapterU3V::AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                                    AttachStatistics_t* pAttachStatistics) {
    AttachChunks(pBuffer, Engine::TrailedChunks(pBuffer, BufferLength, Engine::ByteOrder::kLittle),
                 pAttachStatistics);
}

}  // namespace GENAPI_NAMESPACE
