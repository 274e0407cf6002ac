// The packets of a block, what goes wrong with them, and how requests for them are answered: as
// literal bytes and numbers, without a network.
#include <numeric>

#include <gtest/gtest.h>

#include "producers/simulator/gige/stream/blockpackets.h"
#include "producers/simulator/gige/stream/pacer.h"
#include "producers/simulator/gige/stream/packetfaults.h"
#include "producers/simulator/gige/stream/resendanswers.h"
#include "tests/wire/bytes.h"

using namespace ZelSim;
using namespace WireTest;
using ZelCti::FrameInfo;
using ZelCti::Gev::Status;
using ZelCti::Gvcp::PacketResend;

namespace {

FrameInfo ImageFrame(size_t width, size_t height, uint64_t timestamp) {
    FrameInfo frame;
    frame.timestamp = timestamp;
    frame.pixelFormat = 0x01080001;  // Mono8
    frame.width = width;
    frame.height = height;
    frame.deliveredHeight = height;
    frame.sizeFilled = width * height;
    return frame;
}

// Of the image 64 x 48 as the captured messages have it: its first pixel is 0x79.
FrameInfo CapturedFrame() {
    return ImageFrame(64, 48, 0x18ea6053856ccc80);
}
Bytes CountingPayload(size_t size) {
    Bytes payload(size);
    std::iota(payload.begin(), payload.end(), uint8_t{0x79});
    return payload;
}

// 199 lines of 256 pixels, with 24 bytes of chunks behind the image chunk.
FrameInfo ChunkFrame() {
    FrameInfo frame = ImageFrame(256, 199, 0x18ea607c05f3ecc9);
    frame.chunkOrder = ZelCti::ByteOrder::Big;
    frame.chunkLayoutId = 7;
    frame.sizeFilled = 50944 + 8 + 16;
    return frame;
}

Bytes Join(const PacketBytes& packet) {
    Bytes bytes;
    for (const ZelCti::ByteView piece : packet.pieces)
        bytes.insert(bytes.end(), piece.data, piece.data + piece.size);
    return bytes;
}

Bytes PacketOf(const BlockPackets& block, uint32_t packetId) {
    std::array<uint8_t, BlockPackets::kMaxHead> head;
    head.fill(0xEE);
    return Join(block.Packet(packetId, block.HeaderOf(packetId), {head.data(), head.size()}));
}

Bytes Part(const Bytes& bytes, size_t offset, size_t count) {
    return {bytes.begin() + static_cast<ptrdiff_t>(offset),
            bytes.begin() + static_cast<ptrdiff_t>(offset + count)};
}

uint32_t PacketCount(size_t size, size_t packetSize, bool extended) {
    Bytes payload(size);
    BlockForm form;
    form.packetSize = packetSize;
    form.extendedIds = extended;
    return BlockPackets(ImageFrame(1920, size / 1920, 0), ViewOf(payload), 1, form).Count();
}

}  // namespace

TEST(StreamPackets, AnImageGoesOutAsCaptured) {
    const Bytes payload = CountingPayload(3072);
    BlockForm form;
    form.packetSize = 1400;
    const BlockPackets block(CapturedFrame(), ViewOf(payload), 65401, form);
    ASSERT_EQ(block.Count(), 5U);
    EXPECT_EQ(PacketOf(block, 0),
              Hex("0000ff79010000000000000118ea6053856ccc80010800010000004000000030"
                  "000000000000000000000000"));
    const Bytes first = PacketOf(block, 1);
    EXPECT_EQ(first.size(), 1372U);
    EXPECT_EQ(Part(first, 0, 24), Hex("0000ff7903000001797a7b7c7d7e7f808182838485868788"));
    const Bytes last = PacketOf(block, 3);
    EXPECT_EQ(last.size(), 8U + 344U);
    EXPECT_EQ(Part(last, 0, 8), Hex("0000ff7903000003"));
    EXPECT_EQ(last.back(), payload.back());
    EXPECT_EQ(PacketOf(block, 4), Hex("0000ff79020000040000000100000030"));
}

