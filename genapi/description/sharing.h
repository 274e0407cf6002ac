// The descriptions that node maps of this process use. A second camera of a model costs only its
// map.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// Identifies the sources of a description by their sizes and keyed hashes of 128 bits. Keeping the
// texts for a comparison would take more memory than the descriptions.
class ContentKey {
  public:
    // Adds a text, or an option that changes what is made of the texts.
    void Add(std::string_view text);
    void Add(uint64_t choice);

    bool operator==(const ContentKey& other) const {
        return size_ == other.size_ && first_ == other.first_ && second_ == other.second_;
    }

  private:
    uint64_t size_ = 0, first_ = 0, second_ = 0;
};

// Null when no map uses such a description. Thread-safe.
std::shared_ptr<const Description> FindShared(const ContentKey& key);

// Offers a new description to other maps. Returns the one to use: an earlier one if another thread
// was faster. Thread-safe.
std::shared_ptr<const Description> Share(const ContentKey& key,
                                         std::shared_ptr<const Description> made);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
