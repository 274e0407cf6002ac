// Parameter objects of enumerations and of their entries.
#pragma once

#include <map>
#include <memory>

#include "ZelCameraApi/ZelGenParam/paramimpl.h"

namespace ZelCameraApi::Internal {

class EnumEntryParamImpl final : public ZelGenParam::EnumEntry,
                                 public TypedParamImpl<GenApi::IEnumEntry> {
  public:
    using TypedParamImpl::TypedParamImpl;
    int64_t GetValue(ZelCamErr* err) override;
    const char* GetValueStr(ZelCamErr* err) override;
};

// Owns the objects of its entries, one for each number.
class EnumerationParamImpl final : public ZelGenParam::Enum,
                                   public TypedParamImpl<GenApi::IEnumeration> {
  public:
    using TypedParamImpl::TypedParamImpl;
    size_t GetEnumEntriesCount(ZelCamErr* err) override;
    ZelGenParam::EnumEntry* GetEnumEntryByIndex(size_t index) override;
    ZelGenParam::EnumEntry* GetEnumEntryByName(const char* name) override;
    ZelGenParam::EnumEntry* GetEnumEntryByValue(int64_t value) override;
    int64_t GetValue(ZelCamErr* err) override;
    const char* GetValueStr(ZelCamErr* err) override;
    ZelCamErr SetValue(int64_t value) override;
    ZelCamErr SetValueStr(const char* value) override;

  private:
    // `find(enumeration)` returns the entry, or null if there is none.
    template <typename Find>
    ZelGenParam::EnumEntry* FindEntry(Find&& find);

    std::mutex entriesMutex_;  // never held during a call of the node map
    std::map<int64_t, std::unique_ptr<EnumEntryParamImpl>> entries_;  // guarded by entriesMutex_
};

}  // namespace ZelCameraApi::Internal
