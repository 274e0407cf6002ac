#include "producers/simulator/gige/control/bigendianregister.h"

#include <algorithm>
#include <utility>

#include "producers/wire/byteorder.h"

namespace ZelSim {

using ZelCti::Access;
using ZelCti::ByteOrder;
using ZelCti::Register;
using ZelCti::RegisterSpace;

namespace {

uint32_t BigEndianWord(const uint8_t* bytes) {
    return static_cast<uint32_t>(ZelCti::LoadInteger(bytes, sizeof(uint32_t), ByteOrder::Big));
}

Register PlaceOf(const ZelCti::Gev::Register& form, uint32_t index, bool readable, bool writable) {
    Register reg;
    reg.address = form.At(index);
    reg.size = form.size;
    reg.access = !writable ? Access::ReadOnly : readable ? Access::ReadWrite : Access::WriteOnly;
    return reg;
}

}  // namespace

void AddNumber(RegisterSpace& space, const ZelCti::Gev::Register& form, NumberValue value,
               uint32_t index) {
    Register reg = PlaceOf(form, index, value.get != nullptr, value.set != nullptr);
    if (value.get != nullptr) {
        reg.source = [get = std::move(value.get)](uint8_t* bytes) {
            ZelCti::StoreInteger(bytes, sizeof(uint32_t), get(), ByteOrder::Big);
        };
    }
    if (value.check != nullptr) {
        reg.check = [check = std::move(value.check)](const uint8_t* bytes) {
            check(BigEndianWord(bytes));
        };
    }
    if (value.set != nullptr) {
        reg.action = [set = std::move(value.set)](const uint8_t* bytes) {
            set(BigEndianWord(bytes));
        };
    }
    space.Add(std::move(reg));
}

void AddBytes(RegisterSpace& space, const ZelCti::Gev::Register& form,
              std::function<std::string()> get, std::function<void(const std::string&)> set) {
    Register reg = PlaceOf(form, 0, true, set != nullptr);
    const size_t size = reg.size;
    reg.source = [get = std::move(get), size](uint8_t* bytes) {
        const std::string content = get();
        std::fill_n(bytes, size, uint8_t{0});
        std::copy_n(content.begin(), std::min(content.size(), size), bytes);
    };
    if (set != nullptr) {
        reg.action = [set = std::move(set), size](const uint8_t* bytes) {
            set(std::string(ZelCti::LoadString(bytes, size)));
        };
    }
    space.Add(std::move(reg));
}

}  // namespace ZelSim
