// The out-parameters of a call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "gentl/GenTL.h"

namespace ZelCti {

// Where the answer of a call goes, in the form that most functions of the standard share: an
// optional data type, a buffer that may be null to ask for the size, and the size, which is the
// capacity before the call and the size of the answer after it. A module answers an info command
// with exactly one of the typed operations. Functions with one plain out-parameter use Fixed().
class Answer {
  public:
    // The command of a call that is not an info command.
    static constexpr int32_t kNoCommand = std::numeric_limits<int32_t>::min();

    // No out-parameter.
    Answer() = default;

    // A text or bytes without a data type.
    Answer(void* buffer, size_t* size) : buffer_(buffer), size_(size) {}

    // An info command.
    Answer(int32_t command, GenTL::INFO_DATATYPE* type, void* buffer, size_t* size)
        : command_(command), type_(type), buffer_(buffer), size_(size) {}

    // One value of a fixed type.
    template <typename T>
    static Answer Fixed(T* value) {
        Answer answer;
        answer.buffer_ = value;
        answer.fixedSize_ = sizeof(T);
        return answer;
    }

    int32_t Command() const { return command_; }
    bool OnlyAsksSize() const { return buffer_ == nullptr && fixedSize_ == 0; }

    void String(std::string_view text);  // adds the terminating zero
    void Int32(int32_t value) { Plain(GenTL::INFO_DATATYPE_INT32, value); }
    void Uint32(uint32_t value) { Plain(GenTL::INFO_DATATYPE_UINT32, value); }
    void Uint64(uint64_t value) { Plain(GenTL::INFO_DATATYPE_UINT64, value); }
    void Size(size_t value) { Plain(GenTL::INFO_DATATYPE_SIZET, value); }
    void Pointer(const void* value) { Plain(GenTL::INFO_DATATYPE_PTR, value); }
    void Bool(bool value) { Plain(GenTL::INFO_DATATYPE_BOOL8, GenTL::bool8_t{value}); }
    void Buffer(const void* data, size_t size) { Bytes(GenTL::INFO_DATATYPE_BUFFER, data, size); }

    // The value of a plain out-parameter; GC_ERR_INVALID_PARAMETER when its pointer is null.
    template <typename T>
    void Set(const T& value) {
        Bytes(GenTL::INFO_DATATYPE_UNKNOWN, &value, sizeof(T));
    }

    // Bytes the buffer takes.
    size_t Capacity() const { return size_ == nullptr ? fixedSize_ : *size_; }

    // Replace what was answered, without judging it: the hand of fault injection.
    void Replace(const void* data, size_t size);
    void OverwriteType(GenTL::INFO_DATATYPE type);
    void OverwriteSize(size_t size);

    // What the typed operations do. Throws GC_ERR_BUFFER_TOO_SMALL, with the size reported, when
    // the capacity does not do, and GC_ERR_INVALID_PARAMETER when an out-pointer is missing.
    void Bytes(GenTL::INFO_DATATYPE type, const void* data, size_t size);

  private:
    template <typename T>
    void Plain(GenTL::INFO_DATATYPE type, T value) {
        Bytes(type, &value, sizeof(T));
    }

    void Copy(const void* data, size_t size, size_t capacity);

    int32_t command_ = kNoCommand;
    GenTL::INFO_DATATYPE* type_ = nullptr;
    void* buffer_ = nullptr;
    size_t* size_ = nullptr;
    size_t fixedSize_ = 0;
};

}  // namespace ZelCti
