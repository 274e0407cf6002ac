// Kinds of registers that modules have.
#ifndef ZELSIM_LOCALREGISTERS_H
#define ZELSIM_LOCALREGISTERS_H

#include <functional>
#include <initializer_list>

#include "producers/simulator/answer.h"
#include "producers/simulator/registerspace.h"

namespace ZelSim {

constexpr size_t kTextSize = 256;  // of a register that holds a text

// Where the answer to an info command stands.
struct InfoRegister {
    uint64_t address;
    size_t size;
    int32_t command;
};

// Read-only registers, which ask each time they are read. Their bytes are those of the answer, with
// zeros behind them; what does not fit is cut off. A command that fails fails the read.
void AddInfos(RegisterSpace& registers, std::initializer_list<InfoRegister> infos,
              const std::function<void(Answer)>& getInfo);

// A read-only number of 4 or 8 bytes.
void AddNumber(RegisterSpace& registers, uint64_t address, size_t size,
               std::function<uint64_t()> get);

// Runs when anything but 0 is written, and is done then; reads as 0.
void AddCommand(RegisterSpace& registers, uint64_t address, std::function<void()> run);

}  // namespace ZelSim

#endif  // ZELSIM_LOCALREGISTERS_H
