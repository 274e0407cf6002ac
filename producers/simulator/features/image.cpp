// Which part of the sensor is sent, and how.
#include <set>
#include <string_view>

#include "producers/simulator/camera/camera.h"
#include "producers/simulator/features/categories.h"
#include "producers/simulator/features/settings.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::FeatureTable;
using ZelCti::IntegerValue;

namespace {

using Settings = FrameSettings;

constexpr int64_t kMaxBinning = 4;

// Index of the arrangement of colours, as the feature PixelColorFilter counts them.
uint64_t ColorFilterOf(const PixelFormat& format) {
    constexpr std::string_view kCells[] = {"RGGB", "GBRG", "GRBG", "BGGR"};
    if (format.sampling != Sampling::Mosaic) return 0;
    uint64_t index = 1;
    for (const std::string_view cell : kCells) {
        if (cell == format.components) break;
        ++index;
    }
    return index;
}

void SetFormat(Settings& settings, uint64_t value) {
    settings.pixelFormat = FindPixelFormat(static_cast<uint32_t>(value));
    if (settings.pixelFormat == nullptr) RefuseValue();
}

// The region shows the same part of the sensor as before.
void SetBinning(Settings& settings, uint32_t Settings::*binning, uint32_t Settings::*extent,
                uint32_t Settings::*offset, uint64_t value) {
    if (value != 1 && value != 2 && value != kMaxBinning) RefuseValue();
    const auto next = static_cast<uint32_t>(value);
    settings.*extent = settings.*extent * settings.*binning / next;
    settings.*offset = settings.*offset * settings.*binning / next;
    settings.*binning = next;
}

std::vector<Entry> PixelSizeEntries() {
    std::set<unsigned> sizes;
    for (const PixelFormat& format : AllPixelFormats())
        sizes.insert(format.BitsPerPixel());
    std::vector<Entry> entries;
    for (const unsigned size : sizes) {
        const std::string bits = std::to_string(size);
        entries.push_back({"Bpp" + bits, size, bits + " bits."});
    }
    return entries;
}

void AddSensor(FeatureTable& features, const SettingTraits& settings) {
    features.IntReg("SensorWidth", "Width of the sensor.")
        .Expert()
        .At(0x2100)
        .Unit("px")
        .Representation("Linear")
        .Get(settings.Show([](const Settings& s) { return s.sensorWidth; }));
    features.IntReg("SensorHeight", "Height of the sensor.")
        .Expert()
        .At(0x2104)
        .Unit("px")
        .Representation("Linear")
        .Get(settings.Show([](const Settings& s) { return s.sensorHeight; }));
    features.IntSwissKnife("WidthMax", "Width of the sensor after binning.")
        .Expert()
        .Variables({{"SENSOR", "SensorWidth"}, {"BINNING", "BinningHorizontalReg"}})
        .Formula("SENSOR / BINNING")
        .Unit("px")
        .Representation("Linear");
    features.IntSwissKnife("HeightMax", "Height of the sensor after binning.")
        .Expert()
        .Variables({{"SENSOR", "SensorHeight"}, {"BINNING", "BinningVerticalReg"}})
        .Formula("SENSOR / BINNING")
        .Unit("px")
        .Representation("Linear");
}

void AddSize(FeatureTable& features, const SettingTraits& settings) {
    features.Integer("Width", "Width of the image; whole bytes a line, whatever the format.")
        .At(0x2110)
        .Limits("WidthIncrement", "WidthLimit", "WidthIncrement")
        .Unit("px")
        .Representation("Linear")
        .Streamable()
        .InvalidatedBy({"BinningHorizontal", "PixelFormat"})
        .Apply(settings.Fixed(&Settings::width, 1,
                              [](const Settings& s) { return s.WidthMax() - s.offsetX; }));
    features.IntSwissKnife("WidthLimit")
        .Variables({{"MAX", "WidthMax"}, {"OFFSET", "OffsetXReg"}})
        .Formula("MAX - OFFSET");
    features.IntReg("WidthIncrement")
        .At(0x2134)
        .InvalidatedBy({"PixelFormat", "UserSetLoad", "DeviceReset"})
        .Get(settings.Show([](const Settings& s) { return s.WidthIncrement(); }));
    features.Integer("Height", "Height of the image.")
        .At(0x2114)
        .Limits(1, "HeightLimit", 1)
        .Unit("px")
        .Representation("Linear")
        .Streamable()
        .InvalidatedBy({"BinningVertical"})
        .Apply(settings.Fixed(&Settings::height, 1,
                              [](const Settings& s) { return s.HeightMax() - s.offsetY; }));
    features.IntSwissKnife("HeightLimit")
        .Variables({{"MAX", "HeightMax"}, {"OFFSET", "OffsetYReg"}})
        .Formula("MAX - OFFSET");
}

void AddOffset(FeatureTable& features, const SettingTraits& settings) {
    features.Integer("OffsetX", "Place of the image on the sensor, from the left.")
        .At(0x2118)
        .Limits(0, "OffsetXLimit", 2)
        .Unit("px")
        .Representation("Linear")
        .Streamable()
        .InvalidatedBy({"BinningHorizontal"})
        .Apply(settings.Fixed(&Settings::offsetX, 0,
                              [](const Settings& s) { return s.WidthMax() - s.width; }));
    features.IntSwissKnife("OffsetXLimit")
        .Variables({{"MAX", "WidthMax"}, {"WIDTH", "WidthReg"}})
        .Formula("MAX - WIDTH");
    features.Integer("OffsetY", "Place of the image on the sensor, from the top.")
        .At(0x211C)
        .Limits(0, "OffsetYLimit", 2)
        .Unit("px")
        .Representation("Linear")
        .Streamable()
        .InvalidatedBy({"BinningVertical"})
        .Apply(settings.Fixed(&Settings::offsetY, 0,
                              [](const Settings& s) { return s.HeightMax() - s.height; }));
    features.IntSwissKnife("OffsetYLimit")
        .Variables({{"MAX", "HeightMax"}, {"HEIGHT", "HeightReg"}})
        .Formula("MAX - HEIGHT");
}

void AddBinning(FeatureTable& features, const SettingTraits& settings) {
    features
        .Integer("BinningHorizontal", "Pixels of the sensor, horizontally, for one of the image.")
        .Expert()
        .At(0x2120)
        .Limits(1, kMaxBinning)
        .Representation("Linear")
        .With("ValidValueSet", "1;2;4")
        .Streamable()
        .Apply(settings.Fixed([](const Settings& s) { return s.binningHorizontal; },
                              [](Settings& s, uint64_t value) {
                                  SetBinning(s, &Settings::binningHorizontal, &Settings::width,
                                             &Settings::offsetX, value);
                              }));
    features.Integer("BinningVertical", "Pixels of the sensor, vertically, for one of the image.")
        .Expert()
        .At(0x2124)
        .Limits(1, kMaxBinning)
        .Representation("Linear")
        .With("ValidValueSet", "1;2;4")
        .Streamable()
        .Apply(settings.Fixed([](const Settings& s) { return s.binningVertical; },
                              [](Settings& s, uint64_t value) {
                                  SetBinning(s, &Settings::binningVertical, &Settings::height,
                                             &Settings::offsetY, value);
                              }));
    features.Boolean("ReverseX", "Whether lines are reversed.")
        .Expert()
        .At(0x2128)
        .Streamable()
        .Apply(settings.Free(&Settings::reverseX));
}

void AddPixels(FeatureTable& features, const SettingTraits& settings) {
    features.Enumeration("PixelFormat", "Format of the pixels.")
        .At(0x212C)
        .Entries(PixelFormatEntries())
        .Streamable()
        .Apply(settings.Fixed([](const Settings& s) { return s.pixelFormat->value; }, SetFormat));
    features.Enumeration("PixelSize", "Size of a pixel.")
        .Expert()
        .With("ImposedAccessMode", "RO")
        .Entries(PixelSizeEntries())
        .Over("PixelSizeValue");
    features.IntSwissKnife("PixelSizeValue")
        .Variables({{"FORMAT", "PixelFormatReg"}})
        .Formula("(FORMAT >> 16) & 0xFF");
    features.Enumeration("PixelColorFilter", "Arrangement of the colours on the sensor.")
        .Expert()
        .At(0x213C)
        .Entries({{"None", 0, "No colour filter."},
                  {"BayerRG", 1, "Red and green in the first line."},
                  {"BayerGB", 2, "Green and blue in the first line."},
                  {"BayerGR", 3, "Green and red in the first line."},
                  {"BayerBG", 4, "Blue and green in the first line."}})
        .InvalidatedBy({"PixelFormat", "UserSetLoad", "DeviceReset"})
        .Get(settings.Show([](const Settings& s) { return ColorFilterOf(*s.pixelFormat); }));
    features.Integer("PixelDynamicRangeMin", "Value of a black component.")
        .Expert()
        .Constant(0)
        .Representation("Linear");
    features.IntSwissKnife("PixelDynamicRangeMax", "Value of a bright component.")
        .Expert()
        .Variables({{"BITS", "PixelComponentBits"}})
        .Formula("(1 << BITS) - 1")
        .Representation("Linear");
    features.IntReg("PixelComponentBits")
        .At(0x2138)
        .InvalidatedBy({"PixelFormat", "UserSetLoad", "DeviceReset"})
        .Get(settings.Show([](const Settings& s) { return s.pixelFormat->bits; }));
}

IntegerValue ComponentEnableValue(CameraControl& control, size_t component) {
    IntegerValue value;
    value.get = [&control, component] {
        return uint64_t{control.Settings()->components.test(component)};
    };
    value.set = [&control, component](uint64_t on) {
        control.ChangeFixed([=](Settings& s) {
            s.components.set(component, on != 0);
            if (on > 1 || s.components.none()) RefuseValue();
        });
    };
    return value;
}

IntegerValue ComponentId(size_t component) {
    IntegerValue value;
    value.get = [component] { return uint64_t{kComponents[component].id}; };
    return value;
}

void AddComponents(FeatureTable& features, CameraControl& control) {
    std::vector<Entry> entries;
    for (const ComponentTraits& component : kComponents)
        entries.push_back(
            {component.name, static_cast<int64_t>(component.component), component.toolTip});
    features.Enumeration("ComponentSelector", "The component that the next features are about.")
        .Entries(entries)
        .Streamable()
        .Local(0);
    features
        .Boolean("ComponentEnable",
                 "Whether frames have the selected component; one is enabled at least.")
        .SelectedBy("ComponentSelector")
        .LockedBy("FrameSettingsLocked")
        .At(0x2140)
        .Streamable()
        .InvalidatedBy({"UserSetLoad", "DeviceReset"})
        .Indexed("ComponentSelectorValue", kNumComponents,
                 [&control](size_t i) { return ComponentEnableValue(control, i); });
    features.IntReg("ComponentIDValue", "Number that the data of the selected component have.")
        .Expert()
        .SelectedBy("ComponentSelector")
        .At(0x2150)
        .Indexed("ComponentSelectorValue", kNumComponents, ComponentId);
}

}  // namespace

std::vector<Entry> PixelFormatEntries() {
    std::vector<Entry> entries;
    for (const PixelFormat& format : AllPixelFormats())
        entries.push_back(
            {format.name, format.value, std::to_string(format.BitsPerPixel()) + " bits a pixel."});
    return entries;
}

void AddImageFormatControl(FeatureTable& features, Camera& camera) {
    const SettingTraits settings(camera.Control());
    features.Category("ImageFormatControl", "Region and format of the image.");
    AddSensor(features, settings);
    AddSize(features, settings);
    AddOffset(features, settings);
    AddBinning(features, settings);
    AddPixels(features, settings);
    if (camera.Config().payload != PayloadForm::Image) AddComponents(features, camera.Control());
    features.Enumeration("TestPattern", "What the sensor shows.")
        .At(0x2130)
        .Entries({{"ColorBar", 0, "White, yellow, cyan, green, magenta, red, blue, black."},
                  {"GreyHorizontalRamp", 1, "From black on the left to white on the right."},
                  {"GreyDiagonalRamp", 2, "A ramp along the diagonal."},
                  {"Black", 3, "Black."},
                  {"White", 4, "White."}})
        .Streamable()
        .Apply(settings.Free(&Settings::pattern));
}

}  // namespace ZelSim
