#include <GenApi/ChunkAdapterGEV.h>

#include "genapi/adapters/chunks.h"

namespace GENAPI_NAMESPACE {

CChunkAdapterGEV::CChunkAdapterGEV(INodeMap* pNodeMap, int64_t MaxChunkCacheSize)
    : CChunkAdapter(pNodeMap, MaxChunkCacheSize) {}

CChunkAdapterGEV::~CChunkAdapterGEV() = default;

bool CChunkAdapterGEV::CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) {
    std::vector<Engine::Chunk> chunks;
    return Engine::FindTrailedChunks(pBuffer, BufferLength, Engine::ByteOrder::kBig, chunks);
}

void CChunkAdapterGEV::AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                                    AttachStatistics_t* pAttachStatistics) {
    AttachChunks(pBuffer, Engine::TrailedChunks(pBuffer, BufferLength, Engine::ByteOrder::kBig),
                 pAttachStatistics);
}

}  // namespace GENAPI_NAMESPACE
