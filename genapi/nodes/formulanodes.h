// Nodes that compute: SwissKnife and IntSwissKnife, Converter and IntConverter.
#pragma once

#include "genapi/nodes/floatbase.h"
#include "genapi/nodes/formulavalue.h"
#include "genapi/nodes/integerbase.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// The families that the two number types belong to.
template <typename Number>
struct FamilyOf;
template <>
struct FamilyOf<std::int64_t> {
    using Base = IntegerBase;
};
template <>
struct FamilyOf<double> {
    using Base = FloatBase;
};
template <typename Number>
using Family = typename FamilyOf<Number>::Base;

// A value computed from variables; it cannot be written.
template <typename Number>
class SwissKnifeNode final : public Family<Number> {
  public:
    SwissKnifeNode(NodeMap& map, NodeId id);
    using Family<Number>::operator=;

    const Presentation* presentation() const override { return &data_.presentation; }

  protected:
    Number readValue(ReadOptions options) override;
    void writeValue(Number value, bool verify) override;
    Number ownMin() override;
    Number ownMax() override;
    EAccessMode sourceAccessMode(bool relaxed) override;
    bool refreshesCache() const override { return true; }

  private:
    const SwissKnifeData& data_;
};

// Another node's value through a formula, and back through a second one.
template <typename Number>
class ConverterNode final : public Family<Number> {
  public:
    ConverterNode(NodeMap& map, NodeId id);
    using Family<Number>::operator=;

    const Presentation* presentation() const override { return &data_.presentation; }
    Node* presentationSource() override { return &this->node(data_.value); }
    // A linear formula takes the steps of the node below to steps of its own.
    bool hasInc() override;
    double incFloat() override;

  protected:
    Number readValue(ReadOptions options) override;
    void writeValue(Number value, bool verify) override;
    Number ownMin() override;
    Number ownMax() override;
    EAccessMode sourceAccessMode(bool relaxed) override;

  private:
    struct Bounds {
        Number min, max;
    };
    Bounds bounds();
    Number atMin();
    Number atMax();

    const ConverterData& data_;
};

using FloatSwissKnifeNode = SwissKnifeNode<double>;
using IntSwissKnifeNode = SwissKnifeNode<std::int64_t>;
using FloatConverterNode = ConverterNode<double>;
using IntConverterNode = ConverterNode<std::int64_t>;

extern template class SwissKnifeNode<std::int64_t>;
extern template class SwissKnifeNode<double>;
extern template class ConverterNode<std::int64_t>;
extern template class ConverterNode<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
