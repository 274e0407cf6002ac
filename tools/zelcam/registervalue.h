// Bytes of registers, and what they mean.
#ifndef ZELCAM_TOOLS_ZELCAM_REGISTERVALUE_H
#define ZELCAM_TOOLS_ZELCAM_REGISTERVALUE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

enum class ByteOrder { Little, Big };

std::string OrderWords(ByteOrder order);

// "0x0000002c", with 16 digits where 8 are too few.
std::string AddressText(uint64_t address);

// How bytes are read as values: hex (as they stand), text, u8 to u64, i8 to i64, f32, f64.
class RegisterType {
  public:
    // `name` is one of Names().
    explicit RegisterType(const std::string& name);
    static const std::vector<std::string>& Names();

    const std::string& Name() const { return name_; }
    size_t Size() const { return size_; }  // of a value in bytes; 1 for hex and text
    bool IsNumber() const { return kind_ != 'h' && kind_ != 't'; }

    // Whether the bytes of a value can stand in one order or the other.
    bool HasOrder() const { return size_ > 1; }

    // A number, null for one that is none; a text up to its first zero; bytes as hexadecimal
    // digits.
    nlohmann::ordered_json Value(const std::string& bytes, ByteOrder order) const;

    // The bytes of "hex:0a 0b ..." as they stand, or of a value of this type. Failure (Usage) when
    // it is none.
    std::string Bytes(const std::string& value, ByteOrder order) const;

  private:
    std::string NumberBytes(const std::string& value) const;

    std::string name_;
    char kind_;
    size_t size_ = 1;
};

// Sixteen bytes a line, with the address before them and the characters behind.
std::string HexDump(uint64_t address, const std::string& bytes);

#endif  // ZELCAM_TOOLS_ZELCAM_REGISTERVALUE_H