TEST(StreamPackets, ExtendedIdsHaveLongerHeaders) {
    const Bytes payload = CountingPayload(size_t{256} * 200);
    BlockForm form;
    form.packetSize = 1500;
    form.extendedIds = true;
    const BlockPackets block(ImageFrame(256, 200, 0x18ea60757b9b0958), ViewOf(payload), 0xFFFFFFFF,
                             form);
    ASSERT_EQ(block.Count(), 38U);
    EXPECT_EQ(PacketOf(block, 0),
              Hex("000000008100000000000000ffffffff000000000000000118ea60757b9b0958"
                  "0108000100000100000000c8000000000000000000000000"));
    EXPECT_EQ(Part(PacketOf(block, 1), 0, 20), Hex("000000008300000000000000ffffffff00000001"));
    EXPECT_EQ(PacketOf(block, 37), Hex("000000008200000000000000ffffffff0000002500000001000000c8"));
}

TEST(StreamPackets, ChunksGoBehindTheImageInTheThreeForms) {
    const Bytes payload = CountingPayload(ChunkFrame().sizeFilled);
    BlockForm form;
    const BlockPackets block(ChunkFrame(), ViewOf(payload), 0xFFFE, form);
    EXPECT_EQ(PacketOf(block, 0),
              Hex("0000fffe010000000000400118ea607c05f3ecc90108000100000100000000c7"
                  "000000000000000000000000"));
    EXPECT_EQ(PacketOf(block, block.Count() - 1),
              Hex("0000fffe0200002400004001000000c70000c71800000007"));

    form.chunks = BlockForm::Chunks::ChunkData;
    const BlockPackets data(ChunkFrame(), ViewOf(payload), 1, form);
    EXPECT_EQ(PacketOf(data, 0), Hex("00000001010000000000000418ea607c05f3ecc9"));
    EXPECT_EQ(PacketOf(data, data.Count() - 1), Hex("0000000102000024000000040000c718"));

    form.chunks = BlockForm::Chunks::Extended;
    const BlockPackets extended(ChunkFrame(), ViewOf(payload), 1, form);
    EXPECT_EQ(Part(PacketOf(extended, 0), 8, 4), Hex("00000005"));
    EXPECT_EQ(PacketOf(extended, extended.Count() - 1),
              Hex("0000000102000024000000050000c718000000c700000007"));
}

TEST(StreamPackets, APartBeginsAPacketAndCountsItsOffsetFromTheBlock) {
    const Bytes payload = CountingPayload(ChunkFrame().sizeFilled);
    BlockForm form;
    form.extendedIds = true;
    form.multiPart = true;
    const BlockPackets block(ChunkFrame(), ViewOf(payload), 1, form);
    // 50944 bytes are 36 packets of 1444 bytes, and the chunks are one more.
    ASSERT_EQ(block.Count(), 39U);
    EXPECT_EQ(PacketOf(block, 0), Hex("00000000 81000002 0000000000000001 00000000"
                                      "0000000a 18ea607c05f3ecc9"
                                      "0001 00000000c700 01080001 0000 00 00 00000000 0001 0000"
                                      "00000100 000000c7 00000000 00000000 0000 0000 00000000"
                                      "000a 000000000010 00000000 0000 00 00 00000000 0000 0000"
                                      "00000000 00000000 00000000 00000000 0000 0000 00000000"));
    EXPECT_EQ(Part(PacketOf(block, 2), 0, 28),
              Hex("00000000 87000000 0000000000000001 00000002 0000 0000000005a4"));
    EXPECT_EQ(Part(PacketOf(block, 36), 20, 2), Hex("0040"));  // the last of part 0
    EXPECT_EQ(Part(PacketOf(block, 37), 16, 12), Hex("00000025 0140 00000000c700"));
    EXPECT_EQ(Part(PacketOf(block, 37), 28, 16), Part(payload, 50952, 16));
    EXPECT_EQ(PacketOf(block, 38), Hex("00000000 82000002 0000000000000001 00000026 0000000a"
                                       "0001 00000000c700 000000c7 00000000"
                                       "000a 000000000010 00000000 00000000"));

    form.partRelativeOffsets = true;
    const BlockPackets relative(ChunkFrame(), ViewOf(payload), 1, form);
    EXPECT_EQ(Part(PacketOf(relative, 37), 20, 8), Hex("0140 000000000000"));

    form.extendedIds = false;  // there is no place for the number of parts
    EXPECT_EQ(Part(PacketOf(BlockPackets(ChunkFrame(), ViewOf(payload), 1, form), 0), 8, 4),
              Hex("00004001"));
}

