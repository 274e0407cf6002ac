// GenDC containers: blocks that describe themselves. A container has a descriptor at its begin and
// data behind it; the descriptor names components, each with parts. Little endian.
//
// The layout is known from one source.
#pragma once

#include <array>
#include <optional>
#include <variant>

#include "producers/wire/byteview.h"
#include "producers/wire/result.h"

namespace ZelCti::GenDc {

constexpr uint16_t kContainerType = 0x1000;
constexpr uint16_t kComponentType = 0x2000;

enum class PartType : uint16_t {
    Chunk = 0x4000,
    Xml = 0x4001,
    Data1D = 0x4100,
    Data2D = 0x4200,
    Jpeg = 0x4201,
    Jpeg2000 = 0x4202,
    H264 = 0x4203,
};

enum class ComponentId : uint64_t {
    Intensity = 1,
    Infrared,
    Ultraviolet,
    Range,
    Reflectance,
    Confidence,
    Scatter,
    Disparity,
    Multispectral,
    Metadata = 0x8001,
};

// Container::flags.
constexpr uint16_t kPtpTime = 0x0001;
constexpr uint16_t kHasInvalidComponent = 0x0002;
// Component::flags.
constexpr uint16_t kInvalidComponent = 0x0001;
// Container::variableFields: what may differ from one container to the next.
constexpr uint16_t kVariesDataSize = 0x0001;
constexpr uint16_t kVariesSizeX = 0x0002;
constexpr uint16_t kVariesSizeY = 0x0004;
constexpr uint16_t kVariesRegionOffset = 0x0008;
constexpr uint16_t kVariesFormat = 0x0010;
constexpr uint16_t kVariesTimestamp = 0x0020;
constexpr uint16_t kVariesComponentCount = 0x0040;
constexpr uint16_t kVariesComponentInvalid = 0x0080;

// Offsets count from the first byte of the container. The header of a container or a component ends
// with the offsets of what it consists of; the counts say how many they are.
constexpr size_t ContainerHeaderSize(size_t components) {
    return 56 + 8 * components;
}
constexpr size_t ComponentHeaderSize(size_t parts) {
    return 48 + 8 * parts;
}

struct Container {
    std::array<uint8_t, 3> version{};
    uint16_t flags = 0;
    uint32_t headerSize = 0;
    uint64_t id = 0;
    uint16_t variableFields = 0;
    uint64_t dataSize = 0;
    uint64_t dataOffset = 0;
    uint32_t descriptorSize = 0;  // as the container says; bytes may hold less of it
    uint32_t componentCount = 0;
    ByteView bytes;  // what the container was read from
};

struct Component {
    uint16_t flags = 0;
    uint32_t headerSize = 0;
    uint16_t groupId = 0;
    uint16_t sourceId = 0;
    uint16_t regionId = 0;
    uint32_t regionOffsetX = 0;
    uint32_t regionOffsetY = 0;
    uint64_t timestamp = 0;
    uint64_t typeId = 0;  // as in ComponentId
    uint32_t format = 0;
    uint16_t partCount = 0;
    ByteView bytes;  // its header
};

struct Size1D {
    uint64_t size = 0;
    uint64_t padding = 0;
};
struct Size2D {
    uint32_t sizeX = 0;
    uint32_t sizeY = 0;
    uint16_t paddingX = 0;
    uint16_t paddingY = 0;
};
constexpr size_t kPartHeaderSize = 40;
constexpr size_t kPart1DHeaderSize = 56;
constexpr size_t kPart2DHeaderSize = 52;

struct Part {
    uint16_t type = 0;  // as in PartType
    uint16_t flags = 0;
    uint32_t headerSize = 0;  // at least one of the constants above
    uint32_t format = 0;
    uint16_t flowId = 0;
    uint64_t flowOffset = 0;
    uint64_t dataSize = 0;
    uint64_t dataOffset = 0;
    std::variant<std::monostate, Size1D, Size2D> size;  // by the type
};

// From the begin of a container on; the bytes may end anywhere behind its header. What the headers
// name is looked at when it is asked for, so that the work does not depend on their counts.
Result<Container> DecodeContainer(ByteView bytes);
// Below componentCount, partCount.
Result<Component> DecodeComponent(const Container& container, size_t index);
Result<Part> DecodePart(const Container& container, const Component& component, size_t index);
// The data of a part; none when they do not lie within the bytes of the container.
std::optional<ByteView> DataOf(const Container& container, const Part& part);

// Write the header, headerSize bytes of it, and return them. The offsets are as many as the count
// says; `bytes` is not used.
size_t EncodeContainer(ByteSpan out, const Container& container, const uint64_t* componentOffsets);
size_t EncodeComponent(ByteSpan out, const Component& component, const uint64_t* partOffsets);
size_t EncodePart(ByteSpan out, const Part& part);

}  // namespace ZelCti::GenDc
