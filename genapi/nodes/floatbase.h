// Nodes with a floating-point value: what they add to NumberBase, and how integer references read
// them.
#pragma once

#include "genapi/nodes/numberbase.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class FloatBase : public NumberBase<double> {
  public:
    using NumberBase::NumberBase;
    using NumberBase::operator=;

    bool HasInc() override;
    EIncMode GetIncMode() override;
    double_autovector_t GetListOfValidValues(bool bounded = true) override;
    GENICAM_NAMESPACE::gcstring GetUnit() const override { return Unit(); }
    EDisplayNotation GetDisplayNotation() const override;
    int64_t GetDisplayPrecision() const override;

    int64_t GetInt(ReadOptions options) final;
    void SetInt(int64_t value, bool verify) final;
    int64_t MinInt() final;
    int64_t MaxInt() final;
    int64_t IncInt() final { return 1; }
    double GetFloat(ReadOptions options) final { return ReadNumber(options); }
    void SetFloat(double value, bool verify) final { WriteNumber(value, verify); }
    double MinFloat() final { return Lowest(); }
    double MaxFloat() final { return Highest(); }
    bool HasIncFloat() final { return HasOwnInc(); }
    double IncFloat() final;

  protected:
    void CheckRange(double value) final;
    std::string Format(double value) final;
    bool Parse(std::string_view text, double& value) final;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
