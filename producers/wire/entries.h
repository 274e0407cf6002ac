// A list of entries of one size within a message, decoded one by one when it is walked through.
#pragma once

#include <cassert>
#include <cstddef>

#include "producers/wire/byteview.h"

namespace ZelCti {

// `Form` has the entry's type as Entry, the bytes of one as kSize, and a function Read that decodes
// the entry at the beginning of a view.
template <typename Form>
class Entries {
  public:
    using Entry = typename Form::Entry;

    class Iterator {
      public:
        explicit Iterator(const uint8_t* bytes) : bytes_(bytes) {}

        Entry operator*() const { return Form::Read({bytes_, Form::kSize}); }
        Iterator& operator++() {
            bytes_ += Form::kSize;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return bytes_ != other.bytes_; }

      private:
        const uint8_t* bytes_;
    };

    Entries() = default;
    // The size of the bytes is a multiple of an entry's.
    explicit Entries(ByteView bytes) : bytes_(bytes) { assert(bytes.size % Form::kSize == 0); }

    size_t size() const { return bytes_.size / Form::kSize; }
    Entry operator[](size_t index) const {
        return Form::Read(bytes_.Sub(index * Form::kSize, Form::kSize));
    }
    Iterator begin() const { return Iterator(bytes_.data); }
    Iterator end() const { return Iterator(bytes_.data + bytes_.size); }

  private:
    ByteView bytes_;
};

}  // namespace ZelCti
