// Chunk data. Node maps read the values through ports that a chunk adapter serves.
#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/simulator/features/settings.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::Error;
using ZelCti::Feature;
using ZelCti::FeatureTable;
using ZelCti::HexOf;
using ZelCti::IntegerValue;

namespace {

using Settings = FrameSettings;

struct ChunkFeature {
    ChunkKind kind;
    const char* name;
    const char* toolTip;
};
constexpr ChunkFeature kChunks[] = {
    {ChunkKind::Image, "Image", "The image."},
    {ChunkKind::Width, "Width", "The width of the image."},
    {ChunkKind::Height, "Height", "The height of the image."},
    {ChunkKind::PixelFormat, "PixelFormat", "The pixel format of the image."},
    {ChunkKind::FrameId, "FrameID", "The number of the frame."},
    {ChunkKind::Timestamp, "Timestamp", "When the frame was taken, in ticks of the camera."},
    {ChunkKind::ExposureTime, "ExposureTime", "The exposure time of the frame."},
    {ChunkKind::Gain, "Gain", "The gain of the frame."},
};

// Programs for network cameras switch every chunk of the selector, so cameras there do not offer
// the image, which is always sent.
std::vector<Entry> ChunkEntries(const Camera& camera) {
    std::vector<Entry> entries;
    for (const ChunkFeature& chunk : kChunks) {
        if (chunk.kind == ChunkKind::Image && camera.Config().network) continue;
        entries.push_back({chunk.name, static_cast<int64_t>(chunk.kind), chunk.toolTip});
    }
    return entries;
}

void CheckSwitch(uint64_t value) {
    if (value > 1) throw Error(GenTL::GC_ERR_INVALID_VALUE, "neither on nor off");
}

IntegerValue EnableValue(CameraControl& control, ChunkKind kind) {
    IntegerValue value;
    value.get = [&control, kind] { return uint64_t{control.Settings()->chunks.Has(kind)}; };
    value.check = [kind](uint64_t on) {
        if (kind == ChunkKind::Image) {
            throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the register is read-only");
        }
        CheckSwitch(on);
    };
    value.set = [&control, kind](uint64_t on) {
        control.ChangeFixed([=](Settings& s) { s.chunks.Set(kind, on != 0); });
    };
    return value;
}

void AddSwitches(FeatureTable& features, Camera& camera) {
    CameraControl& control = camera.Control();
    const SettingTraits settings(control);
    features.Boolean("ChunkModeActive", "Whether frames carry chunks.")
        .Expert()
        .At(0x9000)
        .Streamable()
        .Apply(settings.Fixed(&Settings::chunkMode))
        .Check(CheckSwitch);
    features.Enumeration("ChunkSelector", "Selects the chunk that ChunkEnable switches.")
        .Expert()
        .Entries(ChunkEntries(camera))
        .Streamable()
        .Local(static_cast<int64_t>(ChunkKind::Width));
    features
        .Boolean("ChunkEnable",
                 "Whether frames carry the selected chunk in chunk mode; the image is always "
                 "there.")
        .Expert()
        .SelectedBy("ChunkSelector")
        .LockedBy("ChunkEnableIsLocked")
        .At(0x9010)
        .Streamable()
        .InvalidatedBy({"UserSetLoad", "DeviceReset"})
        .Indexed("ChunkSelectorValue", kNumChunkKinds,
                 [&control](size_t i) { return EnableValue(control, static_cast<ChunkKind>(i)); });
    features.IntSwissKnife("ChunkEnableIsLocked")
        .Variables({{"LOCKED", "FrameSettingsLocked"}, {"SELECTOR", "ChunkSelectorValue"}})
        .Formula("(LOCKED = 1) || (SELECTOR = 0)");
}

// The feature of the value in a chunk, of a kind that fits.
Feature& AddChunkValue(FeatureTable& features, ChunkKind kind, const std::string& name,
                       const char* toolTip) {
    switch (kind) {
        case ChunkKind::PixelFormat:
            return features.Enumeration(name, toolTip).At(0).Entries(PixelFormatEntries());
        case ChunkKind::FrameId:
        case ChunkKind::Timestamp:
            return features.Integer(name, toolTip).At(0, 8);
        case ChunkKind::ExposureTime:
            return features.Float(name, toolTip).At(0).Unit("us");
        case ChunkKind::Gain:
            return features.Float(name, toolTip).At(0).Unit("dB");
        default:
            return features.Integer(name, toolTip).At(0);
    }
}

}  // namespace

void AddChunkDataControl(FeatureTable& features, Camera& camera) {
    features.Category("ChunkDataControl",
                      "What the camera sends with each frame beside the image.");
    AddSwitches(features, camera);
    for (const ChunkFeature& chunk : kChunks) {
        if (chunk.kind == ChunkKind::Image) continue;
        const std::string name = std::string("Chunk") + chunk.name;
        AddChunkValue(features, chunk.kind, name, chunk.toolTip).Expert().Port(name + "Port");
        features.Port(name + "Port").With("ChunkID", HexOf(ChunkIdOf(chunk.kind)));
    }
}

}  // namespace ZelSim
