// Integer: a stored number, another node's value, or one of several picked by an index.
#pragma once

#include "genapi/nodes/integerbase.h"
#include "genapi/nodes/numbersource.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class IntegerNode final : public IntegerBase {
  public:
    IntegerNode(NodeMap& map, NodeId id);
    using IntegerBase::operator=;

    const Presentation* presentation() const override { return &source_.data().presentation; }
    Node* presentationSource() override { return source_.valueNode(); }

  protected:
    std::int64_t readValue(ReadOptions options) override { return source_.read(options); }
    void writeValue(std::int64_t value, bool verify) override { source_.write(value, verify); }
    std::int64_t ownMin() override { return source_.min(); }
    std::int64_t ownMax() override { return source_.max(); }
    std::int64_t ownInc() override { return source_.inc(); }
    Slice<std::int64_t> validValues() override;
    EAccessMode sourceAccessMode(bool relaxed) override { return source_.accessMode(relaxed); }

  private:
    NumberSource<std::int64_t> source_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
