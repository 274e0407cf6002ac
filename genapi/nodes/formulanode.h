// Nodes that compute: SwissKnife and IntSwissKnife, Converter and IntConverter.
#pragma once

#include "genapi/nodes/family.h"
#include "genapi/nodes/formulavalue.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// A value computed from variables; it cannot be written.
template <typename Number>
class SwissKnifeNode final : public Family<Number> {
  public:
    SwissKnifeNode(NodeMap& map, NodeId id);
    using Family<Number>::operator=;

    const Presentation& OwnPresentation() const override { return data_.presentation; }

  protected:
    Number ReadValue(ReadOptions options) override;
    void WriteValue(Number value, bool verify) override;
    Number OwnMin() override;
    Number OwnMax() override;
    EAccessMode SourceAccessMode(bool relaxed) override;
    bool RefreshesCache() const override { return true; }

  private:
    const SwissKnifeData& data_;
};

// The value of another node, converted by one formula when read and by another when written.
template <typename Number>
class ConverterNode final : public Family<Number> {
  public:
    ConverterNode(NodeMap& map, NodeId id);
    using Family<Number>::operator=;

    const Presentation& OwnPresentation() const override { return data_.presentation; }
    NodeId PresentationSource() const override { return data_.value; }

  protected:
    Number ReadValue(ReadOptions options) override;
    void WriteValue(Number value, bool verify) override;
    Number OwnMin() override;
    Number OwnMax() override;
    // A linear formula converts the steps of the node below.
    bool HasOwnInc() override;
    Number OwnInc() override;
    EAccessMode SourceAccessMode(bool relaxed) override;

  private:
    struct Bounds {
        Number min, max;
    };
    Bounds FindBounds();
    Number AtMin();
    Number AtMax();

    const ConverterData& data_;
};

using FloatSwissKnifeNode = SwissKnifeNode<double>;
using IntSwissKnifeNode = SwissKnifeNode<int64_t>;
using FloatConverterNode = ConverterNode<double>;
using IntConverterNode = ConverterNode<int64_t>;

extern template class SwissKnifeNode<int64_t>;
extern template class SwissKnifeNode<double>;
extern template class ConverterNode<int64_t>;
extern template class ConverterNode<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
