// Float: a stored number, another node's value, or one of several picked by an index.
#pragma once

#include "genapi/nodes/floatbase.h"
#include "genapi/nodes/numbersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class FloatNode final : public FloatBase {
  public:
    FloatNode(NodeMap& map, NodeId id)
        : FloatBase(map, id), source_(*this, description().tables().floats[record().data]) {}

    using FloatBase::operator=;
    const Presentation* presentation() const override { return &source_.data().presentation; }
    Node* presentationSource() override { return source_.valueNode(); }
    bool hasInc() override { return source_.hasInc(); }
    double incFloat() override { return hasInc() ? source_.inc() : FloatBase::incFloat(); }

  protected:
    double readValue(ReadOptions options) override { return source_.read(options); }
    void writeValue(double value, bool verify) override { source_.write(value, verify); }
    double ownMin() override { return source_.min(); }
    double ownMax() override { return source_.max(); }
    EAccessMode sourceAccessMode(bool relaxed) override { return source_.accessMode(relaxed); }

  private:
    NumberSource<double> source_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
