// A camera's description, through the parameters that an application sees: whatever it says, the
// array is made and every operation answers, or there is none and a code tells why.
//
// An input that begins like an archive is announced as one.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "tests/library/support/fakeport.h"

using namespace ZelCameraApi::Internal;

namespace {

constexpr uint32_t kMaxWalked = 300;

// Reads a feature, and writes back what it read.
template <typename Kind>
void ReadAndWrite(Kind* param) {
    ZelCamErr err = ZelCamErr_Success;
    const auto value = param->GetValue(&err);
    if (err == ZelCamErr_Success) param->SetValue(value);
}

void Use(ZelGenParam::Int* param) {
    ReadAndWrite(param);
    param->GetMin(nullptr);
    param->GetMax(nullptr);
    param->GetIncrement(nullptr);
}

void Use(ZelGenParam::Float* param) {
    ReadAndWrite(param);
    param->GetMin(nullptr);
    param->GetMax(nullptr);
    param->GetUnit(nullptr);
}

void Use(ZelGenParam::String* param) {
    const char* const text = param->GetValue(nullptr, nullptr);
    if (text != nullptr) param->SetValue(std::string(text).c_str());
    param->GetMaxLength(nullptr);
}

void Use(ZelGenParam::Enum* param) {
    const size_t count = param->GetEnumEntriesCount(nullptr);
    for (size_t i = 0; i < count && i < kMaxWalked; ++i) {
        ZelGenParam::EnumEntry* const entry = param->GetEnumEntryByIndex(i);
        if (entry == nullptr) continue;
        param->SetValue(entry->GetValue(nullptr));
        if (const char* const text = entry->GetValueStr(nullptr)) param->SetValueStr(text);
    }
    param->GetValueStr(nullptr);
}

void Use(ZelGenParam::Command* param) {
    param->Execute();
    param->IsDone(nullptr);
}

void Use(ZelGenParam::Category* param) {
    const uint32_t count = param->GetCount();
    for (uint32_t i = 0; i < count && i < kMaxWalked; ++i)
        param->GetParamByIndex(i, nullptr);
}

void UseAny(ZelGenParam::Param* param) {
    param->GetToolTip();
    param->GetDescription();
    param->GetDisplayName();
    param->IsAvailable();
    param->IsVisible(ZelGenParam::Visibility::Guru);
    param->IsStreamable();
    if (auto* const value = param->ToInt()) Use(value);
    if (auto* const value = param->ToFloat()) Use(value);
    if (auto* const value = param->ToString()) Use(value);
    if (auto* const value = param->ToEnum()) Use(value);
    if (auto* const value = param->ToBoolean()) ReadAndWrite(value);
    if (auto* const value = param->ToCommand()) Use(value);
    if (auto* const value = param->ToCategory()) Use(value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string description(reinterpret_cast<const char*>(data), size);
    FakePort port;
    port.Announce(description, description.compare(0, 2, "PK") == 0 ? "camera.zip" : "camera.xml");

    ZelCamErr err = ZelCamErr_Success;
    const auto array = CreateArray(port.Module(), &err, nullptr);
    if ((array == nullptr) != (err != ZelCamErr_Success)) std::abort();
    if (array == nullptr) return 0;
    const uint32_t count = array->GetCount();
    for (uint32_t i = 0; i < count && i < kMaxWalked; ++i)
        if (ZelGenParam::Param* const param = array->GetParamByIndex(i, nullptr)) UseAny(param);
    array->Poll(1000);
    return 0;
}
