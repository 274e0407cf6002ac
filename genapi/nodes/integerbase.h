// Nodes with an integer value: what they add to NumberBase, and how floating-point references read
// them.
#pragma once

#include "genapi/nodes/numberbase.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class IntegerBase : public NumberBase<int64_t> {
  public:
    using NumberBase::NumberBase;
    using NumberBase::operator=;

    EIncMode GetIncMode() override;
    int64_autovector_t GetListOfValidValues(bool bounded = true) override;
    GENICAM_NAMESPACE::gcstring GetUnit() override { return Unit(); }

    int64_t GetInt(ReadOptions options) final { return ReadNumber(options); }
    void SetInt(int64_t value, bool verify) final { WriteNumber(value, verify); }
    int64_t MinInt() final { return Lowest(); }
    int64_t MaxInt() final { return Highest(); }
    int64_t IncInt() final { return OwnInc(); }
    double GetFloat(ReadOptions options) final;
    void SetFloat(double value, bool verify) final;
    double MinFloat() final;
    double MaxFloat() final;
    bool HasIncFloat() final { return true; }
    double IncFloat() final;

  protected:
    void CheckRange(int64_t value) final;
    std::string Format(int64_t value) final;
    bool Parse(std::string_view text, int64_t& value) final;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