// Two images of other formats and sizes of lines, and chunks.
TEST(StreamPackets, PartsOfAFrameGoOutAsTheyAre) {
    const Bytes payload = CountingPayload(400 + 200 + 12);
    FrameInfo frame = ImageFrame(20, 10, 7);
    frame.payloadType = GenTL::PAYLOAD_TYPE_MULTI_PART;
    frame.chunkOrder = ZelCti::ByteOrder::Big;
    frame.offsetX = 4;
    frame.offsetY = 2;
    frame.yPadding = 5;
    frame.pixelFormat = 0x011000B8;
    frame.sizeFilled = payload.size();
    frame.parts = {{5, 0, 400, 0x011000B8, 20, 10, 4, 2, 0, 10, 1, 2, 4},
                   {9, 400, 200, 0x010800C6, 20, 10, 4, 2, 0, 9, 1, 2, 6},
                   {1010, 600, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}};
    BlockForm form;
    form.extendedIds = form.multiPart = true;
    form.packetSize = 256;  // 200 bytes of data
    const BlockPackets block(frame, ViewOf(payload), 1, form);
    ASSERT_EQ(block.Count(), 6U);
    EXPECT_EQ(PacketOf(block, 0), Hex("00000000 81000003 0000000000000001 00000000"
                                      "0000000a 0000000000000007"
                                      "0005 000000000190 011000b8 0000 01 00 00000000 0004 0002"
                                      "00000014 0000000a 00000004 00000002 0000 0005 00000000"
                                      "0009 0000000000c8 010800c6 0000 01 00 00000000 0006 0002"
                                      "00000014 0000000a 00000004 00000002 0000 0005 00000000"
                                      "000a 00000000000c 00000000 0000 00 00 00000000 0000 0000"
                                      "00000000 00000000 00000000 00000000 0000 0000 00000000"));
    EXPECT_EQ(Part(PacketOf(block, 2), 16, 12), Hex("00000002 0040 0000000000c8"));
    EXPECT_EQ(Part(PacketOf(block, 2), 28, 200), Part(payload, 200, 200));
    EXPECT_EQ(Part(PacketOf(block, 3), 16, 12), Hex("00000003 0140 000000000190"));
    EXPECT_EQ(Part(PacketOf(block, 4), 16, 12), Hex("00000004 0240 000000000258"));
    EXPECT_EQ(Part(PacketOf(block, 4), 28, 12), Part(payload, 600, 12));
    EXPECT_EQ(PacketOf(block, 5), Hex("00000000 82000003 0000000000000001 00000005 0000000a"
                                      "0005 000000000190 0000000a 00000000"
                                      "0009 0000000000c8 00000009 00000000"
                                      "000a 00000000000c 00000000 00000000"));

    form.multiPart = false;
    const BlockPackets image(frame, ViewOf(payload), 1, form);
    EXPECT_EQ(Part(PacketOf(image, 0), 20, 4), Hex("00000001"));
    EXPECT_EQ(Part(PacketOf(image, 0), 32, 12), Hex("011000b8 00000014 0000000a"));
    EXPECT_EQ(PacketOf(image, 2).size(), 20U + 405 - 208) << "the first part, with its padding";
}

TEST(StreamPackets, AContainerGoesOutAsDescriptorAndData) {
    const Bytes payload = CountingPayload(240 + 100);
    FrameInfo frame = ImageFrame(10, 10, 7);
    frame.payloadType = GenTL::PAYLOAD_TYPE_GENDC;
    frame.sizeFilled = payload.size();
    frame.parts.resize(1);
    frame.parts[0].offset = 240;
    BlockForm form;
    form.extendedIds = form.multiPart = form.genDc = true;
    form.packetSize = 256;  // 192 bytes of data
    const BlockPackets block(frame, ViewOf(payload), 1, form);
    ASSERT_EQ(block.Count(), 5U);
    EXPECT_EQ(PacketOf(block, 0),
              Hex("00000000 81000000 0000000000000001 00000000 0000000b 0000000000000007"
                  "0000000000000154 00 000000 000000f0"));
    EXPECT_EQ(Part(PacketOf(block, 1), 0, 36), Hex("00000000 88000000 0000000000000001 00000001"
                                                   "000000c0 0000000000000000 60 80 0000"));
    EXPECT_EQ(Part(PacketOf(block, 2), 16, 20),
              Hex("00000002 00000030 00000000000000c0 50 00 0000"));
    EXPECT_EQ(Part(PacketOf(block, 2), 36, 48), Part(payload, 192, 48));
    EXPECT_EQ(Part(PacketOf(block, 3), 16, 20),
              Hex("00000003 00000064 00000000000000f0 00 40 0000"));
    EXPECT_EQ(Part(PacketOf(block, 3), 36, 100), Part(payload, 240, 100));
    EXPECT_EQ(PacketOf(block, 4), Hex("00000000 82000000 0000000000000001 00000004 0000000b"));
}

