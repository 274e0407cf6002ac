#include "genapi/nodes/registernodes.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "genapi/nodes/textform.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

void reverseIf(bool bigEndian, std::uint8_t* bytes, std::size_t count) {
    // Little endian is how BitField and the numbers below put bytes together.
    if (bigEndian) std::reverse(bytes, bytes + count);
}

}  // namespace

BitField IntRegNode::field() {
    return {register_.data(), static_cast<std::size_t>(register_.length())};
}

std::int64_t IntRegNode::readValue(ReadOptions options) {
    if (options.verify) register_.verifyAddress();
    const BitField bits = field();
    std::uint8_t bytes[kMaxNumberLength];
    register_.read(bytes, register_.byteCount(), options);
    return bits.extract(bits.load(bytes));
}

void IntRegNode::writeValue(std::int64_t value, bool verify) {
    const BitField bits = field();
    const std::size_t count = register_.byteCount();
    std::uint8_t bytes[kMaxNumberLength] = {};
    std::uint64_t content = 0;
    if (!bits.isWhole()) {
        // The neighbours of the field keep their bits.
        if (!IsReadable(accessMode()))
            throw NODE_ERROR(AccessException, *this)("Node is not readable");
        register_.read(bytes, count, {});
        content = bits.load(bytes);
    }
    if (verify) register_.verifyAddress();
    bits.store(bits.insert(value, content), bytes);
    register_.write(bytes, count);
}

double FloatRegNode::ownMax() {
    return register_.length() == 4 ? static_cast<double>(std::numeric_limits<float>::max())
                                   : std::numeric_limits<double>::max();
}

double FloatRegNode::readValue(ReadOptions options) {
    std::uint8_t bytes[kMaxNumberLength] = {};
    const std::int64_t length = register_.length();
    if (length != 4 && length != 8)
        throw NODE_ERROR(RuntimeException, *this)("Length of a float register must be 4 or 8");
    register_.read(bytes, register_.byteCount(), options);
    reverseIf(register_.data().bigEndian, bytes, register_.byteCount());
    std::uint64_t bits = 0;
    for (std::size_t i = kMaxNumberLength; i-- > 0;)
        bits = bits << 8 | bytes[i];
    if (length == 8) {
        double value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
    const std::uint32_t half = static_cast<std::uint32_t>(bits);
    float value;
    std::memcpy(&value, &half, sizeof value);
    return static_cast<double>(value);
}

void FloatRegNode::writeValue(double value, bool) {
    const std::int64_t length = register_.length();
    std::uint64_t bits = 0;
    if (length == 8) {
        std::memcpy(&bits, &value, sizeof bits);
    } else if (length == 4) {
        const float single = static_cast<float>(value);
        std::uint32_t half;
        std::memcpy(&half, &single, sizeof half);
        bits = half;
    } else {
        throw NODE_ERROR(RuntimeException, *this)("Length of a float register must be 4 or 8");
    }
    std::uint8_t bytes[kMaxNumberLength];
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(bits);
        bits >>= 8;
    }
    reverseIf(register_.data().bigEndian, bytes, static_cast<std::size_t>(length));
    register_.write(bytes, static_cast<std::size_t>(length));
}

std::string StringRegNode::readValue(ReadOptions options) {
    if (options.verify) register_.verifyAddress();
    const std::vector<std::uint8_t> bytes = register_.read(options);
    return std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0));
}

void StringRegNode::writeValue(const std::string& value, bool) {
    // What the text does not fill is zeros.
    std::vector<std::uint8_t> bytes(register_.byteCount());
    std::copy_n(value.begin(), std::min(value.size(), bytes.size()), bytes.begin());
    register_.write(bytes.data(), bytes.size());
}

gcstring RegisterNode::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] {
        const std::vector<std::uint8_t> bytes = register_.read({false, ignoreCache});
        if (verify) checkErrorNodes();
        const std::string text = formatBytes(bytes.data(), bytes.size());
        return gcstring(text.data(), text.size());
    });
}

void RegisterNode::FromString(const gcstring& text, bool verify) {
    modify("FromString", changedByWriteTo(description(), id()), [&] {
        requireWritable(verify);
        std::vector<std::uint8_t> bytes;
        if (!parseBytes({text.c_str(), text.length()}, bytes))
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert hex string", name().data());
        bytes.resize(std::min(bytes.size(), register_.byteCount()));
        setBytes(bytes.data(), static_cast<std::int64_t>(bytes.size()), verify);
    });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
