#include "producers/gigevision/description/cacheddescription.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace ZelGev {

namespace {

// Consumers read whole registers.
constexpr size_t kMostBehindFile = 8;

// Places of the camera that are compared: the first and the last block, where the head of a text
// and the directory of an archive are, and some between.
constexpr size_t kNumPlaces = 8;
constexpr size_t kPlaceSize = 512;

// Of others, a comparison would cost as much as the file.
constexpr size_t kSmallest = 2 * kNumPlaces * kPlaceSize;

constexpr size_t kWord = 4;  // in which cameras are read
constexpr size_t kMaxFiles = 4;

}  // namespace

CachedDescription::CachedDescription(DescriptionCache cache, DescriptionIdentity identity,
                                     ReadCamera readCamera)
    : cache_(std::move(cache)),
      camera_(std::move(identity)),
      readCamera_(std::move(readCamera)),
      isOn_(cache_.IsOn()) {}

void CachedDescription::AddFile(const std::string& url, uint64_t address, uint64_t size) {
    if (size < kSmallest || size > DescriptionCache::kMaxDescription) return;
    const std::lock_guard lock(mutex_);
    const auto isKnown = [&url](const File& file) { return file.url == url; };
    if (files_.size() < kMaxFiles && std::none_of(files_.begin(), files_.end(), isKnown))
        files_.push_back({url, address, static_cast<size_t>(size)});
}

void CachedDescription::Read(uint64_t address, void* buffer, size_t size) {
    const File file = FileOf(address, size);
    if (file.url.empty()) return readCamera_(address, buffer, size);
    DescriptionIdentity identity = camera_;
    identity.url = file.url;
    auto* const bytes = static_cast<uint8_t*>(buffer);
    if (cache_.Load(identity, bytes, file.size) && IsSame(file, bytes)) {
        if (size > file.size) readCamera_(address + file.size, bytes + file.size, size - file.size);
        return;
    }
    readCamera_(address, buffer, size);
    cache_.Store(identity, bytes, file.size);
}

CachedDescription::File CachedDescription::FileOf(uint64_t address, size_t size) const {
    if (!isOn_ || size < kSmallest) return {};
    const std::lock_guard lock(mutex_);
    for (const File& file : files_) {
        if (file.address == address && size >= file.size && size - file.size < kMostBehindFile)
            return file;
    }
    return {};
}

bool CachedDescription::IsSame(const File& file, const uint8_t* content) const {
    for (size_t i = 0; i < kNumPlaces; ++i) {
        const size_t place = (file.size - kPlaceSize) * i / (kNumPlaces - 1) / kWord * kWord;
        std::array<uint8_t, kPlaceSize> bytes;
        readCamera_(file.address + place, bytes.data(), bytes.size());
        if (std::memcmp(bytes.data(), content + place, bytes.size()) != 0) return false;
    }
    return true;
}

}  // namespace ZelGev
