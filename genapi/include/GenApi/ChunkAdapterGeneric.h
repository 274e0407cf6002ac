// Chunk data of which the transport layer tells the places.
#ifndef GENAPI_CHUNKADAPTERGENERIC_H
#define GENAPI_CHUNKADAPTERGENERIC_H

#include <cstddef>
#include <cstdint>

#include <Base/GCString.h>
#include <GenApi/ChunkAdapter.h>

namespace GENAPI_NAMESPACE {

using SingleChunkData_t = struct _SingleChunkData_t {
    uint64_t ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
};

// With the id in hexadecimal digits, without "0x".
using SingleChunkDataStr_t = struct _SingleChunkDataStr_t {
    GENICAM_NAMESPACE::gcstring ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
};

// Chunks lie where a list says.
class GENAPI_DECL CChunkAdapterGeneric : public CChunkAdapter {
  public:
    CChunkAdapterGeneric(INodeMap* pNodeMap = nullptr, int64_t MaxChunkCacheSize = -1);
    ~CChunkAdapterGeneric() override;

    // False: a buffer does not tell its chunks by itself.
    bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) override;
    // Always a RuntimeException, for want of the list.
    void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                      AttachStatistics_t* pAttachStatistics = nullptr) override;

    // RuntimeException, and nothing changes, if a chunk leaves the buffer.
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength, SingleChunkData_t* ChunkData,
                              int64_t NumChunks, AttachStatistics_t* pAttachStatistics = nullptr);
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                              SingleChunkDataStr_t* ChunkData, int64_t NumChunks,
                              AttachStatistics_t* pAttachStatistics = nullptr);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKADAPTERGENERIC_H
