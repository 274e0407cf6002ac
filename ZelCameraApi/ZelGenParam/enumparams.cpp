#include "ZelCameraApi/ZelGenParam/enumparams.h"

#include "ZelCameraApi/ZelGenParam/paramaccess.h"

namespace ZelCameraApi::Internal {

using GenApi::IEnumEntry;
using GenApi::IEnumeration;

namespace {

GenApi::NodeList_t EntriesOf(IEnumeration& enumeration) {
    GenApi::NodeList_t entries;
    enumeration.GetEntries(entries);
    return entries;
}

}  // namespace

int64_t EnumEntryParamImpl::GetValue(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IEnumEntry& e) { return e.GetValue(); });
}

const char* EnumEntryParamImpl::GetValueStr(ZelCamErr* err) {
    return ParamGetterWithError(
        value_, err, [this](IEnumEntry& e) { return texts_.Keep("GetValueStr", e.GetSymbolic()); });
}

size_t EnumerationParamImpl::GetEnumEntriesCount(ZelCamErr* err) {
    return ParamGetterWithError(value_, err,
                                [](IEnumeration& e) { return size_t{EntriesOf(e).size()}; });
}

template <typename Find>
ZelGenParam::EnumEntry* EnumerationParamImpl::FindEntry(Find&& find) {
    const auto keep = [&](IEnumeration& enumeration) -> ZelGenParam::EnumEntry* {
        IEnumEntry* const entry = find(enumeration);
        if (entry == nullptr) return nullptr;
        const int64_t number = entry->GetValue();
        GenApi::INode* const node = entry->GetNode();
        const std::lock_guard<std::mutex> lock(entriesMutex_);
        std::unique_ptr<EnumEntryParamImpl>& param = entries_[number];
        if (param == nullptr) param = std::make_unique<EnumEntryParamImpl>(Owner(), node);
        return param.get();
    };
    return ParamGetterWithError(value_, nullptr, keep);
}

ZelGenParam::EnumEntry* EnumerationParamImpl::GetEnumEntryByIndex(size_t index) {
    return FindEntry([=](IEnumeration& e) -> IEnumEntry* {
        const GenApi::NodeList_t entries = EntriesOf(e);
        if (index >= entries.size()) return nullptr;
        return dynamic_cast<IEnumEntry*>(entries[index]);
    });
}

ZelGenParam::EnumEntry* EnumerationParamImpl::GetEnumEntryByName(const char* name) {
    return FindEntry([=](IEnumeration& e) { return e.GetEntryByName(name); });
}

ZelGenParam::EnumEntry* EnumerationParamImpl::GetEnumEntryByValue(int64_t value) {
    return FindEntry([=](IEnumeration& e) { return e.GetEntry(value); });
}

int64_t EnumerationParamImpl::GetValue(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IEnumeration& e) { return e.GetIntValue(); });
}

const char* EnumerationParamImpl::GetValueStr(ZelCamErr* err) {
    return ParamGetterWithError(value_, err,
                                [this](IEnumeration& e) { return texts_.Keep("GetValueStr", *e); });
}

ZelCamErr EnumerationParamImpl::SetValue(int64_t value) {
    return ParamSetter(value_, [=](IEnumeration& e) { e.SetIntValue(value, true); });
}

ZelCamErr EnumerationParamImpl::SetValueStr(const char* value) {
    return ParamSetter(value_, [=](IEnumeration& e) { e = GenICam::gcstring(value); });
}

}  // namespace ZelCameraApi::Internal
