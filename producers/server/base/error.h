// Failures inside the producer.
#pragma once

#include <stdexcept>
#include <string>

#include "gentl/GenTL.h"

namespace ZelCti {

// A GenTL code with its reason. Everything below the exported functions throws it; Call() turns it
// into the return value and into the text of GCGetLastError.
class Error : public std::runtime_error {
  public:
    Error(GenTL::GC_ERROR code, const std::string& reason)
        : std::runtime_error(reason), code_(code) {}

    GenTL::GC_ERROR Code() const { return code_; }

  private:
    GenTL::GC_ERROR code_;
};

// Throws GC_ERR_INVALID_PARAMETER for a null pointer that a call cannot do without.
inline void Require(const void* pointer) {
    if (pointer == nullptr) throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "null pointer");
}

}  // namespace ZelCti
