#include "producers/simulator/frame/framesettings.h"

#include <algorithm>
#include <tuple>

namespace ZelSim {

namespace {

constexpr std::chrono::nanoseconds kExposureUnit(100);
constexpr uint64_t kNsPerSecond = 1000000000;
constexpr uint64_t kBitsPerByte = 8;

// What TestPicture depends on.
auto Shown(const FrameSettings& s) {
    return std::tie(s.sensorWidth, s.sensorHeight, s.width, s.height, s.offsetX, s.offsetY,
                    s.binningHorizontal, s.binningVertical, s.reverseX, s.pixelFormat, s.pattern,
                    s.xPadding, s.exposureTime, s.nominalExposureTime, s.gain, s.blackLevel,
                    s.gamma);
}

}  // namespace

// Numbers below 2^30 have products below 2^63; what is larger is refused after this.
std::chrono::nanoseconds LinkPace::TimeOf(uint64_t bytes) const {
    const uint64_t numPackets = (bytes + packetBytes - 1) / packetBytes;
    const uint64_t delays = numPackets * static_cast<uint64_t>(packetDelay.count());
    return std::chrono::nanoseconds(delays + (speed == 0 ? 0 : bytes * kNsPerSecond / speed));
}

uint32_t FrameSettings::WidthIncrement() const {
    uint32_t increment = 1;
    while (!pixelFormat->AcceptsWidth(increment))
        ++increment;
    return increment;
}

uint64_t FrameSettings::LinePitch(const ComponentTraits& component) const {
    const uint64_t bitsPerPixel = FormatOf(component) >> 16 & 0xFF;
    return width * bitsPerPixel / kBitsPerByte + xPadding;
}

ChunkSet FrameSettings::SentChunks() const {
    if (!chunkMode) return {};
    ChunkSet sent = chunks;
    if (HasParts()) sent.Set(ChunkKind::Image, false);
    return sent;
}

uint64_t FrameSettings::PartsEnd() const {
    uint64_t end = PartsBegin();
    for (const ComponentTraits& component : kComponents)
        end += Has(component) ? PartSize(component) : 0;
    return end;
}

uint64_t FrameSettings::PayloadSize() const {
    if (HasParts()) return PartsEnd() + PayloadWithChunks(SentChunks(), 0);
    return PayloadWithChunks(SentChunks(), ImageSize());
}

std::chrono::nanoseconds FrameSettings::Exposure() const {
    return IsTimed() ? exposureTime * kExposureUnit : std::chrono::nanoseconds(0);
}

std::chrono::nanoseconds FrameSettings::Readout() const {
    return IsTimed() ? link.TimeOf(PayloadSize()) : std::chrono::nanoseconds(0);
}

double FrameSettings::MaxFrameRate() const {
    const double rate = kExposureUnitsPerSecond / exposureTime;
    const auto time = std::chrono::duration<double>(link.TimeOf(PayloadSize()));
    return time.count() > 0 ? std::min(rate, 1 / time.count()) : rate;
}

double FrameSettings::ResultingFrameRate() const {
    return frameRateEnable ? frameRate : MaxFrameRate();
}

void FrameSettings::Adapt() {
    const uint32_t increment = WidthIncrement();
    width = std::max(std::min(width, WidthMax()) / increment * increment, increment);
    height = std::min(height, HeightMax());
    offsetX = std::min(offsetX, WidthMax() - std::min(width, WidthMax()));
    offsetY = std::min(offsetY, HeightMax() - height);
    frameRate = std::min(frameRate, MaxFrameRate());
}

bool FrameSettings::ShowsSameAs(const FrameSettings& other) const {
    return Shown(*this) == Shown(other);
}

}  // namespace ZelSim
