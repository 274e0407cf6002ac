// The exported functions of data streams and buffers.

#include <algorithm>
#include <vector>

#include "producers/server/exports/call.h"
#include "producers/server/modules/stream.h"

using ZelCti::Answer;
using ZelCti::Buffer;
using ZelCti::Call;
using ZelCti::Error;
using ZelCti::Find;
using ZelCti::Function;
using ZelCti::Guard;
using ZelCti::Library;
using ZelCti::Require;
using ZelCti::Stream;

namespace GenTL {

namespace {

// A buffer of this stream.
std::shared_ptr<Buffer> FindBuffer(const Stream& stream, BUFFER_HANDLE handle) {
    std::shared_ptr<Buffer> buffer = Find<Buffer>(handle);
    if (!buffer->IsOf(stream)) {
        throw Error(GC_ERR_INVALID_HANDLE, "the buffer belongs to another stream");
    }
    return buffer;
}

std::shared_ptr<Buffer> FindBuffer(DS_HANDLE stream, BUFFER_HANDLE handle) {
    return FindBuffer(*Find<Stream>(stream), handle);
}

// Answers one entry of a stacked call.
template <typename Entry, typename Query>
GC_ERROR Answered(Function function, Entry& entry, Query&& query) {
    INFO_DATATYPE type = entry.iType;
    size_t size = entry.iSize;
    const GC_ERROR result =
        Guard(function, [&] { query(Answer(entry.iInfoCmd, &type, entry.pBuffer, &size)); });
    entry.iType = type;
    entry.iSize = size;
    return result;
}

// Answers each entry with `query`, which gives a code; the first failure is the result.
template <typename Entry, typename Query>
void ForEachInfo(Entry* entries, size_t count, Query&& query) {
    Require(entries);
    GC_ERROR first = GC_ERR_SUCCESS;
    for (size_t i = 0; i < count; ++i) {
        Entry entry = entries[i];  // a copy: the entries are not aligned
        entry.iResult = query(entry);
        if (first == GC_ERR_SUCCESS) first = entry.iResult;
        entries[i] = entry;
    }
    if (first != GC_ERR_SUCCESS) throw Error(first, "an entry failed");
}

}  // namespace

extern "C" {

GC_ERROR DSAnnounceBuffer(DS_HANDLE hDataStream, void* pBuffer, size_t iSize, void* pPrivate,
                          BUFFER_HANDLE* phBuffer) {
    Answer answer = Answer::Fixed(phBuffer);
    return Call(Function::DSAnnounceBuffer, answer, [&] {
        const auto stream = Find<Stream>(hDataStream);
        Require(phBuffer);
        answer.Set(Stream::Announce(stream, pBuffer, iSize, pPrivate, false));
    });
}

GC_ERROR DSAllocAndAnnounceBuffer(DS_HANDLE hDataStream, size_t iSize, void* pPrivate,
                                  BUFFER_HANDLE* phBuffer) {
    Answer answer = Answer::Fixed(phBuffer);
    return Call(Function::DSAllocAndAnnounceBuffer, answer, [&] {
        const auto stream = Find<Stream>(hDataStream);
        Require(phBuffer);
        answer.Set(Stream::Allocate(stream, iSize, pPrivate));
    });
}

// A segment for each flow; the streams have one flow.
GC_ERROR DSAnnounceCompositeBuffer(DS_HANDLE hDataStream, size_t iNumSegments, void** ppSegments,
                                   size_t* piSizes, void* pPrivate, BUFFER_HANDLE* phBuffer) {
    Answer answer = Answer::Fixed(phBuffer);
    return Call(Function::DSAnnounceCompositeBuffer, answer, [&] {
        const auto stream = Find<Stream>(hDataStream);
        Require(phBuffer);
        Require(ppSegments);
        Require(piSizes);
        if (iNumSegments != 1) {
            throw Error(GC_ERR_INVALID_PARAMETER, "the stream has one flow and takes one segment");
        }
        answer.Set(Stream::Announce(stream, *ppSegments, *piSizes, pPrivate, true));
    });
}

GC_ERROR DSRevokeBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, void** pBuffer,
                        void** pPrivate) {
    return Call(Function::DSRevokeBuffer, {}, [&] {
        const auto stream = Find<Stream>(hDataStream);
        const auto buffer = FindBuffer(*stream, hBuffer);
        stream->Pool().Revoke(*buffer);
        const ZelCti::BufferMemory& memory = buffer->Memory();
        // Memory of this side is gone: there is nothing to hand back.
        if (pBuffer != nullptr) *pBuffer = memory.owned == nullptr ? memory.base : nullptr;
        if (pPrivate != nullptr) *pPrivate = memory.userPointer;
        Library::Instance().Handles().Close(hBuffer);
    });
}

GC_ERROR DSQueueBuffer(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer) {
    return Call(Function::DSQueueBuffer, {}, [&] {
        const auto stream = Find<Stream>(hDataStream);
        stream->Queue(*FindBuffer(*stream, hBuffer));
    });
}

GC_ERROR DSFlushQueue(DS_HANDLE hDataStream, ACQ_QUEUE_TYPE iOperation) {
    return Call(Function::DSFlushQueue, {}, [&] { Find<Stream>(hDataStream)->Flush(iOperation); });
}

GC_ERROR DSStartAcquisition(DS_HANDLE hDataStream, ACQ_START_FLAGS iStartFlags,
                            uint64_t iNumToAcquire) {
    return Call(Function::DSStartAcquisition, {},
                [&] { Find<Stream>(hDataStream)->Start(iStartFlags, iNumToAcquire); });
}

GC_ERROR DSStopAcquisition(DS_HANDLE hDataStream, ACQ_STOP_FLAGS iStopFlags) {
    return Call(Function::DSStopAcquisition, {},
                [&] { Find<Stream>(hDataStream)->Stop(iStopFlags); });
}

GC_ERROR DSGetInfo(DS_HANDLE hDataStream, STREAM_INFO_CMD iInfoCmd, INFO_DATATYPE* piType,
                   void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::DSGetInfo, answer, [&] { Find<Stream>(hDataStream)->GetInfo(answer); });
}

