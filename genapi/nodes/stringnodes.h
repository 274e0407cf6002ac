// Nodes with a text as their value: what they share, and String itself.
#pragma once

#include <memory>
#include <string>

#include <GenApi/IString.h>

#include "genapi/nodes/node.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class StringBase : public Node, public IString {
  public:
    using Node::Node;

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    // Texts are cached by their registers only.
    bool IsValueCacheValid() const override { return false; }
    void SetValue(const GENICAM_NAMESPACE::gcstring& value, bool verify = true) override;
    IString& operator=(const GENICAM_NAMESPACE::gcstring& value) override;
    GENICAM_NAMESPACE::gcstring GetValue(bool verify = false, bool ignoreCache = false) override;
    GENICAM_NAMESPACE::gcstring operator()() override { return GetValue(); }
    GENICAM_NAMESPACE::gcstring operator*() override { return GetValue(); }
    int64_t GetMaxLength(bool verify = false) override;

    std::string getText(ReadOptions options) final;
    void setText(const std::string& value, bool verify) final;
    std::int64_t maxTextLength() final { return maxLength(); }

  protected:
    virtual std::string readValue(ReadOptions options) = 0;
    virtual void writeValue(const std::string& value, bool verify) = 0;
    virtual std::int64_t maxLength() = 0;
    // For its length, where that is all that fits.
    virtual std::string presentText() { return getText({}); }
    std::string readableText(ReadOptions options);
};

// String: a stored text, or the text of another node.
class StringNode final : public StringBase {
  public:
    bool IsValueCacheValid() const override { return !data_.value.isNode(); }
    StringNode(NodeMap& map, NodeId id);
    using StringBase::operator=;

  protected:
    std::string readValue(ReadOptions options) override;
    void writeValue(const std::string& value, bool verify) override;
    std::int64_t maxLength() override;
    // Whether it can be read is up to the node below.
    std::string presentText() override { return readableText({}); }
    EAccessMode sourceAccessMode(bool relaxed) override;

  private:
    const StringData& data_;
    std::unique_ptr<std::string> constant_;  // once it was written
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
