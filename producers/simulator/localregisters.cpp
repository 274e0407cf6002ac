#include "producers/simulator/localregisters.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace ZelSim {

void AddInfos(RegisterSpace& registers, std::initializer_list<InfoRegister> infos,
              const std::function<void(Answer)>& getInfo) {
    for (const InfoRegister& info : infos) {
        Register reg;
        reg.address = info.address;
        reg.size = info.size;
        reg.access = Access::ReadOnly;
        reg.source = [info, getInfo](uint8_t* bytes) {
            size_t length = 0;
            getInfo(Answer(info.command, nullptr, nullptr, &length));
            // Never shorter than the register: a text may grow between the two calls.
            std::vector<uint8_t> answer(std::max(length, info.size));
            length = answer.size();
            getInfo(Answer(info.command, nullptr, answer.data(), &length));
            std::memcpy(bytes, answer.data(), info.size);
        };
        registers.Add(std::move(reg));
    }
}

void AddNumber(RegisterSpace& registers, uint64_t address, size_t size,
               std::function<uint64_t()> get) {
    registers.Add(
        RegisterSpace::Integer{address, size, Access::ReadOnly, std::move(get), nullptr, nullptr});
}

void AddCommand(RegisterSpace& registers, uint64_t address, std::function<void()> run) {
    registers.Add(RegisterSpace::Integer{address, 4, Access::ReadWrite, [] { return 0; }, nullptr,
                                         [run = std::move(run)](uint64_t value) {
                                             if (value != 0) run();
                                         }});
}

}  // namespace ZelSim
