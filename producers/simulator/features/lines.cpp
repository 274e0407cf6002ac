// The input and output lines, which are connected to nothing.
#include "producers/simulator/features/categories.h"

namespace ZelSim {

using ZelCti::ByteOrder;
using ZelCti::Feature;
using ZelCti::FeatureTable;
using ZelCti::LoadInteger;
using ZelCti::RegisterSpace;

namespace {

// The configuration of each line is memory, little endian in every camera.
constexpr uint64_t kLineConfigs = 0x2400;
constexpr size_t kLineConfigSize = 4;
constexpr size_t kNumLines = 2;
constexpr unsigned kModeBit = 0;
constexpr unsigned kInverterBit = 1;
constexpr unsigned kFirstDebouncerBit = 8;
constexpr unsigned kLastDebouncerBit = 15;

// A line without a signal is low, and high for the camera when it is inverted.
uint64_t StatusOfLines(RegisterSpace& space, uint64_t configs) {
    uint64_t status = 0;
    for (size_t line = 0; line < kNumLines; ++line) {
        uint8_t bytes[kLineConfigSize];
        space.Read(configs + line * sizeof(bytes), bytes, sizeof(bytes));
        const uint64_t config = LoadInteger(bytes, sizeof(bytes), ByteOrder::Little);
        status |= (config >> kInverterBit & 1U) << line;
    }
    return status;
}

Feature& AddConfigBits(FeatureTable& features, const char* name) {
    return features.MaskedIntReg(name)
        .At(kLineConfigs, kLineConfigSize)
        .IndexedBy("LineSelectorValue")
        .Order(ByteOrder::Little);
}

// Returns where the space has the configuration.
uint64_t AddLineConfig(FeatureTable& features) {
    features.Enumeration("LineMode", "Direction of the line.")
        .Expert()
        .SelectedBy("LineSelector")
        .Entries({{"Input", 0, "Into the camera."}, {"Output", 1, "Out of the camera."}})
        .Streamable()
        .Over("LineModeBit");
    AddConfigBits(features, "LineModeBit").Bit(kModeBit);
    features.Boolean("LineInverter", "Whether the line is inverted.")
        .Expert()
        .SelectedBy("LineSelector")
        .Streamable()
        .Over("LineInverterBit");
    AddConfigBits(features, "LineInverterBit").Bit(kInverterBit);
    features.Integer("LineDebouncerTime", "How long a signal must last.")
        .Expert()
        .SelectedBy("LineSelector")
        .Limits(0, 255)
        .Unit("us")
        .Representation("Linear")
        .Streamable()
        .Over("LineDebouncerBits");
    AddConfigBits(features, "LineDebouncerBits").Bits(kFirstDebouncerBit, kLastDebouncerBit);
    return features.Memory(kLineConfigs, kNumLines * kLineConfigSize);
}

}  // namespace

void AddDigitalIOControl(FeatureTable& features, RegisterSpace& space) {
    features.Category("DigitalIOControl", "The lines of the camera.").Expert();
    features.Enumeration("LineSelector", "The line that the other features set.")
        .Expert()
        .Entries({{"Line0", 0, "The first line."}, {"Line1", 1, "The second line."}})
        .Streamable()
        .Local(0);
    const uint64_t configs = AddLineConfig(features);
    features.Boolean("LineStatus", "Whether the line is high; those without a signal are low.")
        .Expert()
        .SelectedBy("LineSelector")
        .Over("LineStatusBit");
    features.IntSwissKnife("LineStatusBit")
        .Variables({{"ALL", "LineStatusAll"}, {"LINE", "LineSelectorValue"}})
        .Formula("(ALL >> LINE) & 1");
    features.IntReg("LineStatusAll", "The status of all lines, a bit each.")
        .Expert()
        .At(0x2410)
        .Volatile()
        .Representation("HexNumber")
        .Get([&space, configs] { return StatusOfLines(space, configs); });
}

}  // namespace ZelSim
