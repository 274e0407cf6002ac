#include "producers/simulator/camera/gendcdescriptor.h"

#include <array>

#include "producers/wire/gendc.h"

namespace ZelSim {

namespace GenDc = ZelCti::GenDc;

using ZelCti::ByteSpan;
using ZelCti::FrameInfo;
using ZelCti::FramePart;

namespace {

GenDc::Container ContainerOf(const FrameInfo& frame, size_t descriptorSize) {
    GenDc::Container container;
    container.version = {1, 0, 0};
    container.headerSize = static_cast<uint32_t>(GenDc::ContainerHeaderSize(frame.parts.size()));
    container.id = frame.id;
    container.variableFields = GenDc::kVariesDataSize | GenDc::kVariesTimestamp;
    container.dataSize = frame.sizeFilled - descriptorSize;
    container.dataOffset = descriptorSize;
    container.descriptorSize = static_cast<uint32_t>(descriptorSize);
    container.componentCount = static_cast<uint32_t>(frame.parts.size());
    return container;
}

GenDc::Component ComponentOf(const FrameInfo& frame, const FramePart& part) {
    GenDc::Component component;
    component.headerSize = static_cast<uint32_t>(GenDc::ComponentHeaderSize(1));
    component.sourceId = static_cast<uint16_t>(part.sourceId);
    component.regionId = static_cast<uint16_t>(part.regionId);
    component.regionOffsetX = static_cast<uint32_t>(part.offsetX);
    component.regionOffsetY = static_cast<uint32_t>(part.offsetY);
    component.timestamp = frame.timestamp;
    component.typeId = part.purposeId;
    component.format = static_cast<uint32_t>(part.format);
    component.partCount = 1;
    return component;
}

GenDc::Part PartOf(const FrameSettings& settings, const FramePart& data, size_t descriptorSize) {
    GenDc::Part part;
    part.type = static_cast<uint16_t>(GenDc::PartType::Data2D);
    part.headerSize = kGenDcPartHeaderSize;
    part.format = static_cast<uint32_t>(data.format);
    part.flowOffset = data.offset - descriptorSize;
    part.dataSize = data.dataSize;
    part.dataOffset = data.offset;
    part.size =
        GenDc::Size2D{settings.width, settings.height, static_cast<uint16_t>(settings.xPadding),
                      static_cast<uint16_t>(settings.yPadding)};
    return part;
}

}  // namespace

void WriteGenDcDescriptor(const FrameSettings& settings, const FrameInfo& frame, ByteSpan out) {
    const auto descriptorSize = static_cast<size_t>(settings.PartsBegin());
    std::array<uint64_t, kNumComponents> components{};
    size_t end = GenDc::ContainerHeaderSize(frame.parts.size());
    for (size_t i = 0; i < frame.parts.size(); ++i) {
        components.at(i) = end;
        const uint64_t part = end + GenDc::ComponentHeaderSize(1);
        end += GenDc::EncodeComponent(out.From(end), ComponentOf(frame, frame.parts[i]), &part);
        end += GenDc::EncodePart(out.From(end), PartOf(settings, frame.parts[i], descriptorSize));
    }
    GenDc::EncodeContainer(out, ContainerOf(frame, descriptorSize), components.data());
}

}  // namespace ZelSim
