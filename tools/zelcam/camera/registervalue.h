// Converts the bytes of registers to values and back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/zelcam/console/jsontext.h"

namespace ZelTool {

enum class ByteOrder { Little, Big };

std::string OrderWords(ByteOrder order);

// "0x0000002c", with more digits if the address needs them.
std::string AddressText(uint64_t address);

// The type of a value in registers: hex (the bytes themselves), text, u8 to u64, i8 to i64, f32 or
// f64.
class RegisterType {
  public:
    // `name` is one of Names().
    explicit RegisterType(const std::string& name);
    static const std::vector<std::string>& Names();

    const std::string& Name() const { return name_; }
    size_t Size() const { return size_; }  // of a value in bytes; 1 for hex and text
    bool IsNumber() const { return kind_ != 'h' && kind_ != 't'; }

    // Whether a value has more than one byte, so that their order matters.
    bool HasOrder() const { return size_ > 1; }

    // A number, a text up to its first zero, or the bytes as hexadecimal digits.
    Json Value(const std::string& bytes, ByteOrder order) const;

    // The bytes of a value of this type, or the bytes in a text such as "hex:0a 0b". Throws Failure
    // (Usage) for any other text.
    std::string Bytes(const std::string& value, ByteOrder order) const;

  private:
    std::string NumberBytes(const std::string& value) const;

    std::string name_;
    char kind_;
    size_t size_ = 1;
};

// Lines with an address, sixteen bytes and their characters.
std::string HexDump(uint64_t address, const std::string& bytes);

}  // namespace ZelTool
