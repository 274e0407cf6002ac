// The integer behind a Boolean, Command or Enumeration: a stored number or another node's value.
#pragma once

#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class IntegerSource {
  public:
    IntegerSource(Node& owner, const Setting<int64_t>& setting)
        : owner_(owner), setting_(setting), constant_(setting.constant) {}

    bool IsNode() const { return setting_.IsNode(); }

    int64_t Read(ReadOptions options) const {
        return IsNode() ? Source().GetInt(options) : constant_;
    }
    void Write(int64_t value, bool verify) {
        if (IsNode()) {
            Source().SetInt(value, verify);
        } else {
            owner_.Map().BeginWrite(owner_.Id());
            constant_ = value;
        }
    }
    EAccessMode AccessMode(bool relaxed) const {
        return IsNode() ? Source().AccessMode(relaxed) : RW;
    }

  private:
    Node& Source() const { return owner_.NodeAt(setting_.node); }

    Node& owner_;
    const Setting<int64_t>& setting_;
    int64_t constant_;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
