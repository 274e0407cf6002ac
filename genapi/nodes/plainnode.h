// Nodes without a value of their own: Node, Category, and the legacy kinds of IEEE 1394 cameras,
// which load but report "not implemented".
#pragma once

#include <GenApi/ICategory.h>

#include "genapi/nodes/integerbase.h"
#include "genapi/nodes/stringnode.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class PlainNode final : public Node, public IValue {
  public:
    using Node::Node;

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
};

class CategoryNode final : public Node, public ICategory {
  public:
    using Node::Node;

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override { return false; }
    void GetFeatures(FeatureList_t& features) const override;

  protected:
    EAccessMode SourceAccessMode(bool relaxed) override;

  private:
    Slice<NodeId> Features() const;
};

// IntKey, SmartFeature, AdvFeatureLock.
class LegacyInteger final : public IntegerBase {
  public:
    using IntegerBase::IntegerBase;
    using IntegerBase::operator=;

  protected:
    int64_t ReadValue(ReadOptions) override { return 0; }
    void WriteValue(int64_t, bool) override {}
    int64_t OwnMin() override { return 0; }
    int64_t OwnMax() override { return 0; }
    EAccessMode SourceAccessMode(bool) override { return NI; }
};

// TextDesc.
class LegacyString final : public StringBase {
  public:
    using StringBase::StringBase;
    using StringBase::operator=;

  protected:
    std::string ReadValue(ReadOptions) override { return {}; }
    void WriteValue(const std::string&, bool) override {}
    int64_t MaxLength() override { return 0; }
    EAccessMode SourceAccessMode(bool) override { return NI; }
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
