// Descriptions of cameras, kept on disk: to read one of a megabyte takes a slow camera seconds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace ZelGev {

// Which description it is.
struct DescriptionIdentity {
    std::string vendor;
    std::string model;
    std::string version;  // of the camera
    std::string url;
};

// A folder of descriptions. What is wrong with the folder or with an entry means that there is no
// such entry; nothing throws.
//
// An entry is a file with the name of its identity's hash: a mark, the length of the description,
// a hash of identity and description, and the description. It is trusted if the file and its
// folders belong to the user of this process, if nobody else may write them, if none of them is a
// symbolic link, and if length and hash are right. Entries appear as a whole or not at all, whoever
// else writes them. Thread-safe.
class DescriptionCache {
  public:
    // A longer description is not kept, and the oldest entries go before there is more than this.
    static constexpr size_t kMaxDescription = 16U << 20U;
    static constexpr size_t kMaxFolder = 64U << 20U;

    // The folder is zelcam/descriptions in the folder `base`, and is made when it is needed. An
    // empty `base`: there is no cache.
    explicit DescriptionCache(std::string base) : base_(std::move(base)) {}

    bool IsOn() const { return !base_.empty(); }

    // Returns false when there is no entry of that size.
    bool Load(const DescriptionIdentity& identity, uint8_t* content, size_t size) const noexcept;
    void Store(const DescriptionIdentity& identity, const uint8_t* content,
               size_t size) const noexcept;

  private:
    const std::string base_;
};

// Where the caches of the user are: XDG_CACHE_HOME, or .cache in HOME. Empty when there is neither,
// and when ZELGEV_CACHE is 0.
std::string CacheFolderOfEnvironment();

}  // namespace ZelGev
