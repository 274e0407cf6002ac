#include "producers/simulator/chunkregisters.h"

#include "producers/simulator/error.h"

namespace ZelSim {

namespace {

constexpr uint64_t kModeAddress = 0x9000;
constexpr uint64_t kEnableAddress = 0x9010;  // one register of 4 bytes for each kind

void CheckSwitch(uint64_t value) {
    if (value > 1) throw Error(GenTL::GC_ERR_INVALID_VALUE, "neither on nor off");
}

RegisterSpace::Integer ModeRegister(CameraControl& control) {
    RegisterSpace::Integer reg;
    reg.address = kModeAddress;
    reg.get = [&control] { return uint64_t{control.Settings()->chunkMode}; };
    reg.check = CheckSwitch;
    reg.set = [&control](uint64_t value) {
        control.ChangeFixed([&](FrameSettings& settings) { settings.chunkMode = value != 0; });
    };
    return reg;
}

RegisterSpace::Integer EnableRegister(CameraControl& control, ChunkKind kind) {
    RegisterSpace::Integer reg;
    reg.address = kEnableAddress + static_cast<uint32_t>(kind) * sizeof(uint32_t);
    if (kind == ChunkKind::Image) reg.access = Access::ReadOnly;
    reg.get = [&control, kind] { return uint64_t{control.Settings()->chunks.Has(kind)}; };
    reg.check = CheckSwitch;
    reg.set = [&control, kind](uint64_t value) {
        control.ChangeFixed(
            [&](FrameSettings& settings) { settings.chunks.Set(kind, value != 0); });
    };
    return reg;
}

}  // namespace

void AddChunkRegisters(RegisterSpace& registers, CameraControl& control) {
    registers.Add(ModeRegister(control));
    for (uint32_t number = 0; number < kNumChunkKinds; ++number)
        registers.Add(EnableRegister(control, static_cast<ChunkKind>(number)));
}

}  // namespace ZelSim
