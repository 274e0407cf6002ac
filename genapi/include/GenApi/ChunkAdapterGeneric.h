// Chunk data of which the transport layer tells the places.
#ifndef GENAPI_CHUNKADAPTERGENERIC_H
#define GENAPI_CHUNKADAPTERGENERIC_H

#include <cstddef>
#include <cstdint>

#include <Base/GCString.h>
#include <GenApi/ChunkAdapter.h>

namespace GENAPI_NAMESPACE {

typedef struct _SingleChunkData_t {
    uint64_t ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
} SingleChunkData_t;

// With the id in hexadecimal digits, without "0x".
typedef struct _SingleChunkDataStr_t {
    GENICAM_NAMESPACE::gcstring ChunkID;
    ptrdiff_t ChunkOffset;
    size_t ChunkLength;
} SingleChunkDataStr_t;

// Chunks lie where a list says.
class GENAPI_DECL CChunkAdapterGeneric : public CChunkAdapter {
  public:
    CChunkAdapterGeneric(INodeMap* pNodeMap = NULL, int64_t MaxChunkCacheSize = -1);
    virtual ~CChunkAdapterGeneric();

    // False: a buffer does not tell its chunks by itself.
    bool CheckBufferLayout(uint8_t* pBuffer, int64_t BufferLength) override;
    // Always a RuntimeException, for want of the list.
    void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                      AttachStatistics_t* pAttachStatistics = NULL) override;

    // RuntimeException, and nothing changes, if a chunk leaves the buffer.
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength, SingleChunkData_t* ChunkData,
                              int64_t NumChunks, AttachStatistics_t* pAttachStatistics = NULL);
    virtual void AttachBuffer(uint8_t* pBuffer, int64_t BufferLength,
                              SingleChunkDataStr_t* ChunkData, int64_t NumChunks,
                              AttachStatistics_t* pAttachStatistics = NULL);
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CHUNKADAPTERGENERIC_H
