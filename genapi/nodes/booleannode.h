// Boolean: an integer of which two values mean true and false.
#pragma once

#include <GenApi/IBoolean.h>

#include "genapi/nodes/integersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class BooleanNode final : public Node, public IBoolean {
  public:
    BooleanNode(NodeMap& map, NodeId id);
    using IBoolean::operator=;

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;
    void SetValue(bool value, bool verify = true) override;
    bool GetValue(bool verify = false, bool ignoreCache = false) const override;

    // 1 and 0, whatever the numbers below are.
    std::int64_t getInt(ReadOptions options) override;
    void setInt(std::int64_t value, bool verify) override;
    std::int64_t minInt() override;
    std::int64_t maxInt() override;
    std::int64_t incInt() override { return 1; }
    bool hasInc() override { return true; }

  protected:
    EAccessMode sourceAccessMode(bool relaxed) override { return source_.accessMode(relaxed); }

  private:
    std::int64_t readableInt(ReadOptions options);

    const BooleanData& data_;
    IntegerSource source_;
    std::int64_t value_ = 0;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
