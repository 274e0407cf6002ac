#include "genapi/nodes/registernode.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "genapi/values/textform.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

void ReverseIf(bool bigEndian, uint8_t* bytes, size_t count) {
    // BitField and the numbers below assemble bytes in little-endian order.
    if (bigEndian) std::reverse(bytes, bytes + count);
}

}  // namespace

BitField IntRegNode::Field() {
    return {register_.Data(), static_cast<size_t>(register_.Length())};
}

int64_t IntRegNode::ReadValue(ReadOptions options) {
    if (options.verify) register_.VerifyAddress();
    const BitField bits = Field();
    uint8_t bytes[kMaxNumberLength];
    register_.Read(bytes, register_.ByteCount(), options);
    return bits.Extract(bits.Load(bytes));
}

void IntRegNode::WriteValue(int64_t value, bool verify) {
    const BitField bits = Field();
    const size_t count = register_.ByteCount();
    uint8_t bytes[kMaxNumberLength] = {};
    uint64_t content = 0;
    if (!bits.IsWhole()) {
        // The bits beside the field must keep their values, so they are read first.
        if (!IsReadable(AccessMode()))
            throw NODE_ERROR(AccessException, *this)("Node is not readable");
        register_.Read(bytes, count, {});
        content = bits.Load(bytes);
    }
    if (verify) register_.VerifyAddress();
    bits.Store(bits.Insert(value, content), bytes);
    register_.Write(bytes, count);
}

double FloatRegNode::OwnMax() {
    return register_.Length() == 4 ? static_cast<double>(std::numeric_limits<float>::max())
                                   : std::numeric_limits<double>::max();
}

double FloatRegNode::ReadValue(ReadOptions options) {
    uint8_t bytes[kMaxNumberLength] = {};
    const int64_t length = register_.Length();
    if (length != 4 && length != 8)
        throw NODE_ERROR(RuntimeException, *this)("Length of a float register must be 4 or 8");
    register_.Read(bytes, register_.ByteCount(), options);
    ReverseIf(register_.Data().bigEndian, bytes, register_.ByteCount());
    uint64_t bits = 0;
    for (size_t i = kMaxNumberLength; i-- > 0;)
        bits = bits << 8 | bytes[i];
    if (length == 8) {
        double value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
    const uint32_t half = static_cast<uint32_t>(bits);
    float value;
    std::memcpy(&value, &half, sizeof value);
    return static_cast<double>(value);
}

void FloatRegNode::WriteValue(double value, bool) {
    const int64_t length = register_.Length();
    uint64_t bits = 0;
    if (length == 8) {
        std::memcpy(&bits, &value, sizeof bits);
    } else if (length == 4) {
        const float single = static_cast<float>(value);
        uint32_t half;
        std::memcpy(&half, &single, sizeof half);
        bits = half;
    } else {
        throw NODE_ERROR(RuntimeException, *this)("Length of a float register must be 4 or 8");
    }
    uint8_t bytes[kMaxNumberLength];
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>(bits);
        bits >>= 8;
    }
    ReverseIf(register_.Data().bigEndian, bytes, static_cast<size_t>(length));
    register_.Write(bytes, static_cast<size_t>(length));
}

std::string StringRegNode::ReadValue(ReadOptions options) {
    if (options.verify) register_.VerifyAddress();
    const std::vector<uint8_t> bytes = register_.Read(options);
    return std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0));
}

void StringRegNode::WriteValue(const std::string& value, bool) {
    // Zeros follow the text.
    std::vector<uint8_t> bytes(register_.ByteCount());
    std::copy_n(value.begin(), std::min(value.size(), bytes.size()), bytes.begin());
    register_.Write(bytes.data(), bytes.size());
}

gcstring RegisterNode::ToString(bool verify, bool ignoreCache) {
    return RunRead("ToString", [&] {
        const std::vector<uint8_t> bytes = register_.Read({false, ignoreCache});
        if (verify) CheckErrorNodes();
        const std::string text = FormatBytes(bytes.data(), bytes.size());
        return gcstring(text.data(), text.size());
    });
}

void RegisterNode::FromString(const gcstring& text, bool verify) {
    RunChange("FromString", ChangedByWriteTo(CameraDescription(), Id()), [&] {
        RequireWritable(verify);
        std::vector<uint8_t> bytes;
        if (!ParseBytes({text.c_str(), text.length()}, bytes))
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert hex string", Name().data());
        bytes.resize(std::min(bytes.size(), register_.ByteCount()));
        SetBytes(bytes.data(), static_cast<int64_t>(bytes.size()), verify);
    });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
