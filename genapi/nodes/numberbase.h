// What all nodes with a number as their value share: access checks, caching, limits, and the
// operations common to IInteger and IFloat. IntegerBase and FloatBase add the differences. The
// class of each kind provides the value and the limits.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "genapi/nodes/numberof.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
class NumberBase : public Node, public NumberOf<Number>::Interface {
  public:
    using Interface = typename NumberOf<Number>::Interface;
    using Node::Node;
    ~NumberBase() override;

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;

    void SetValue(Number value, bool verify = true) override;
    Interface& operator=(Number value) override;
    Number GetValue(bool verify = false, bool ignoreCache = false) override;
    Number operator()() override { return GetValue(); }
    Number operator*() override { return GetValue(); }
    Number GetMin() override;
    Number GetMax() override;
    Number GetInc() override;
    ERepresentation GetRepresentation() override;
    void ImposeMin(Number value) override;
    void ImposeMax(Number value) override;

  protected:
    virtual Number ReadValue(ReadOptions options) = 0;
    virtual void WriteValue(Number value, bool verify) = 0;
    virtual Number OwnMin() = 0;
    virtual Number OwnMax() = 0;
    // Whether the value moves in steps, and their size. Integers always have steps.
    virtual bool HasOwnInc() { return std::is_integral_v<Number>; }
    virtual Number OwnInc() { return 1; }
    // The values that the description lists, sorted; empty if any value within the limits is valid.
    virtual Slice<int64_t> ValidValues() { return {}; }
    // Whether a verified read must also verify the nodes below.
    virtual bool RestsOnNodes() const { return true; }
    // Whether a read past the cache leaves the value that it found in the cache, instead of
    // nothing.
    virtual bool RefreshesCache() const { return false; }

    // OutOfRangeException for a value that the limits or the increment forbid.
    virtual void CheckRange(Number value) = 0;
    virtual std::string Format(Number value) = 0;
    // False when the text is not a number.
    virtual bool Parse(std::string_view text, Number& value) = 0;

    // The value as other nodes read and write it.
    Number ReadNumber(ReadOptions options);
    void WriteNumber(Number value, bool verify);
    // The limits of the node and of the application.
    Number Lowest();
    Number Highest();
    // How to display the number; fills the gaps in the description with defaults.
    Presentation Shown() const;
    GENICAM_NAMESPACE::gcstring Unit() const;

  private:
    using Numbers = NumberOf<Number>;
    struct Limits {
        Number min = Numbers::kLowest;
        Number max = Numbers::kHighest;
    };

    Number Readable(ReadOptions options);
    Limits& MakeImposed();

    Number value_ = 0;
    std::unique_ptr<Limits> imposed_;  // limits set by the application, which few nodes have
};

extern template class NumberBase<int64_t>;
extern template class NumberBase<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