TEST(StreamPackets, ASmallBlockIsOnePacketWhenAllInIsOn) {
    const Bytes payload = Hex("706978656c73");
    const FrameInfo frame = ImageFrame(3, 2, 0x0102030405060708);
    BlockForm form;
    form.allIn = true;
    form.packetSize = 256;
    const BlockPackets block(frame, ViewOf(payload), 5, form);
    ASSERT_EQ(block.Count(), 1U);
    EXPECT_EQ(PacketOf(block, 0),
              Hex("00000005 04000000 00000001 0102030405060708 01080001 00000003 00000002"
                  "00000000 00000000 00000000 00000001 00000002 706978656c73"));

    // Headers take 80 bytes.
    const Bytes largest = CountingPayload(176);
    EXPECT_EQ(BlockPackets(ImageFrame(16, 11, 0), ViewOf(largest), 5, form).Count(), 1U);
    const Bytes larger = CountingPayload(177);
    EXPECT_EQ(BlockPackets(ImageFrame(177, 1, 0), ViewOf(larger), 5, form).Count(), 3U);
}

TEST(StreamPackets, PacketsAreCountedAsTheirHeadersLeaveRoom) {
    EXPECT_EQ(PacketCount(size_t{1920} * 1080, 1500, false), 1417U + 2);
    EXPECT_EQ(PacketCount(size_t{1920} * 1080, 9000, false), 232U + 2);
    EXPECT_EQ(PacketCount(size_t{1920} * 1080, 1500, true), 1429U + 2);
    EXPECT_EQ(PacketCount(1920, 1920 + 36, false), 1U + 2);
    EXPECT_EQ(PacketCount(1920, 1920 + 35, false), 2U + 2);
    EXPECT_EQ(PacketCount(0, 1500, false), 2U);
}

TEST(StreamPackets, TornAndShortenedImagesSaySoInTheTrailer) {
    const Bytes payload = CountingPayload(3072);
    FrameInfo torn = CapturedFrame();
    torn.deliveredHeight = 10;
    torn.sizeFilled = 640;
    BlockForm form;
    form.packetSize = 612;  // 576 bytes of data
    const BlockPackets block(torn, ViewOf(payload), 1, form);
    ASSERT_EQ(block.Count(), 4U);
    EXPECT_EQ(Part(PacketOf(block, 0), 28, 4), Hex("00000030"));
    EXPECT_EQ(PacketOf(block, 2).size(), 8U + 64U);
    EXPECT_EQ(PacketOf(block, 3), Hex("0000000102000003000000010000000a"));

    form.halfHeight = true;
    form.paddedLastPacket = true;
    const BlockPackets half(CapturedFrame(), ViewOf(payload), 1, form);
    ASSERT_EQ(half.Count(), 5U);  // 1536 bytes
    const Bytes last = PacketOf(half, 3);
    ASSERT_EQ(last.size(), 8U + 576U);
    EXPECT_EQ(Part(last, 8, 384), Part(payload, 1152, 384));
    EXPECT_EQ(Part(last, 392, 192), Bytes(192, 0));
    EXPECT_EQ(PacketOf(half, 4), Hex("00000001020000040000000100000018"));
}

TEST(StreamPackets, AnErrorHasNothingButItsHeader) {
    const Bytes payload = CountingPayload(3072);
    const BlockPackets block(CapturedFrame(), ViewOf(payload), 1, {});
    std::array<uint8_t, BlockPackets::kMaxHead> head;
    for (uint32_t id = 0; id < block.Count(); ++id) {
        ZelCti::Gvsp::Header header = block.HeaderOf(id);
        header.status = Status::Error;
        EXPECT_EQ(block.Packet(id, header, {head.data(), head.size()}).Size(), 8U);
    }
}

// ---- Faults
// --------------------------------------------------------------------------------------

TEST(StreamFaults, EachPacketIsSentOnceInAnyOrder) {
    for (const uint32_t count : {1U, 2U, 5U, 16U, 17U, 18U, 40U, 100U}) {
        for (const uint32_t reorder : {0U, 1U, 3U, 14U, 15U, 30U}) {
            std::vector<int> seen(count);
            for (uint32_t place = 0; place < count; ++place)
                ++seen.at(PacketAt(place, count, reorder));
            EXPECT_EQ(seen, std::vector<int>(count, 1)) << count << ' ' << reorder;
        }
    }
    std::vector<uint32_t> order;
    for (uint32_t place = 0; place < 20; ++place)
        order.push_back(PacketAt(place, 100, 2));
    EXPECT_EQ(order, (std::vector<uint32_t>{0,  2,  3,  1,  4,  5,  6,  7,  8,  9,
                                            10, 11, 12, 13, 14, 15, 16, 18, 19, 17}));
}

