// Nodes with a text as their value: their common base, and String itself.
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

    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    // Only the registers of texts are cached.
    bool IsValueCacheValid() const override { return false; }
    void SetValue(const GENICAM_NAMESPACE::gcstring& value, bool verify = true) override;
    IString& operator=(const GENICAM_NAMESPACE::gcstring& value) override;
    GENICAM_NAMESPACE::gcstring GetValue(bool verify = false, bool ignoreCache = false) override;
    GENICAM_NAMESPACE::gcstring operator()() override { return GetValue(); }
    GENICAM_NAMESPACE::gcstring operator*() override { return GetValue(); }
    int64_t GetMaxLength(bool verify = false) override;

    std::string GetText(ReadOptions options) final;
    void SetText(const std::string& value, bool verify) final;
    int64_t MaxTextLength() final { return MaxLength(); }

  protected:
    virtual std::string ReadValue(ReadOptions options) = 0;
    virtual void WriteValue(const std::string& value, bool verify) = 0;
    virtual int64_t MaxLength() = 0;
    // The present text, for its length if it cannot be written.
    virtual std::string PresentText() { return GetText({}); }
    std::string ReadableText(ReadOptions options);
};

// String: a stored text, or the text of another node.
class StringNode final : public StringBase {
  public:
    bool IsValueCacheValid() const override { return !data_.value.IsNode(); }
    StringNode(NodeMap& map, NodeId id);
    using StringBase::operator=;

  protected:
    std::string ReadValue(ReadOptions options) override;
    void WriteValue(const std::string& value, bool verify) override;
    int64_t MaxLength() override;
    // The node below decides whether the text can be read.
    std::string PresentText() override { return ReadableText({}); }
    EAccessMode SourceAccessMode(bool relaxed) override;

  private:
    const StringData& data_;
    std::unique_ptr<std::string> constant_;  // after a write
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
