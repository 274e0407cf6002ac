// Boolean: an integer with one value for true and one for false.
#pragma once

#include <GenApi/IBoolean.h>

#include "genapi/nodes/integersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class BooleanNode final : public Node, public IBoolean {
  public:
    BooleanNode(NodeMap& map, NodeId id);
    using IBoolean::operator=;

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;
    void SetValue(bool value, bool verify = true) override;
    bool GetValue(bool verify = false, bool ignoreCache = false) const override;

    // 1 and 0, whatever the two values are.
    int64_t GetInt(ReadOptions options) override;
    void SetInt(int64_t value, bool verify) override;
    int64_t MinInt() override;
    int64_t MaxInt() override;
    int64_t IncInt() override { return 1; }
    bool HasIncFloat() override { return true; }

  protected:
    EAccessMode SourceAccessMode(bool relaxed) override { return source_.AccessMode(relaxed); }

  private:
    int64_t ReadableInt(ReadOptions options);

    const BooleanData& data_;
    IntegerSource source_;
    int64_t value_ = 0;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
