// The description of an open camera, from the camera or from the cache.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "producers/gigevision/description/descriptioncache.h"

namespace ZelGev {

// Reads the registers of a camera. A read of just one file of a description comes from the cache,
// when the camera has the same in a few places that are looked at; otherwise the cache learns it
// from the camera. Thread-safe.
class CachedDescription {
  public:
    using ReadCamera = std::function<void(uint64_t address, void* buffer, size_t size)>;

    // What the camera says of itself; the URL is that of the file.
    CachedDescription(DescriptionCache cache, DescriptionIdentity identity, ReadCamera readCamera);

    // The camera has a file there.
    void AddFile(const std::string& url, uint64_t address, uint64_t size);

    // Throws what the camera's read throws.
    void Read(uint64_t address, void* buffer, size_t size);

    bool IsOn() const { return isOn_; }
    void Switch(bool on) { isOn_ = on && cache_.IsOn(); }

  private:
    struct File {
        std::string url;
        uint64_t address;
        size_t size;
    };

    // The file that a read wants; with an empty URL: none.
    File FileOf(uint64_t address, size_t size) const;
    bool IsSame(const File& file, const uint8_t* content) const;

    const DescriptionCache cache_;
    const DescriptionIdentity camera_;
    const ReadCamera readCamera_;
    std::atomic<bool> isOn_;
    mutable std::mutex mutex_;
    std::vector<File> files_;  // guarded by mutex_
};

}  // namespace ZelGev
