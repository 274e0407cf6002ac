// Nodes that lie in registers: IntReg with its masked forms, FloatReg, StringReg, Register.
#pragma once

#include "genapi/nodes/bitfield.h"
#include "genapi/nodes/floatbase.h"
#include "genapi/nodes/integerbase.h"
#include "genapi/nodes/stringnodes.h"
#include "genapi/nodes/withregister.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// IntReg, MaskedIntReg, StructEntry.
class IntRegNode final : public WithRegister<IntegerBase> {
  public:
    using WithRegister::WithRegister;
    using WithRegister::operator=;

  protected:
    std::int64_t readValue(ReadOptions options) override;
    void writeValue(std::int64_t value, bool verify) override;
    std::int64_t ownMin() override { return field().min(); }
    std::int64_t ownMax() override { return field().max(); }
    bool restsOnNodes() const override { return !register_.data().addressIsConstant; }

  private:
    BitField field();
};

class FloatRegNode final : public WithRegister<FloatBase> {
  public:
    using WithRegister::WithRegister;
    using WithRegister::operator=;

  protected:
    double readValue(ReadOptions options) override;
    void writeValue(double value, bool verify) override;
    double ownMin() override { return -ownMax(); }
    double ownMax() override;
    bool restsOnNodes() const override { return !register_.data().addressIsConstant; }
};

class StringRegNode final : public WithRegister<StringBase> {
  public:
    using WithRegister::WithRegister;
    using WithRegister::operator=;

  protected:
    std::string readValue(ReadOptions options) override;
    void writeValue(const std::string& value, bool verify) override;
    std::int64_t maxLength() override { return register_.length(); }
};

// What Register has beside the bytes: their hexadecimal text.
class BytesBase : public Node {
  public:
    using Node::Node;
};

class RegisterNode final : public WithRegister<BytesBase> {
  public:
    using WithRegister::WithRegister;

    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    // Bytes are cached by address, not by node.
    bool IsValueCacheValid() const override { return false; }
    const Presentation* presentation() const override { return nullptr; }
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
