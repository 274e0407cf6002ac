// Bootstrap registers in the space of a camera.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "producers/server/base/error.h"
#include "producers/server/registers/registerspace.h"
#include "producers/wire/bootstrap.h"

namespace ZelSim {

// What a register that holds a number does; functions may be empty. One without `get` can only be
// written, one without `set` only be read, whatever the table of bootstrap registers allows.
struct NumberValue {
    std::function<uint32_t()> get;
    std::function<void(uint32_t)> set;
    std::function<void(uint32_t)> check;  // throws an Error to refuse a value
};

// Big endian, whatever the order of the space. `index` counts within the series of the register.
void AddNumber(ZelCti::RegisterSpace& space, const ZelCti::Gev::Register& form, NumberValue value,
               uint32_t index = 0);

// Texts and tables: `get` returns all that is not zeros, and at most the size of the register.
void AddBytes(ZelCti::RegisterSpace& space, const ZelCti::Gev::Register& form,
              std::function<std::string()> get, std::function<void(const std::string&)> set = {});

[[noreturn]] inline void RefuseBits() {
    throw ZelCti::Error(GenTL::GC_ERR_INVALID_VALUE, "the register does not take this value");
}

}  // namespace ZelSim
