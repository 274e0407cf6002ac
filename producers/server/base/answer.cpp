#include "producers/server/base/answer.h"

#include <cstring>
#include <string>

#include "producers/server/base/error.h"

namespace ZelCti {

void Answer::String(std::string_view text) {
    const std::string terminated(text);
    Bytes(GenTL::INFO_DATATYPE_STRING, terminated.c_str(), terminated.size() + 1);
}

void Answer::Bytes(GenTL::INFO_DATATYPE type, const void* data, size_t size) {
    if (size_ != nullptr && type_ != nullptr) *type_ = type;
    Replace(data, size);
}

void Answer::Replace(const void* data, size_t size) {
    if (fixedSize_ != 0) {
        if (buffer_ == nullptr) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "null out-pointer");
        Copy(data, size, fixedSize_);
        return;
    }
    if (size_ == nullptr) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "null size pointer");
    const size_t capacity = *size_;
    *size_ = size;
    if (buffer_ != nullptr) Copy(data, size, capacity);
}

void Answer::Copy(const void* data, size_t size, size_t capacity) {
    if (size > capacity) {
        throw Error(GenTL::GC_ERR_BUFFER_TOO_SMALL, "a buffer of " + std::to_string(capacity) +
                                                        " bytes for " + std::to_string(size));
    }
    if (size != 0) std::memcpy(buffer_, data, size);
}

void Answer::OverwriteType(GenTL::INFO_DATATYPE type) {
    if (type_ != nullptr) *type_ = type;
}

void Answer::OverwriteSize(size_t size) {
    if (size_ != nullptr) *size_ = size;
}

}  // namespace ZelCti
