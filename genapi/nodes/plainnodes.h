// Nodes without a value of their own: Node, Category, and the legacy kinds of IEEE 1394 cameras,
// which load but are not implemented.
#pragma once

#include <GenApi/ICategory.h>

#include "genapi/nodes/integerbase.h"
#include "genapi/nodes/stringnodes.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class PlainNode final : public Node, public IValue {
  public:
    using Node::Node;

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
};

class CategoryNode final : public Node, public ICategory {
  public:
    using Node::Node;

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
    void GetFeatures(FeatureList_t& features) const override;

  protected:
    EAccessMode sourceAccessMode(bool relaxed) override;

  private:
    Slice<NodeId> features() const;
};

// IntKey, SmartFeature, AdvFeatureLock.
class LegacyInteger final : public IntegerBase {
  public:
    using IntegerBase::IntegerBase;
    using IntegerBase::operator=;

  protected:
    std::int64_t readValue(ReadOptions) override { return 0; }
    void writeValue(std::int64_t, bool) override {}
    std::int64_t ownMin() override { return 0; }
    std::int64_t ownMax() override { return 0; }
    EAccessMode sourceAccessMode(bool) override { return NI; }
};

// TextDesc.
class LegacyString final : public StringBase {
  public:
    using StringBase::StringBase;
    using StringBase::operator=;

  protected:
    std::string readValue(ReadOptions) override { return {}; }
    void writeValue(const std::string&, bool) override {}
    std::int64_t maxLength() override { return 0; }
    EAccessMode sourceAccessMode(bool) override { return NI; }
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