namespace {

// The ids that are lost of blocks of so many packets.
std::vector<std::vector<uint32_t>> LostPackets(const NetworkSettings& settings, int numBlocks,
                                               uint32_t numPackets) {
    PacketFaults faults;
    faults.Restart(settings);
    std::vector<std::vector<uint32_t>> lost;
    for (int block = 0; block < numBlocks; ++block) {
        faults.BeginBlock(settings, numPackets);
        auto& ofBlock = lost.emplace_back();
        for (uint32_t id = 0; id < numPackets; ++id)
            if (faults.FateOf(id, 1500).isLost) ofBlock.push_back(id);
    }
    return lost;
}

using Lost = std::vector<std::vector<uint32_t>>;

}  // namespace

TEST(StreamFaults, PacketsAreLostAsTheSwitchesSay) {
    NetworkSettings settings;
    EXPECT_EQ(LostPackets(settings, 2, 6), (Lost{{}, {}}));
    settings.lossEvery = 5;
    EXPECT_EQ(LostPackets(settings, 2, 6), (Lost{{4}, {3}}));
    settings.lossBurst = 2;
    EXPECT_EQ(LostPackets(settings, 2, 6), (Lost{{4, 5}, {3, 4}}));

    settings = {};
    settings.loseLeaders = 2;
    EXPECT_EQ(LostPackets(settings, 3, 6), (Lost{{}, {0}, {}}));
    settings = {};
    settings.loseTrailers = 1;
    EXPECT_EQ(LostPackets(settings, 2, 6), (Lost{{5}, {5}}));
    settings = {};
    settings.loseTails = 2;
    EXPECT_EQ(LostPackets(settings, 2, 6), (Lost{{}, {3, 4, 5}}));
    settings = {};
    settings.loseBlocks = 3;
    EXPECT_EQ(LostPackets(settings, 3, 3), (Lost{{}, {}, {0, 1, 2}}));
    settings = {};
    settings.pathMtu = 1499;
    EXPECT_EQ(LostPackets(settings, 1, 3), (Lost{{0, 1, 2}}));
    settings.pathMtu = 1500;
    EXPECT_EQ(LostPackets(settings, 1, 3), (Lost{{}}));
}

TEST(StreamFaults, RandomLossFollowsItsRateAndItsSeed) {
    NetworkSettings settings;
    settings.lossRate = 0.1;
    const Lost lost = LostPackets(settings, 1, 10000);
    EXPECT_GT(lost[0].size(), 800U);
    EXPECT_LT(lost[0].size(), 1200U);
    EXPECT_EQ(LostPackets(settings, 1, 10000), lost);
    settings.lossSeed = 2;
    EXPECT_NE(LostPackets(settings, 1, 10000), lost);
}

TEST(StreamFaults, ResentPacketsAreLostUnlessTheyShallNot) {
    NetworkSettings settings;
    settings.lossRate = 1;
    PacketFaults faults;
    faults.Restart(settings);
    EXPECT_TRUE(faults.IsResentLost(settings, 1500));
    settings.loseResent = false;
    EXPECT_FALSE(faults.IsResentLost(settings, 1500));
    settings.pathMtu = 1000;
    EXPECT_TRUE(faults.IsResentLost(settings, 1500));
}

// ---- Answers to requests
// -------------------------------------------------------------------------

namespace {

PacketResend Request(uint32_t first, uint32_t last, bool extended = false) {
    PacketResend request;
    request.extendedIds = extended;
    request.blockId = 1;
    request.firstPacket = first;
    request.lastPacket = last;
    return request;
}

using Range = std::optional<std::pair<uint32_t, uint32_t>>;

Range Answered(const PacketResend& request, std::optional<uint32_t> count) {
    const auto range = AnsweredPackets(request, count);
    if (!range) return std::nullopt;
    return std::pair(range->first, range->last);
}

}  // namespace

