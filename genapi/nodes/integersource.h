// The integer behind a Boolean, Command or Enumeration: a stored number or another node's value.
#pragma once

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class IntegerSource {
  public:
    IntegerSource(Node& owner, const Setting<std::int64_t>& setting)
        : owner_(owner), setting_(setting), constant_(setting.constant) {}

    bool isNode() const { return setting_.isNode(); }
    Node* node() const { return isNode() ? &owner_.node(setting_.node) : nullptr; }

    std::int64_t read(ReadOptions options) const {
        return isNode() ? node()->getInt(options) : constant_;
    }
    void write(std::int64_t value, bool verify) {
        if (isNode()) {
            node()->setInt(value, verify);
        } else {
            owner_.map().beginWrite(owner_.id());
            constant_ = value;
        }
    }
    EAccessMode accessMode(bool relaxed) const {
        return isNode() ? node()->accessMode(relaxed) : RW;
    }

  private:
    Node& owner_;
    const Setting<std::int64_t>& setting_;
    std::int64_t constant_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
