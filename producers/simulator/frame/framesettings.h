// What a camera is set to.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "producers/simulator/frame/chunkdata.h"
#include "producers/simulator/frame/component.h"
#include "producers/simulator/frame/imagelayout.h"

namespace ZelSim {

enum class AcquisitionMode : uint32_t { Continuous, SingleFrame, MultiFrame };
enum class ExposureAuto : uint32_t { Off, Once, Continuous };
enum class TriggerSource : uint32_t { Software, Line0, Action0, Action1, Action2, Action3 };

// What is set for one selected channel of the amplifier, or for all of them.
enum class Channel : uint32_t { All, Red, Green, Blue };
constexpr size_t kNumChannels = 4;

// How fast frames can leave the camera.
struct LinkPace {
    uint64_t speed = 0;                       // bytes a second; 0: bytes take no time
    std::chrono::nanoseconds packetDelay{0};  // that each packet takes besides
    uint64_t packetBytes = 1;                 // of a frame, in each packet

    // How long the bytes of a frame, up to kMaxPayload, are under way.
    std::chrono::nanoseconds TimeOf(uint64_t bytes) const;
};

// The settings of a camera that a user set holds and that frames are made with. Values as in the
// registers; the camera publishes each state as an immutable snapshot.
struct FrameSettings : ImageLayout {
    uint32_t sensorWidth = 0;
    uint32_t sensorHeight = 0;
    uint32_t binningHorizontal = 1;
    uint32_t binningVertical = 1;
    bool reverseX = false;

    AcquisitionMode acquisitionMode = AcquisitionMode::Continuous;
    uint32_t acquisitionFrameCount = 1;
    bool keepsTime = true;        // without, frames take no time unless they have a rate
    bool frameRateEnable = true;  // without: as fast as exposure and read-out allow
    double frameRate = 30;        // Hz
    uint32_t exposureTime = 0;    // 0.1 us
    ExposureAuto exposureAuto = ExposureAuto::Off;
    bool triggerMode = false;
    TriggerSource triggerSource = TriggerSource::Software;
    uint32_t triggerActivation = 0;

    LinkPace link;
    uint32_t nominalExposureTime = 0;           // with which the pattern has its own brightness
    std::array<uint32_t, kNumChannels> gain{};  // 0.1 dB; those of a colour add to that of all
    std::array<int32_t, kNumChannels> blackLevel{};  // of 255
    double gamma = 1;

    bool chunkMode = false;
    ChunkSet chunks{ChunkKind::Image};  // those that are enabled

    // Those that are enabled, at least one; only of frames with parts.
    ComponentSet components = ComponentSet().set();

    uint32_t WidthMax() const { return sensorWidth / binningHorizontal; }
    uint32_t HeightMax() const { return sensorHeight / binningVertical; }

    // What widths are multiples of, so that lines are whole bytes.
    uint32_t WidthIncrement() const;

    uint64_t LinePitch() const { return pixelFormat->LineBytes(width) + uint64_t{xPadding}; }

    // Bytes of the image: what comes before it, its lines, and what comes after it.
    uint64_t ImageSize() const { return imageOffset + LinePitch() * height + yPadding; }

    bool HasParts() const { return payload != PayloadForm::Image; }
    bool Has(const ComponentTraits& component) const {
        return HasParts() && components.test(static_cast<size_t>(component.component));
    }

    // Of a component: its PFNC value, the bytes of a line, and those of its part.
    uint32_t FormatOf(const ComponentTraits& component) const {
        return component.format != 0 ? component.format : pixelFormat->value;
    }
    uint64_t LinePitch(const ComponentTraits& component) const;
    uint64_t PartSize(const ComponentTraits& component) const {
        return LinePitch(component) * height + yPadding;
    }

    // The chunks that frames carry; none unless the chunk mode is on. Parts are no chunks.
    ChunkSet SentChunks() const;

    // Where the parts lie in a frame that has some: behind the descriptor of a container.
    uint64_t PartsBegin() const {
        return payload == PayloadForm::GenDc ? GenDcDescriptorSize(components.count()) : 0;
    }
    uint64_t PartsEnd() const;

    // Bytes of one frame: chunks follow the parts, or the image, which is one of them.
    uint64_t PayloadSize() const;

    // Whether frames are exposed and read out for a time, or sent at once when there is a buffer.
    bool IsTimed() const { return keepsTime || frameRateEnable; }

    // How long a frame is exposed, and is then under way over the link.
    std::chrono::nanoseconds Exposure() const;
    std::chrono::nanoseconds Readout() const;

    // What the exposure and the read-out of timed frames allow: a frame is exposed while the one
    // before is read out. And what comes of it when nobody triggers.
    double MaxFrameRate() const;
    double ResultingFrameRate() const;

    // Brings what depends on other settings into its limits.
    void Adapt();

    // Whether the region, its format and what the sensor shows are the same.
    bool ShowsSameAs(const FrameSettings& other) const;
};

constexpr uint64_t kMaxPayload = uint64_t{1} << 30;  // keeps size arithmetic far from limits
constexpr uint32_t kMinExposureTime = 5;             // 0.5 us
constexpr uint32_t kMaxExposureTime = 100000000;     // 10 s
constexpr double kExposureUnitsPerSecond = 1e7;

}  // namespace ZelSim
