// What decoding a message gives: its contents, or what is wrong with it.
#pragma once

#include <cassert>
#include <cstdint>

namespace ZelCti {

enum class Fault : uint8_t {
    TooShort,            // ends before its header or its fields do
    WrongKey,            // does not begin as this kind of message does
    WrongLength,         // has another length than its header or its kind says
    ZeroRequestId,       // has request id 0, which no command has
    Misaligned,          // an address or a count is no multiple of 4
    WrongCount,          // asks for nothing, or for more than there can be
    WrongEntrySize,      // an entry says a size that is impossible or leaves the message
    UnknownFormat,       // has a packet format that is not known
    UnknownPayloadType,  // has a payload type that is not known
};

constexpr const char* FaultText(Fault fault) {
    switch (fault) {
        case Fault::TooShort:
            return "the message is too short";
        case Fault::WrongKey:
            return "the message does not begin with its key";
        case Fault::WrongLength:
            return "the message has a wrong length";
        case Fault::ZeroRequestId:
            return "the request id is 0";
        case Fault::Misaligned:
            return "an address or a count is not a multiple of 4";
        case Fault::WrongCount:
            return "it asks for nothing, or for more than there can be";
        case Fault::WrongEntrySize:
            return "the size of an entry is wrong";
        case Fault::UnknownFormat:
            return "the packet format is unknown";
        case Fault::UnknownPayloadType:
            return "the payload type is unknown";
    }
    return "unknown fault";
}

// A value, or the fault that prevented it. Only one that holds a value may be dereferenced; only
// one that holds none has a fault. T is a small struct or a view: it is made even where there is a
// fault.
template <typename T>
class Result {
  public:
    // Both convert, so that a decoder returns either.
    Result(const T& value) : value_(value), hasValue_(true) {}
    Result(Fault fault) : fault_(fault) {}

    explicit operator bool() const { return hasValue_; }
    const T& operator*() const {
        assert(hasValue_);
        return value_;
    }
    const T* operator->() const { return &**this; }
    Fault GetFault() const {
        assert(!hasValue_);
        return fault_;
    }

  private:
    T value_{};
    Fault fault_{};
    bool hasValue_ = false;
};

}  // namespace ZelCti
