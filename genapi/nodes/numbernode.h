// Integer and Float: a stored number, the value of another node, or one of several picked by an
// index.
#pragma once

#include "genapi/nodes/family.h"
#include "genapi/nodes/numbersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
class NumberNode final : public Family<Number> {
  public:
    NumberNode(NodeMap& map, NodeId id)
        : Family<Number>(map, id),
          source_(*this,
                  NumberOf<Number>::Data(this->CameraDescription().Tables(), this->Record().data)) {
    }
    using Family<Number>::operator=;

    const Presentation& OwnPresentation() const override { return source_.Data().presentation; }
    NodeId PresentationSource() const override { return source_.Data().value.node; }

  protected:
    Number ReadValue(ReadOptions options) override { return source_.Read(options); }
    void WriteValue(Number value, bool verify) override { source_.Write(value, verify); }
    Number OwnMin() override { return source_.Min(); }
    Number OwnMax() override { return source_.Max(); }
    bool HasOwnInc() override { return Family<Number>::HasOwnInc() || source_.HasInc(); }
    Number OwnInc() override { return source_.Inc(); }
    Slice<int64_t> ValidValues() override {
        return NodeTables::SliceOf(this->CameraDescription().Tables().validValues,
                                   source_.Data().validValues);
    }
    EAccessMode SourceAccessMode(bool relaxed) override { return source_.AccessMode(relaxed); }

  private:
    NumberSource<Number> source_;
};

using IntegerNode = NumberNode<int64_t>;
using FloatNode = NumberNode<double>;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
