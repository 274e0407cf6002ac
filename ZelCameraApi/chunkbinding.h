// The chunks of a frame as features of the camera.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include <GenApi/ChunkAdapter.h>
#include <GenApi/ChunkAdapterGeneric.h>

#include "ZelCam/Interface.h"
#include "gentl/GenTL.h"

namespace ZelCameraApi::Internal {

// The bytes of a frame with chunks.
struct ChunkBytes {
    uint8_t* data = nullptr;
    size_t size = 0;
};

// Which buffer the chunk features of a camera show: one at a time. The node map outlives it.
// Thread-safe: the lock is that of the node map, so callbacks of features may use it.
class ChunkBinding {
  public:
    using Places = std::vector<GenTL::SINGLE_CHUNK_DATA>;

    // `owner` is the buffer. The first form has the producer's list, the other one finds the chunks
    // by the layout of a transport; it throws zelcam_exception if none is known. Both throw it with
    // GC_ERR_PARSING_CHUNK_DATA if the chunks do not lie within the bytes; no buffer is attached
    // then.
    void Attach(GenApi::INodeMap& map, const void* owner, ChunkBytes bytes, const Places& places);
    void Attach(GenApi::INodeMap& map, const void* owner, ChunkBytes bytes,
                ZelCam::InterfaceType transport);

    // Without effect unless this buffer is attached.
    void Detach(const void* owner);
    void DetachAny() { Detach(owner_.load()); }

  private:
    template <typename Adapter>
    Adapter& Use(GenApi::INodeMap& map);
    template <typename AttachTo>
    void Change(GenApi::INodeMap& map, const void* owner, AttachTo&& attach);

    GenApi::INodeMap* map_ = nullptr;  // set once
    std::unique_ptr<GenApi::CChunkAdapter> adapter_;
    std::atomic<const void*> owner_{nullptr};  // the attached buffer; changed under the lock
};

}  // namespace ZelCameraApi::Internal
