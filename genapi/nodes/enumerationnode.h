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

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    // As in the reference implementation, an entry does not tell; its property of that name does.
    GENICAM_NAMESPACE::gcstring GetDeviceName() const override { return {}; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
    int64_t GetValue() override { return data_.value; }
    GENICAM_NAMESPACE::gcstring GetSymbolic() const override;
    double GetNumericValue() override { return data_.numeric; }
    bool IsSelfClearing() override { return data_.selfClearing; }

    const EnumEntryData& data() const { return data_; }

  protected:
    EAccessMode sourceAccessMode(bool) override { return RO; }

  private:
    const EnumEntryData& data_;
};

class EnumerationNode final : public Node, public IEnumeration {
  public:
    EnumerationNode(NodeMap& map, NodeId id);

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
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

    std::int64_t getInt(ReadOptions options) override;
    void setInt(std::int64_t value, bool verify) override;
    std::int64_t minInt() override;
    std::int64_t maxInt() override;
    std::int64_t incInt() override { return 1; }
    // Floating-point references see the numeric value of the entry.
    double getFloat(ReadOptions options) override;
    void setFloat(double value, bool verify) override;
    double minFloat() override;
    double maxFloat() override;
    bool hasInc() override { return true; }
    double incFloat() override { return 1; }

    bool isPolled() const override;

    // The entry with that value or symbolic, the last where there are several; or null.
    EnumEntryNode* entryOf(std::int64_t value) const;
    EnumEntryNode* entryOf(std::string_view symbolic) const;
    // Counts such a search as work, where a formula makes it.
    void spendSearch() const;

  protected:
    EAccessMode sourceAccessMode(bool relaxed) override;
    EAccessMode partsAccessMode() override;

  private:
    std::int64_t readValue(ReadOptions options);
    std::int64_t readableInt(ReadOptions options);
    void verifyEntry(EnumEntryNode& current);
    void write(EnumEntryNode& target, bool verify);
    Slice<NodeId> entries() const;
    EnumEntryNode& entry(NodeId id) const;
    template <typename Predicate>
    EnumEntryNode* lastEntry(Predicate predicate) const;
    GENICAM_NAMESPACE::InvalidArgumentException noEntry(std::int64_t value) const;
    GENICAM_NAMESPACE::InvalidArgumentException noEntry(const std::string& value) const;

    const EnumerationData& data_;
    IntegerSource source_;
    std::int64_t value_ = 0;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
