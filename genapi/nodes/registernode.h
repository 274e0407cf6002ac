// Nodes that lie in registers: IntReg with its masked forms, FloatReg, StringReg, Register.
#pragma once

#include "genapi/nodes/floatbase.h"
#include "genapi/nodes/integerbase.h"
#include "genapi/nodes/stringnode.h"
#include "genapi/nodes/withregister.h"
#include "genapi/values/bitfield.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// IntReg, MaskedIntReg, StructEntry.
class IntRegNode final : public WithRegister<IntegerBase> {
  public:
    using WithRegister::WithRegister;
    using WithRegister::operator=;

  protected:
    int64_t ReadValue(ReadOptions options) override;
    void WriteValue(int64_t value, bool verify) override;
    int64_t OwnMin() override { return Field().Min(); }
    int64_t OwnMax() override { return Field().Max(); }
    bool RestsOnNodes() const override { return !register_.Data().addressIsConstant; }

  private:
    BitField Field();
};

class FloatRegNode final : public WithRegister<FloatBase> {
  public:
    using WithRegister::WithRegister;
    using WithRegister::operator=;

  protected:
    double ReadValue(ReadOptions options) override;
    void WriteValue(double value, bool verify) override;
    double OwnMin() override { return -OwnMax(); }
    double OwnMax() override;
    bool RestsOnNodes() const override { return !register_.Data().addressIsConstant; }
};

class StringRegNode final : public WithRegister<StringBase> {
  public:
    using WithRegister::WithRegister;
    using WithRegister::operator=;

  protected:
    std::string ReadValue(ReadOptions options) override;
    void WriteValue(const std::string& value, bool verify) override;
    int64_t MaxLength() override { return register_.Length(); }
};

// What Register adds to the bytes: their hexadecimal text.
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
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
