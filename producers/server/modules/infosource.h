// Registers that hold the answers to info commands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "producers/server/base/answer.h"
#include "producers/server/registers/feature.h"

namespace ZelCti {

constexpr size_t kTextSize = 256;  // of a register that holds a text

// Asks each time the register is read. It holds the bytes of the answer and zeros behind them;
// what does not fit is cut off. A command that fails fails the read.
BytesSource InfoSource(int32_t command, std::function<void(Answer)> getInfo);

}  // namespace ZelCti