TEST(ResendAnswers, NoRequestCausesMoreWorkThanItsBlockHasPackets) {
    EXPECT_EQ(Answered(Request(2, 3), 10), Range({2, 3}));
    EXPECT_EQ(Answered(Request(3, 2), 10), Range());
    EXPECT_EQ(Answered(Request(0, 0xFFFFFF), 10), Range({0, 9}));
    EXPECT_EQ(Answered(Request(0, 0xFFFFFFFF, true), 10), Range({0, 9}));
    EXPECT_EQ(Answered(Request(8, 11), 10), Range({8, 11}));
    EXPECT_EQ(Answered(Request(0, 0xFFFFFFFE, true), 10), Range({0, 25}));
    EXPECT_EQ(Answered(Request(100, 0xFFFFFFFF, true), 10), Range({100, 115}));
    EXPECT_EQ(Answered(Request(0, 0xFFFFFF), std::nullopt), Range({0, 15}));
    EXPECT_EQ(Answered(Request(0xFFFFFFFF, 0xFFFFFFFF, true), std::nullopt),
              Range({0xFFFFFFFF, 0xFFFFFFFF}));
}

TEST(ResendAnswers, StatusesSayWhyAPacketIsNotThere) {
    EXPECT_EQ(ReasonAgainst(4, 5, true), std::nullopt);
    EXPECT_EQ(ReasonAgainst(5, 5, true), Status::PacketUnavailable);
    EXPECT_EQ(ReasonAgainst(4, 5, false), Status::PacketNotYetAvailable);

    EXPECT_EQ(ReasonAgainstBlock(4, 5, 9, false), Status::PacketAndPrevRemovedFromMemory);
    EXPECT_EQ(ReasonAgainstBlock(7, 5, 9, false), Status::PacketRemovedFromMemory);
    EXPECT_EQ(ReasonAgainstBlock(10, 5, 9, false), Status::PacketUnavailable);
    EXPECT_EQ(ReasonAgainstBlock(0, 5, 9, true), Status::PacketUnavailable);
    EXPECT_EQ(ReasonAgainstBlock(1, std::nullopt, std::nullopt, true), Status::PacketUnavailable);
    EXPECT_EQ(ReasonAgainstBlock(3, std::nullopt, 9, true), Status::PacketAndPrevRemovedFromMemory);
    // Ids of 16 bits are a circle.
    EXPECT_EQ(ReasonAgainstBlock(65534, 65535, 2, false), Status::PacketAndPrevRemovedFromMemory);
    EXPECT_EQ(ReasonAgainstBlock(1, 65535, 2, false), Status::PacketRemovedFromMemory);

    EXPECT_EQ(StatusFor(Status::PacketNotYetAvailable, true), Status::PacketNotYetAvailable);
    EXPECT_EQ(StatusFor(Status::PacketNotYetAvailable, false), Status::PacketUnavailable);
}

// ---- Times
// ---------------------------------------------------------------------------------------

TEST(Pacer, TimesAreCountedFromPacketToPacket) {
    using std::chrono::microseconds;
    const Pacer::Clock::time_point start(std::chrono::hours(1));
    Pacer pacer;
    pacer.Set(100000000, microseconds(5));  // 10 ns a byte
    pacer.EndIdle(start);
    EXPECT_TRUE(pacer.IsDue(start));
    pacer.Count(1000);
    EXPECT_FALSE(pacer.IsDue(start + microseconds(14)));
    EXPECT_TRUE(pacer.IsDue(start + microseconds(15)));
    pacer.Limit(start + microseconds(100));  // a little late: that is caught up with
    pacer.Count(1000);
    EXPECT_TRUE(pacer.IsDue(start + microseconds(30)));
    EXPECT_EQ(pacer.Wake(), start + microseconds(30) + Pacer::kLongestBurst);

    const auto late = start + std::chrono::seconds(1);
    pacer.Limit(late);
    const auto lag = Pacer::kMostLag * Pacer::kLongestBurst;
    EXPECT_FALSE(pacer.IsDue(late - lag - microseconds(1)));
    EXPECT_TRUE(pacer.IsDue(late - lag));
    pacer.EndIdle(late);
    EXPECT_FALSE(pacer.IsDue(late - microseconds(1)));

    pacer.Set(1000000000, microseconds(5));  // a fast link: bursts of the same size take less time
    EXPECT_EQ(pacer.Wake(), late + std::chrono::nanoseconds(Pacer::kLargestBurst));

    pacer.Set(0, microseconds(1000));  // a delay that a thread can sleep: each packet by itself
    pacer.Count(1000);
    EXPECT_EQ(pacer.Wake(), late + microseconds(1000));
}
