// Descriptions that node maps of this process use, so that a second camera of a model pays for its
// map only.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "genapi/description/description.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// What a description was made of, as sizes and keyed hashes of 128 bits: to keep the texts for a
// comparison would cost more memory than the descriptions.
class ContentKey {
  public:
    // Adds a text, or a choice that changes what comes out of the texts.
    void Add(std::string_view text);
    void Add(uint64_t choice);

    bool operator==(const ContentKey& other) const {
        return size_ == other.size_ && first_ == other.first_ && second_ == other.second_;
    }

  private:
    uint64_t size_ = 0, first_ = 0, second_ = 0;
};

// Null when nobody uses such a description. Thread-safe.
std::shared_ptr<const Description> FindShared(const ContentKey& key);

// Offers a new description to others. Gives the one to use, which is another one if somebody has
// been faster. Thread-safe.
std::shared_ptr<const Description> Share(const ContentKey& key,
                                         std::shared_ptr<const Description> made);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