GC_ERROR DSGetBufferID(DS_HANDLE hDataStream, uint32_t iIndex, BUFFER_HANDLE* phBuffer) {
    Answer answer = Answer::Fixed(phBuffer);
    return Call(Function::DSGetBufferID, answer,
                [&] { answer.Set(Find<Stream>(hDataStream)->Pool().HandleAt(iIndex)); });
}

GC_ERROR DSClose(DS_HANDLE hDataStream) {
    return Call(Function::DSClose, {}, [&] {
        Find<Stream>(hDataStream);
        Library::Instance().Handles().Close(hDataStream);
    });
}

GC_ERROR DSGetParentDev(DS_HANDLE hDataStream, DEV_HANDLE* phDevice) {
    Answer answer = Answer::Fixed(phDevice);
    return Call(Function::DSGetParentDev, answer,
                [&] { answer.Set(Find<Stream>(hDataStream)->ParentHandle()); });
}

GC_ERROR DSGetBufferInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, BUFFER_INFO_CMD iInfoCmd,
                         INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::DSGetBufferInfo, answer,
                [&] { FindBuffer(hDataStream, hBuffer)->GetInfo(answer); });
}

GC_ERROR DSGetBufferInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                DS_BUFFER_INFO_STACKED* pInfoStacked, size_t iNumInfos) {
    return Call(Function::DSGetBufferInfoStacked, {}, [&] {
        const auto buffer = FindBuffer(hDataStream, hBuffer);
        ForEachInfo(pInfoStacked, iNumInfos, [&](DS_BUFFER_INFO_STACKED& entry) {
            return Answered(Function::DSGetBufferInfoStacked, entry,
                            [&](Answer answer) { buffer->GetInfo(answer); });
        });
    });
}

