#include <algorithm>

#include <Base/GCException.h>
#include <GenApi/ChunkAdapter.h>
#include <GenApi/ChunkPort.h>
#include <GenApi/INode.h>
#include <GenApi/Synch.h>

#include "genapi/adapters/chunks.h"
#include "genapi/adapters/portlist.h"

namespace GENAPI_NAMESPACE {
namespace {

using Chunks = std::vector<Engine::Chunk>;

Chunks::const_iterator ChunkFor(const CChunkPort& port, const Chunks& chunks) {
    return std::find_if(chunks.begin(), chunks.end(),
                        [&](const Engine::Chunk& chunk) { return port.CheckChunkID(chunk.id); });
}

}  // namespace

CChunkAdapter::CChunkAdapter(CUnattached, int64_t MaxChunkCacheSize)
    : m_ppChunkPorts(new std::vector<CChunkPort*>),
      m_MaxChunkCacheSize(MaxChunkCacheSize),
      m_pNodeMap(nullptr),
      m_HasBuffer(false) {}

// Delegates, so that the destructor cleans up if AttachNodeMap throws.
CChunkAdapter::CChunkAdapter(INodeMap* pNodeMap, int64_t MaxChunkCacheSize)
    : CChunkAdapter(CUnattached(), MaxChunkCacheSize) {
    CChunkAdapter::AttachNodeMap(pNodeMap);
}

CChunkAdapter::~CChunkAdapter() {
    Engine::DeletePorts(*m_ppChunkPorts);
    delete m_ppChunkPorts;
}

void CChunkAdapter::AttachNodeMap(INodeMap* pNodeMap) {
    DetachNodeMap();
    if (pNodeMap == nullptr) return;
    *m_ppChunkPorts = Engine::MakePorts<CChunkPort>(*pNodeMap, CChunkPort::HasChunkID);
    m_pNodeMap = pNodeMap;
    Engine::ConnectPorts(*m_ppChunkPorts);
}

void CChunkAdapter::DetachNodeMap() {
    m_HasBuffer = false;
    m_pNodeMap = nullptr;
    Engine::DeletePorts(*m_ppChunkPorts);
}

// Callbacks may detach the map, so the code after the first callback must not use the adapter.
template <class Change>
void CChunkAdapter::ChangePorts(Change change) {
    if (m_pNodeMap == nullptr) return;
    std::vector<INode*> changed;
    {
        const AutoLock lock(m_pNodeMap->GetLock());
        for (CChunkPort* port : *m_ppChunkPorts) {
            if (change(*port)) changed.push_back(port->GetNode());
        }
    }
    for (INode* node : changed) {
        node->InvalidateNode();
    }
}

void CChunkAdapter::AttachChunks(const uint8_t* pBuffer, const Chunks& Chunks,
                                 AttachStatistics_t* pAttachStatistics) {
    std::vector<bool> taken(Chunks.size());
    m_HasBuffer = true;
    const int64_t maxCacheSize = m_MaxChunkCacheSize;
    const int numPorts = static_cast<int>(m_ppChunkPorts->size());
    ChangePorts([&](CChunkPort& port) {
        port.UpdateChunkID();
        const auto chunk = ChunkFor(port, Chunks);
        if (chunk == Chunks.end()) return port.DetachChunk();
        port.AttachChunk(pBuffer, chunk->offset, chunk->length, maxCacheSize);
        taken[static_cast<size_t>(chunk - Chunks.begin())] = true;
        return true;
    });
    if (pAttachStatistics == nullptr) return;
    pAttachStatistics->NumChunkPorts = numPorts;
    pAttachStatistics->NumChunks = static_cast<int>(Chunks.size());
    pAttachStatistics->NumAttachedChunks =
        static_cast<int>(std::count(taken.begin(), taken.end(), true));
}

void CChunkAdapter::DetachBuffer() {
    m_HasBuffer = false;
    ChangePorts([](CChunkPort& port) { return port.DetachBuffer(); });
}

void CChunkAdapter::UpdateBuffer(uint8_t* pBuffer) {
    if (pBuffer == nullptr) throw INVALID_ARGUMENT_EXCEPTION("The buffer must not be NULL");
    if (!m_HasBuffer) throw LOGICAL_ERROR_EXCEPTION("No buffer is attached to the chunk adapter");
    ChangePorts([&](CChunkPort& port) { return port.UpdateBuffer(pBuffer); });
}

void CChunkAdapter::ClearCaches() {
    ChangePorts([](CChunkPort& port) { return port.ClearCache(); });
}

}  // namespace GENAPI_NAMESPACE
