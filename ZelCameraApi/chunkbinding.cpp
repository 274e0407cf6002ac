#include "ZelCameraApi/chunkbinding.h"

#include <algorithm>

#include <Base/GCException.h>
#include <GenApi/ChunkAdapterGEV.h>
#include <GenApi/ChunkAdapterU3V.h>
#include <GenApi/Synch.h>

#include "ZelCameraApi/base/gentl_error.h"

namespace ZelCameraApi::Internal {

// An adapter that is there is kept, as it looks for the chunk ports of the whole map.
template <typename Adapter>
Adapter& ChunkBinding::Use(GenApi::INodeMap& map) {
    auto* adapter = dynamic_cast<Adapter*>(adapter_.get());
    if (adapter == nullptr) {
        adapter_.reset();
        auto made = std::make_unique<Adapter>(&map);
        adapter = made.get();
        adapter_ = std::move(made);
    }
    return *adapter;
}

template <typename AttachTo>
void ChunkBinding::Change(GenApi::INodeMap& map, const void* owner, AttachTo&& attach) {
    const GenApi::AutoLock lock(map.GetLock());
    map_ = &map;
    DetachAny();
    try {
        attach();
    } catch (const GenICam::GenericException&) {
        throw zelcam_exception(GenTL::GC_ERR_PARSING_CHUNK_DATA);
    }
    owner_ = owner;
}

void ChunkBinding::Attach(GenApi::INodeMap& map, const void* owner, ChunkBytes bytes,
                          const Places& places) {
    std::vector<GenApi::SingleChunkData_t> chunks(places.size());
    std::transform(places.begin(), places.end(), chunks.begin(), [](const auto& place) {
        return GenApi::SingleChunkData_t{place.ChunkID, place.ChunkOffset, place.ChunkLength};
    });
    Change(map, owner, [&] {
        Use<GenApi::CChunkAdapterGeneric>(map).AttachBuffer(
            bytes.data, static_cast<int64_t>(bytes.size), chunks.data(),
            static_cast<int64_t>(chunks.size()));
    });
}

void ChunkBinding::Attach(GenApi::INodeMap& map, const void* owner, ChunkBytes bytes,
                          ZelCam::InterfaceType transport) {
    Change(map, owner, [&] {
        const auto size = static_cast<int64_t>(bytes.size);
        switch (transport) {
            case ZelCam::InterfaceType::GEV:
                return Use<GenApi::CChunkAdapterGEV>(map).AttachBuffer(bytes.data, size);
            case ZelCam::InterfaceType::U3V:
                return Use<GenApi::CChunkAdapterU3V>(map).AttachBuffer(bytes.data, size);
            default:
                throw zelcam_exception(GenTL::GC_ERR_PARSING_CHUNK_DATA);
        }
    });
}

void ChunkBinding::Detach(const void* owner) {
    if (owner == nullptr || owner_ != owner) return;
    const GenApi::AutoLock lock(map_->GetLock());
    if (!owner_.compare_exchange_strong(owner, nullptr)) return;
    adapter_->DetachBuffer();
    adapter_->ClearCaches();
}

}  // namespace ZelCameraApi::Internal