GC_ERROR DSGetBufferChunkData(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                              SINGLE_CHUNK_DATA* pChunkData, size_t* piNumChunks) {
    return Call(Function::DSGetBufferChunkData, {}, [&] {
        const auto buffer = FindBuffer(hDataStream, hBuffer);
        Require(piNumChunks);
        const std::vector<ZelCti::ChunkPlace> chunks = buffer->Chunks();
        const size_t capacity = *piNumChunks;
        *piNumChunks = chunks.size();
        if (pChunkData == nullptr) return;
        if (capacity < chunks.size()) {
            throw Error(GC_ERR_BUFFER_TOO_SMALL, "the frame has more chunks");
        }
        std::transform(chunks.begin(), chunks.end(), pChunkData, [](const auto& chunk) {
            return SINGLE_CHUNK_DATA{chunk.id, static_cast<ptrdiff_t>(chunk.offset), chunk.size};
        });
    });
}

GC_ERROR DSGetNumBufferParts(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t* piNumParts) {
    Answer answer = Answer::Fixed(piNumParts);
    return Call(Function::DSGetNumBufferParts, answer, [&] {
        answer.Set(static_cast<uint32_t>(FindBuffer(hDataStream, hBuffer)->NumParts()));
    });
}

GC_ERROR DSGetBufferPartInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer, uint32_t iPartIndex,
                             BUFFER_PART_INFO_CMD iInfoCmd, INFO_DATATYPE* piType, void* pBuffer,
                             size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::DSGetBufferPartInfo, answer,
                [&] { FindBuffer(hDataStream, hBuffer)->GetPartInfo(iPartIndex, answer); });
}

GC_ERROR DSGetBufferPartInfoStacked(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                    DS_BUFFER_PART_INFO_STACKED* pInfoStacked, size_t iNumInfos) {
    return Call(Function::DSGetBufferPartInfoStacked, {}, [&] {
        const auto buffer = FindBuffer(hDataStream, hBuffer);
        ForEachInfo(pInfoStacked, iNumInfos, [&](DS_BUFFER_PART_INFO_STACKED& entry) {
            return Answered(Function::DSGetBufferPartInfoStacked, entry,
                            [&](Answer answer) { buffer->GetPartInfo(entry.iPartIndex, answer); });
        });
    });
}

GC_ERROR DSGetNumFlows(DS_HANDLE hDataStream, uint32_t* piNumFlows) {
    Answer answer = Answer::Fixed(piNumFlows);
    return Call(Function::DSGetNumFlows, answer, [&] {
        Find<Stream>(hDataStream);
        answer.Set(uint32_t{1});
    });
}

GC_ERROR DSGetFlowInfo(DS_HANDLE hDataStream, uint32_t iFlowIndex, FLOW_INFO_CMD iInfoCmd,
                       INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::DSGetFlowInfo, answer,
                [&] { Find<Stream>(hDataStream)->GetFlowInfo(iFlowIndex, answer); });
}

// A buffer that was not announced as composite is one segment as well.
GC_ERROR DSGetNumBufferSegments(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                uint32_t* piNumSegments) {
    Answer answer = Answer::Fixed(piNumSegments);
    return Call(Function::DSGetNumBufferSegments, answer, [&] {
        FindBuffer(hDataStream, hBuffer);
        answer.Set(uint32_t{1});
    });
}

GC_ERROR DSGetBufferSegmentInfo(DS_HANDLE hDataStream, BUFFER_HANDLE hBuffer,
                                uint32_t iSegmentIndex, SEGMENT_INFO_CMD iInfoCmd,
                                INFO_DATATYPE* piType, void* pBuffer, size_t* piSize) {
    const Answer answer(iInfoCmd, piType, pBuffer, piSize);
    return Call(Function::DSGetBufferSegmentInfo, answer, [&] {
        const auto buffer = FindBuffer(hDataStream, hBuffer);
        if (iSegmentIndex != 0) throw Error(GC_ERR_INVALID_INDEX, "the buffer has one segment");
        buffer->GetSegmentInfo(answer);
    });
}

}  // extern "C"

}  // namespace GenTL
