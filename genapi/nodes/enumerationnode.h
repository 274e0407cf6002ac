// Enumeration and its entries.
#pragma once

#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>

#include "genapi/nodes/integersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class EnumEntryNode final : public Node, public IEnumEntry {
  public:
    EnumEntryNode(NodeMap& map, NodeId id);

    INode* GetNode() override { return this; }
    // As in the reference implementation, this is empty for an entry; its property "DeviceName" is
    // not.
    GENICAM_NAMESPACE::gcstring GetDeviceName() const override { return {}; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
    int64_t GetValue() override { return data_.value; }
    GENICAM_NAMESPACE::gcstring GetSymbolic() const override;
    double GetNumericValue() override { return data_.numeric; }
    bool IsSelfClearing() override { return data_.selfClearing; }

    const EnumEntryData& Data() const { return data_; }

  protected:
    EAccessMode SourceAccessMode(bool) override { return RO; }

  private:
    const EnumEntryData& data_;
};

class EnumerationNode final : public Node, public IEnumeration {
  public:
    EnumerationNode(NodeMap& map, NodeId id);

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;
    void GetSymbolics(StringList_t& symbolics) override;
    void GetEntries(NodeList_t& entries) override;
    IEnumeration& operator=(const GENICAM_NAMESPACE::gcstring& symbolic) override;
    void SetIntValue(int64_t value, bool verify = true) override;
    GENICAM_NAMESPACE::gcstring operator*() override { return ToString(); }
    int64_t GetIntValue(bool verify = false, bool ignoreCache = false) override;
    IEnumEntry* GetEntryByName(const GENICAM_NAMESPACE::gcstring& symbolic) override;
    IEnumEntry* GetEntry(const int64_t value) override;
    IEnumEntry* GetCurrentEntry(bool verify = false, bool ignoreCache = false) override;

    int64_t GetInt(ReadOptions options) override;
    void SetInt(int64_t value, bool verify) override;
    int64_t MinInt() override;
    int64_t MaxInt() override;
    int64_t IncInt() override { return 1; }
    // Floating-point references read the numeric value of the entry.
    double GetFloat(ReadOptions options) override;
    void SetFloat(double value, bool verify) override;
    double MinFloat() override;
    double MaxFloat() override;
    bool HasIncFloat() override { return true; }
    double IncFloat() override { return 1; }

    bool IsPolled() const override;

    // The entry with that value or symbolic, the last one of several; null if there is none.
    EnumEntryNode* EntryOf(int64_t value) const;
    EnumEntryNode* EntryOf(std::string_view symbolic) const;
    // Counts the search as work if a formula makes it.
    void SpendSearch() const;

  protected:
    EAccessMode SourceAccessMode(bool relaxed) override;
    EAccessMode PartsAccessMode() override;

  private:
    int64_t ReadValue(ReadOptions options);
    int64_t ReadableInt(ReadOptions options);
    void VerifyEntry(EnumEntryNode& current);
    void Write(EnumEntryNode& target, bool verify);
    Slice<NodeId> Entries() const;
    EnumEntryNode& EntryAt(NodeId id) const;
    template <typename Predicate>
    EnumEntryNode* LastEntry(Predicate predicate) const;
    GENICAM_NAMESPACE::InvalidArgumentException NoEntry(int64_t value) const;
    GENICAM_NAMESPACE::InvalidArgumentException NoEntry(const std::string& value) const;

    const EnumerationData& data_;
    IntegerSource source_;
    int64_t value_ = 0;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
