// Frames of the simulated camera through networks that lose, delay, swap and double packets: each
// frame comes byte for byte, in order, and each buffer comes back.
#include <gtest/gtest.h>

#include "tests/gigevision/stream/virtualstream.h"

using namespace GevTest;

namespace {

struct Case {
    const char* name;
    BadNetwork network;
    ZelSim::BlockForm form;
    size_t height;
    uint64_t numFrames;
    Duration period;
};

constexpr size_t kWidth = 2048;

BadNetwork AllFaults() {
    BadNetwork network;
    network.loss = network.resentLoss = network.duplicates = 0.01;
    network.bursts = 0.0002;
    network.reorder = 16;
    return network;
}

BadNetwork Stalls(Duration stall, Duration period = milliseconds(50)) {
    BadNetwork network;
    network.stall = stall;
    network.stallPeriod = period;
    return network;
}

ZelSim::BlockForm Form(size_t packetSize, bool extended) {
    ZelSim::BlockForm form;
    form.packetSize = packetSize;
    form.extendedIds = extended;
    return form;
}

// Full links of 1 GbE with small packets, and of 5 GbE with large ones.
std::vector<Case> Cases() {
    std::vector<Case> cases{
        {"AllFaults", AllFaults(), Form(1500, false), 2048, 20, milliseconds(40)},
        {"AllFaultsExtended", AllFaults(), Form(1500, true), 2048, 10, milliseconds(40)},
        {"AllFaultsJumbo", AllFaults(), Form(9000, false), 2048, 20, milliseconds(10)},
        {"Stalls", Stalls(milliseconds(15)), Form(1500, false), 2048, 10, milliseconds(40)},
        {"LongStalls", Stalls(milliseconds(45), milliseconds(250)), Form(1500, false), 1024, 25,
         milliseconds(20)},
        {"StallsJumbo", Stalls(milliseconds(8)), Form(9000, true), 2048, 15, milliseconds(10)},
        {"Small", AllFaults(), Form(1500, true), 1, 500, milliseconds(1)},
    };
    cases.push_back({"MultiPart", AllFaults(), Form(1500, true), 300, 40, milliseconds(10)});
    cases.back().form.multiPart = true;
    cases.push_back({"GenDc", AllFaults(), Form(1500, true), 300, 40, milliseconds(10)});
    cases.back().form.genDc = true;
    cases.push_back({"Padded", AllFaults(), Form(1500, false), 301, 40, milliseconds(10)});
    cases.back().form.paddedLastPacket = true;
    cases.push_back({"HalfHeight", AllFaults(), Form(1500, false), 300, 40, milliseconds(10)});
    cases.back().form.halfHeight = true;
    return cases;
}

// An image, or three parts of other sizes, or a container with a descriptor, as the form says.
ZelCti::FrameInfo FrameOf(const Case& c, uint64_t id) {
    ZelCti::FrameInfo frame = ImageFrame(kWidth, c.height, id * 1000);
    const auto addPart = [&](size_t begin, size_t end) {
        ZelCti::FramePart part;
        part.type = GenTL::PART_DATATYPE_2D_IMAGE;
        part.offset = begin;
        part.dataSize = end - begin;
        frame.parts.push_back(part);
    };
    const size_t size = kWidth * c.height;
    if (c.form.multiPart) {
        addPart(0, size / 2);
        addPart(size / 2, size - 1001);
        addPart(size - 1001, size);
    }
    if (c.form.genDc) {
        frame.payloadType = GenTL::PAYLOAD_TYPE_GENDC;
        addPart(416, size);
    }
    return frame;
}

class BadNetworks : public testing::TestWithParam<Case> {};

}  // namespace

TEST_P(BadNetworks, LoseNoFrame) {
    const Case& c = GetParam();
    const size_t size = kWidth * c.height;
    const size_t sent = c.form.halfHeight ? size / 2 : size;
    Buffers buffers(8, size);
    uint64_t expected = 1;
    size_t numWrong = 0;
    buffers.onFrame = [&](const ZelCti::FrameInfo& frame, const Bytes& data) {
        EXPECT_EQ(frame.id, expected);
        EXPECT_FALSE(frame.incomplete) << frame.id;
        EXPECT_EQ(frame.sizeFilled, sent);
        EXPECT_EQ(frame.timestamp, frame.id * 1000);
        const Bytes content = Content(size, frame.id);
        if (memcmp(content.data(), data.data(), sent) != 0) ++numWrong;
        expected = frame.id + 1;
    };
    VirtualStream stream(buffers, {}, c.network);
    stream.Receiver().SetPacketSize(c.form.packetSize);
    stream.Receiver().Start(c.numFrames);
    const Duration packetTime = microseconds(12) * static_cast<int>(c.form.packetSize) / 1500;
    stream.packetTime = c.form.packetSize > 1500 ? packetTime / 4 : packetTime;
    for (uint64_t id = 1; id <= c.numFrames; ++id) {
        const auto packets = PacketsOf(FrameOf(c, id), Content(size, id), id, c.form);
        stream.Send(id, packets);
        stream.Run();
        const Duration spent = stream.packetTime * static_cast<int>(packets.size());
        stream.Pause(c.period > spent ? c.period - spent : Duration{});
    }
    stream.Run(std::chrono::seconds(2));
    EXPECT_EQ(buffers.numDelivered, c.numFrames);
    EXPECT_EQ(numWrong, 0U);
    EXPECT_TRUE(stream.Receiver().IsFinished());
    stream.Receiver().Stop(false);
    EXPECT_TRUE(buffers.AreAllBack());
}

INSTANTIATE_TEST_SUITE_P(Stream, BadNetworks, testing::ValuesIn(Cases()),
                         [](const auto& test) { return test.param.name; });
