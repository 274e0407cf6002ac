#include "producers/wire/gendc.h"

#include <algorithm>

#include "producers/wire/byteorder.h"

namespace ZelCti::GenDc {

namespace {

constexpr std::array<uint8_t, 4> kSignature{'G', 'N', 'D', 'C'};

// A little-endian number of the type at the offset.
template <typename T>
void Get(ByteView bytes, size_t offset, T& value) {
    value = static_cast<T>(
        LoadInteger(bytes.Sub(offset, sizeof(T)).data, sizeof(T), ByteOrder::Little));
}

template <typename T>
void Put(ByteSpan out, size_t offset, T value) {
    assert(offset + sizeof(T) <= out.size);
    StoreInteger(out.data + offset, sizeof(T), value, ByteOrder::Little);
}

// A header of the type and with at least this size at the offset: exactly its bytes. Components and
// parts begin alike: type, flags, header size.
Result<ByteView> HeaderAt(ByteView container, uint64_t offset, size_t leastSize) {
    if (offset > container.size || container.size - offset < leastSize) return Fault::TooShort;
    const ByteView rest = container.From(static_cast<size_t>(offset));
    uint32_t size = 0;
    Get(rest, 4, size);
    if (size < leastSize) return Fault::WrongEntrySize;
    if (size > rest.size) return Fault::TooShort;
    return rest.Sub(0, size);
}

// The offset of a component or a part; the header has as many as its count says.
uint64_t OffsetAt(ByteView bytes, size_t firstOffset, size_t index) {
    uint64_t offset = 0;
    Get(bytes, firstOffset + index * sizeof(offset), offset);
    return offset;
}

bool Is1D(uint16_t type) {
    switch (static_cast<PartType>(type)) {
        case PartType::Chunk:
        case PartType::Xml:
        case PartType::Data1D:
            return true;
        default:
            return false;
    }
}

bool Is2D(uint16_t type) {
    switch (static_cast<PartType>(type)) {
        case PartType::Data2D:
        case PartType::Jpeg:
        case PartType::Jpeg2000:
        case PartType::H264:
            return true;
        default:
            return false;
    }
}

size_t LeastPartHeaderSize(uint16_t type) {
    if (Is1D(type)) return kPart1DHeaderSize;
    return Is2D(type) ? kPart2DHeaderSize : kPartHeaderSize;
}

void DecodeSize(ByteView bytes, Part& part) {
    if (Is1D(part.type)) {
        Size1D size;
        Get(bytes, 40, size.size);
        Get(bytes, 48, size.padding);
        part.size = size;
    } else if (Is2D(part.type)) {
        Size2D size;
        Get(bytes, 40, size.sizeX);
        Get(bytes, 44, size.sizeY);
        Get(bytes, 48, size.paddingX);
        Get(bytes, 50, size.paddingY);
        part.size = size;
    }
}

void EncodeSize(ByteSpan, std::monostate) {}
void EncodeSize(ByteSpan out, const Size1D& size) {
    Put(out, 40, size.size);
    Put(out, 48, size.padding);
}
void EncodeSize(ByteSpan out, const Size2D& size) {
    Put(out, 40, size.sizeX);
    Put(out, 44, size.sizeY);
    Put(out, 48, size.paddingX);
    Put(out, 50, size.paddingY);
}

void PutOffsets(ByteSpan out, size_t firstOffset, const uint64_t* offsets, size_t count) {
    for (size_t i = 0; i < count; ++i)
        Put(out, firstOffset + i * sizeof(uint64_t), offsets[i]);
}

}  // namespace

Result<Container> DecodeContainer(ByteView bytes) {
    if (bytes.size < ContainerHeaderSize(0)) return Fault::TooShort;
    uint16_t type = 0;
    Get(bytes, 8, type);
    if (type != kContainerType || !std::equal(kSignature.begin(), kSignature.end(), bytes.data))
        return Fault::WrongKey;

    Container container;
    std::copy_n(bytes.data + 4, container.version.size(), container.version.begin());
    Get(bytes, 10, container.flags);
    Get(bytes, 12, container.headerSize);
    Get(bytes, 16, container.id);
    Get(bytes, 24, container.variableFields);
    Get(bytes, 32, container.dataSize);
    Get(bytes, 40, container.dataOffset);
    Get(bytes, 48, container.descriptorSize);
    Get(bytes, 52, container.componentCount);
    container.bytes = bytes;
    if (container.headerSize < ContainerHeaderSize(container.componentCount))
        return Fault::WrongEntrySize;
    if (container.headerSize > bytes.size) return Fault::TooShort;
    return container;
}

Result<Component> DecodeComponent(const Container& container, size_t index) {
    assert(index < container.componentCount);
    const uint64_t offset = OffsetAt(container.bytes, ContainerHeaderSize(0), index);
    const Result<ByteView> header = HeaderAt(container.bytes, offset, ComponentHeaderSize(0));
    if (!header) return header.GetFault();
    uint16_t type = 0;
    Get(*header, 0, type);
    if (type != kComponentType) return Fault::WrongKey;

    Component component;
    component.bytes = *header;
    Get(*header, 2, component.flags);
    Get(*header, 4, component.headerSize);
    Get(*header, 10, component.groupId);
    Get(*header, 12, component.sourceId);
    Get(*header, 14, component.regionId);
    Get(*header, 16, component.regionOffsetX);
    Get(*header, 20, component.regionOffsetY);
    Get(*header, 24, component.timestamp);
    Get(*header, 32, component.typeId);
    Get(*header, 40, component.format);
    Get(*header, 46, component.partCount);
    if (component.headerSize < ComponentHeaderSize(component.partCount))
        return Fault::WrongEntrySize;
    return component;
}

Result<Part> DecodePart(const Container& container, const Component& component, size_t index) {
    assert(index < component.partCount);
    const uint64_t offset = OffsetAt(component.bytes, ComponentHeaderSize(0), index);
    const Result<ByteView> header = HeaderAt(container.bytes, offset, kPartHeaderSize);
    if (!header) return header.GetFault();

    Part part;
    Get(*header, 0, part.type);
    Get(*header, 2, part.flags);
    Get(*header, 4, part.headerSize);
    Get(*header, 8, part.format);
    Get(*header, 14, part.flowId);
    Get(*header, 16, part.flowOffset);
    Get(*header, 24, part.dataSize);
    Get(*header, 32, part.dataOffset);
    if (part.headerSize < LeastPartHeaderSize(part.type)) return Fault::WrongEntrySize;
    DecodeSize(*header, part);
    return part;
}

std::optional<ByteView> DataOf(const Container& container, const Part& part) {
    const size_t size = container.bytes.size;
    if (part.dataOffset > size || part.dataSize > size - part.dataOffset) return std::nullopt;
    return container.bytes.Sub(static_cast<size_t>(part.dataOffset),
                               static_cast<size_t>(part.dataSize));
}

size_t EncodeContainer(ByteSpan out, const Container& container, const uint64_t* componentOffsets) {
    assert(container.headerSize >= ContainerHeaderSize(container.componentCount));
    out.PutZeros(0, container.headerSize);
    std::copy(kSignature.begin(), kSignature.end(), out.data);
    std::copy(container.version.begin(), container.version.end(), out.data + 4);
    Put(out, 8, kContainerType);
    Put(out, 10, container.flags);
    Put(out, 12, container.headerSize);
    Put(out, 16, container.id);
    Put(out, 24, container.variableFields);
    Put(out, 32, container.dataSize);
    Put(out, 40, container.dataOffset);
    Put(out, 48, container.descriptorSize);
    Put(out, 52, container.componentCount);
    PutOffsets(out, ContainerHeaderSize(0), componentOffsets, container.componentCount);
    return container.headerSize;
}

size_t EncodeComponent(ByteSpan out, const Component& component, const uint64_t* partOffsets) {
    assert(component.headerSize >= ComponentHeaderSize(component.partCount));
    out.PutZeros(0, component.headerSize);
    Put(out, 0, kComponentType);
    Put(out, 2, component.flags);
    Put(out, 4, component.headerSize);
    Put(out, 10, component.groupId);
    Put(out, 12, component.sourceId);
    Put(out, 14, component.regionId);
    Put(out, 16, component.regionOffsetX);
    Put(out, 20, component.regionOffsetY);
    Put(out, 24, component.timestamp);
    Put(out, 32, component.typeId);
    Put(out, 40, component.format);
    Put(out, 46, component.partCount);
    PutOffsets(out, ComponentHeaderSize(0), partOffsets, component.partCount);
    return component.headerSize;
}

size_t EncodePart(ByteSpan out, const Part& part) {
    assert(part.headerSize >= LeastPartHeaderSize(part.type));
    out.PutZeros(0, part.headerSize);
    Put(out, 0, part.type);
    Put(out, 2, part.flags);
    Put(out, 4, part.headerSize);
    Put(out, 8, part.format);
    Put(out, 14, part.flowId);
    Put(out, 16, part.flowOffset);
    Put(out, 24, part.dataSize);
    Put(out, 32, part.dataOffset);
    std::visit([&](const auto& size) { EncodeSize(out, size); }, part.size);
    return part.headerSize;
}

}  // namespace ZelCti::GenDc
