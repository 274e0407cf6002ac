// Frames from literal packets and those of the simulated camera.
#include <numeric>

#include <gmock/gmock.h>

#include "tests/gigevision/stream/blockfixture.h"
#include "tests/support/allocationfaults.h"

using namespace GevTest;
using testing::ElementsAre;
using testing::IsEmpty;
using WireTest::Hex;

namespace {

Bytes& Append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
}

Bytes Counting(size_t size, uint8_t first = 0) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

}  // namespace

// ---- Blocks -------------------------------------------------------------------------------------

TEST_F(BlockReceivers, MakeAFrameOfCapturedPackets) {
    Start();
    const Bytes content = Counting(kSize, 0x79);
    Give(
        Hex("0000ff79010000000000000118ea6053856ccc80010800010000004000000030"
            "000000000000000000000000"));
    Bytes packet = Hex("0000ff7903000001");
    Give(Append(packet, {content.begin(), content.begin() + 1364}));
    packet = Hex("0000ff7903000002");
    Give(Append(packet, {content.begin() + 1364, content.begin() + 2728}));
    packet = Hex("0000ff7903000003");
    Give(Append(packet, {content.begin() + 2728, content.end()}));
    EXPECT_THAT(frames_, IsEmpty());
    // The camera that was captured writes height 0.
    Give(Hex("0000ff79020000040000000100000000"));
    ASSERT_EQ(frames_.size(), 1U);
    const FrameInfo& frame = frames_[0].info;
    EXPECT_TRUE(frames_[0].data == content);
    EXPECT_EQ(frame.id, 0xFF79U);
    EXPECT_EQ(frame.timestamp, 0x18ea6053856ccc80U);
    EXPECT_EQ(frame.timestampNs, 0x18ea6053856ccc80U);
    EXPECT_EQ(frame.pixelFormat, 0x01080001U);
    EXPECT_EQ(frame.width, 64U);
    EXPECT_EQ(frame.height, 48U);
    EXPECT_EQ(frame.deliveredHeight, 48U);
    EXPECT_EQ(frame.sizeFilled, kSize);
    EXPECT_FALSE(frame.incomplete);
    EXPECT_FALSE(frame.tooLarge);
    EXPECT_TRUE(frame.hasImage);
    EXPECT_FALSE(frame.chunkOrder);
    EXPECT_EQ(frame.payloadType, GenTL::PAYLOAD_TYPE_IMAGE);
    EXPECT_EQ(Statistics().completeBlocks, 1U);
    EXPECT_EQ(Statistics().deliveredPackets, 5U);
    EXPECT_EQ(Statistics().receivedBytes, kSize);
    EXPECT_EQ(reader_.numInPlace, 2U) << "those behind the leader, but for the short one";
}

TEST_F(BlockReceivers, MakeAFrameOfPacketsInAnyOrder) {
    Start();
    std::vector<uint32_t> order{0, 1, 2, 3, kTrailer};
    uint64_t blockId = 0;
    do {
        const auto packets = Packets(++blockId);
        for (const uint32_t id : order)
            Give(packets[id]);
        ASSERT_EQ(frames_.size(), blockId);
        EXPECT_FALSE(frames_.back().info.incomplete);
        EXPECT_TRUE(frames_.back().data == Content(kSize, blockId));
    } while (std::next_permutation(order.begin(), order.end()));
    EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(BlockReceivers, CountOnWhenShortIdsBeginAgain) {
    Start();
    for (const uint64_t id : {65534U, 65535U, 1U, 2U})
        GiveAll(Packets(id));
    ASSERT_EQ(frames_.size(), 4U);
    EXPECT_EQ(frames_[2].info.id, 65536U);
    EXPECT_EQ(frames_[3].info.id, 65537U);
    EXPECT_TRUE(frames_[3].data == Content(kSize, 2));
    EXPECT_EQ(Statistics().skippedBlocks, 0U);
}

TEST_F(BlockReceivers, TakeIdsOfTheLengthThatEachPacketSays) {
    Start();
    GiveAll(Packets(7));
    form_.extendedIds = true;
    GiveAll(Packets(5));
    GiveAll(Packets(6));
    GiveAll(Packets(0x123456789A));
    GiveAll(Packets(0x123456789B));
    ExpectWhole({7, 5, 6, 0x123456789A, 0x123456789B});
}

TEST_F(BlockReceivers, KeepWhatCameFirst) {
    Start();
    auto packets = Packets(1);
    GiveSome(1, {0, 1, 2});
    Bytes wrong = packets[2];
    std::fill(wrong.begin() + 8, wrong.end(), uint8_t{0x55});
    Give(wrong);
    wrong[0] = 0x01;
    Give(wrong);
    wrong = packets[1];
    std::fill(wrong.begin() + 8, wrong.end(), uint8_t{0x66});
    Give(wrong);
    EXPECT_EQ(Statistics().duplicatePackets, 3U);
    // Nobody asked for these: a resent packet with a wrong number, and one of the next block.
    wrong[0] = 0x01;
    wrong[7] = 3;
    Give(wrong);
    wrong[3] = 2;
    Give(wrong);
    GiveSome(1, {3, kTrailer});
    GiveAll(Packets(2));
    ExpectWhole({1, 2});
    GiveSome(1, {0, 3, kTrailer});
    EXPECT_EQ(Statistics().latePackets, 4U);
    ExpectWhole({1, 2});
}

TEST_F(BlockReceivers, TakeNoPacketThatBearsTheIdOfTheNextBlock) {
    Start();
    GiveSome(1, {0, 1});
    Bytes wrong = Packets(1)[2];
    wrong[3] = 2;
    Give(wrong);
    GiveSome(1, {3, kTrailer});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:2-2"));
    GiveResent(1, 2);
    GiveAll(Packets(2));
    ExpectWhole({1, 2});
}

TEST_F(BlockReceivers, FillSeveralBlocksAtOnceAndDeliverThemInOrder) {
    Start();
    GiveSome(1, {0, 1});
    GiveAll(Packets(2));
    GiveSome(3, {0, 1, 2});
    EXPECT_THAT(frames_, IsEmpty());
    GiveSome(1, {2, kTrailer});
    GiveSome(3, {3, kTrailer});
    EXPECT_THAT(frames_, IsEmpty());
    GiveSome(1, {3});
    ExpectWhole({1, 2, 3});
}

TEST_F(BlockReceivers, IgnoreTestPacketsAndGarbage) {
    Start();
    GiveAll({Hex("0000000003000000 000102030405"), Hex("00"), Hex(""), Hex("000000010f000000"),
             Hex("0000000083000000 0000000000000001")});
    EXPECT_EQ(Statistics().seenPackets, 5U);
    EXPECT_EQ(Statistics().malformedPackets, 4U);
    EXPECT_FALSE(receiver_->HasOpenFrames());
    // A leader that is cut off, and data without any.
    Give(Hex("0000000101000000 00000001"));
    Give(Hex("0000000103000001"));
    GiveAll(Packets(1));
    ExpectWhole({1});
}

TEST_F(BlockReceivers, FindOutHowLargePacketsAre) {
    // A camera that rounds down what it is told.
    form_.packetSize = 1396;
    Start();
    for (const uint64_t id : {1U, 2U})
        GiveAll(Packets(id));
    ExpectWhole({1, 2});
    // Larger ones; and a block that begins with its last packet.
    form_.packetSize = 1500;
    const auto packets = Packets(3);
    GiveAll({packets[0], packets[3], packets[2], packets[1], packets[4]});
    Wait(milliseconds(3));
    if (frames_.size() == 2) GiveResent(3, 3);
    ExpectWhole({1, 2, 3});
}

// ---- Payload types -----------------------------------------------------------------------------

TEST_F(LargeBlocks, EndWithChunksInThreeForms) {
    Start();
    uint64_t id = 0;
    for (const bool isPadded : {false, true}) {
        form_.paddedLastPacket = isPadded;
        form_.chunks = ZelSim::BlockForm::Chunks::WithImage;
        const FrameInfo image = Deliver(++id, ChunkFrame());
        EXPECT_EQ(image.payloadType, GenTL::PAYLOAD_TYPE_IMAGE);
        EXPECT_EQ(image.sizeFilled, kChunked);
        EXPECT_EQ(image.chunkOrder, ZelCti::ByteOrder::Big);
        EXPECT_EQ(image.chunkLayoutId, 7U);
        EXPECT_EQ(image.deliveredHeight, 199U);
        EXPECT_FALSE(image.tooLarge);

        form_.chunks = ZelSim::BlockForm::Chunks::Extended;
        const FrameInfo extended = Deliver(++id, ChunkFrame());
        EXPECT_EQ(extended.payloadType, GenTL::PAYLOAD_TYPE_IMAGE);
        EXPECT_EQ(extended.chunkLayoutId, 7U);
        EXPECT_EQ(extended.width, 256U);
        EXPECT_EQ(extended.sizeFilled, kChunked);

        form_.chunks = ZelSim::BlockForm::Chunks::ChunkData;
        const FrameInfo data = Deliver(++id, ChunkFrame());
        EXPECT_EQ(data.payloadType, GenTL::PAYLOAD_TYPE_CHUNK_DATA);
        EXPECT_FALSE(data.hasImage);
        EXPECT_EQ(data.sizeFilled, kChunked);
        EXPECT_EQ(data.chunkOrder, ZelCti::ByteOrder::Big);
    }
}

TEST_F(LargeBlocks, HavePartsWhoseOffsetsCountFromTheBlockOrThePart) {
    Start();
    form_.extendedIds = form_.multiPart = true;
    uint64_t id = 0;
    for (const bool isRelative : {false, true}) {
        form_.partRelativeOffsets = isRelative;
        const Bytes content = Content(kChunked, 5);
        GiveAll(PacketsOf(ChunkFrame(), content, ++id, form_));
        ASSERT_EQ(frames_.size(), id);
        const auto& [frame, data] = frames_.back();
        EXPECT_EQ(frame.payloadType, GenTL::PAYLOAD_TYPE_MULTI_PART);
        EXPECT_FALSE(frame.incomplete);
        EXPECT_FALSE(frame.hasImage);
        ASSERT_EQ(frame.parts.size(), 2U);
        EXPECT_EQ(frame.parts[0].type, GenTL::PART_DATATYPE_2D_IMAGE);
        EXPECT_EQ(frame.parts[0].dataSize, 50944U);
        EXPECT_EQ(frame.parts[0].width, 256U);
        EXPECT_EQ(frame.parts[0].deliveredHeight, 199U);
        EXPECT_EQ(frame.parts[0].purposeId, 1U);
        EXPECT_EQ(frame.parts[1].offset, 50944U);
        EXPECT_EQ(frame.parts[1].dataSize, 16U);
        EXPECT_EQ(memcmp(data.data(), content.data(), 50944), 0);
        EXPECT_EQ(memcmp(&data[50944], &content[50944 + 8], 16), 0);
    }
}

TEST_F(LargeBlocks, OfVariableHeightEndWhereTheTrailerSays) {
    Start();
    form_.halfHeight = true;
    for (const bool isPadded : {false, true}) {
        form_.paddedLastPacket = isPadded;
        const FrameInfo frame = Deliver(isPadded ? 2 : 1, ImageFrame(256, 199, 1));
        EXPECT_EQ(frame.sizeFilled, 256U * 99);
        EXPECT_EQ(frame.height, 199U);
        EXPECT_EQ(frame.deliveredHeight, 99U);
    }
}

TEST_F(LargeBlocks, ThatAreTooLargeForTheBufferAreCutOff) {
    Start();
    const FrameInfo large = ImageFrame(256, 250, 1);
    const Bytes content = Content(large.sizeFilled, 5);
    GiveAll(PacketsOf(large, content, 1, form_));
    GiveAll(PacketsOf(ImageFrame(256, 100, 2), content, 2, form_));
    ASSERT_EQ(frames_.size(), 2U);
    EXPECT_TRUE(frames_[0].info.tooLarge);
    EXPECT_TRUE(frames_[0].info.incomplete);
    EXPECT_EQ(frames_[0].info.sizeFilled, kChunked);
    EXPECT_EQ(memcmp(frames_[0].data.data(), content.data(), kChunked), 0);
    EXPECT_FALSE(frames_[1].info.tooLarge);
    EXPECT_EQ(Statistics().oversizedBlocks, 1U);
    EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(BlockReceivers, FindNoBlockTooLargeWhosePacketsAreSmallerThanTheRegisterSays) {
    Start({}, 4000);
    GiveSome(1, {2, 1, 3, kTrailer});
    Wait(milliseconds(20));
    for (const uint32_t id : {0U, 2U, 3U})
        GiveResent(1, id);
    ExpectWhole({1});
}

TEST_F(BlockReceivers, PutGenDcDataWhereTheirPacketsSay) {
    Start();
    Give(
        Hex("00000000810000000000000000000005000000000000000b0102030405060708"
            "000000000000002000000000000000 10"));
    Give(
        Hex("00000000880000000000000000000005 00000002 00000010 0000000000000010"
            "00c00000 101112131415161718191a1b1c1d1e1fffffffff"));
    Give(
        Hex("00000000880000000000000000000005 00000001 00000010 0000000000000000"
            "70c00000 000102030405060708090a0b0c0d0e0f"));
    Give(Hex("00000000820000000000000000000005 00000003 0000000b"));
    ASSERT_EQ(frames_.size(), 1U);
    EXPECT_EQ(frames_[0].info.payloadType, GenTL::PAYLOAD_TYPE_GENDC);
    EXPECT_FALSE(frames_[0].info.incomplete);
    EXPECT_EQ(frames_[0].info.sizeFilled, 32U);
    frames_[0].data.resize(32);
    EXPECT_EQ(frames_[0].data, Counting(32));
    // Far outside the buffer.
    Give(
        Hex("00000000880000000000000000000006 00000001 00000010 fffffffffffffff8"
            "70c00000 000102030405060708090a0b0c0d0e0f"));
}

TEST_F(BlockReceivers, DeliverWhatIsNoImage) {
    Start();
    const struct {
        const char* leader;
        GenTL::PAYLOADTYPE_INFO_ID type;
    } cases[] = {
        {"0000000201020304050607080000000000000006", GenTL::PAYLOAD_TYPE_RAW_DATA},
        {"00000003010203040506070800000000000000066e00", GenTL::PAYLOAD_TYPE_FILE},
        {"00000006010203040506070800000000000000060000 00003b9aca0000000007",
         GenTL::PAYLOAD_TYPE_JPEG},
        {"0000900101020304050607080000", GenTL::PAYLOAD_TYPE_DEVICE_SPECIFIC},
        {"00000fff01020304050607080000", GenTL::PAYLOAD_TYPE_UNKNOWN},
    };
    uint8_t id = 0;
    for (const auto& c : cases) {
        Bytes leader = Hex("0000000001000000");
        leader[3] = ++id;
        Give(Append(leader, Hex(c.leader)));
        Bytes data = Hex("0000000003000001 706978656c73");
        data[3] = id;
        Give(data);
        Bytes trailer = Hex("0000000002000002 00000002");
        trailer[3] = id;
        Give(trailer);
        ASSERT_EQ(frames_.size(), id);
        const FrameInfo& frame = frames_.back().info;
        EXPECT_EQ(frame.payloadType, c.type);
        EXPECT_FALSE(frame.hasImage);
        EXPECT_FALSE(frame.incomplete);
        EXPECT_EQ(frame.sizeFilled, 6U);
        EXPECT_EQ(frame.timestamp, 0x0102030405060708U);
    }
    // H.264: the time stands before the data.
    Give(
        Hex("0000000601000000 00000008 0000000000000006 000105dc 0042e01e"
            "00000000 00000000 00000000"));
    Give(Hex("0000000605000001 0000000000001234 706978656c73"));
    Give(Hex("0000000602000002 00000008"));
    ASSERT_EQ(frames_.size(), 6U);
    EXPECT_EQ(frames_.back().info.payloadType, GenTL::PAYLOAD_TYPE_H264);
    EXPECT_EQ(frames_.back().info.timestamp, 0x1234U);
    EXPECT_EQ(frames_.back().info.sizeFilled, 6U);
}

TEST_F(BlockReceivers, TakeABlockInOnePacket) {
    Start();
    const Bytes packet =
        Hex("00000005040000000000000101020304050607080108000100000280000001e0"
            "00000010000000080000000000000001000001e0706978656c73");
    Give(packet);
    Give(packet);
    ASSERT_EQ(frames_.size(), 1U);
    EXPECT_EQ(frames_[0].info.width, 640U);
    EXPECT_EQ(frames_[0].info.offsetX, 16U);
    EXPECT_EQ(frames_[0].info.sizeFilled, 6U);
    EXPECT_FALSE(frames_[0].info.incomplete);
    EXPECT_EQ(memcmp(frames_[0].data.data(), "pixels", 6), 0);
    EXPECT_EQ(Statistics().deliveredPackets, 1U);
    EXPECT_EQ(Statistics().latePackets, 1U);
    // The first packet that is missed is the block that was lost.
    Bytes third = packet;
    third[3] = 7;
    Give(third);
    Wait(milliseconds(2));
    EXPECT_THAT(Asked(), ElementsAre("6:0-0"));
    Bytes second = packet;
    second[3] = 6;
    second[0] = 0x01;
    Give(second);
    EXPECT_EQ(frames_.size(), 3U);
}

TEST_F(BlockReceivers, TurnTicksIntoNanoseconds) {
    Start();
    receiver_->SetTickFrequency(3);
    GiveAll(Packets(1));
    receiver_->SetTickFrequency(0);
    GiveAll(Packets(2));
    form_.timestampAbove63Bits = true;
    receiver_->SetTickFrequency(4000000000);
    GiveAll(Packets(3));
    EXPECT_EQ(frames_[0].info.timestamp, 1000U);
    EXPECT_EQ(frames_[0].info.timestampNs, 333333333333U);
    EXPECT_EQ(frames_[1].info.timestampNs, 1000000000U) << "the time of the host";
    EXPECT_EQ(frames_[2].info.timestamp, 3000 + (uint64_t{1} << 63));
    EXPECT_EQ(frames_[2].info.timestampNs, (uint64_t{1} << 61) + 750);
}

TEST_F(BlockReceivers, TellThePaceOfFramesOfWhichNothingWasAskedFor) {
    Start();
    EXPECT_EQ(receiver_->PacketInterval(), Duration::zero());
    GiveSome(1, {0});
    now_ += microseconds(60);
    GiveSome(1, {1, 2, 3, kTrailer});
    EXPECT_EQ(receiver_->PacketInterval(), microseconds(20));
    GiveSome(2, {0, 2, 3, kTrailer});
    Wait(milliseconds(3));
    GiveResent(2, 1);
    EXPECT_EQ(receiver_->PacketInterval(), microseconds(20)) << "the time of the resend counts";
    GiveAll(Packets(3));
    EXPECT_EQ(receiver_->PacketInterval(), Duration::zero());
    ExpectWhole({1, 2, 3});
}

// ---- Start and stop ----------------------------------------------------------------------------

TEST_F(BlockReceivers, FollowACameraThatCountsAnew) {
    Start();
    GiveAll(Packets(40000));
    GiveAll(Packets(39000));
    GiveAll(Packets(5));
    ExpectWhole({40000, 39000, 5});
    GiveAll(Packets(6));
    GiveAll(Packets(4));
    EXPECT_EQ(Statistics().latePackets, 5U) << "a small step back with an earlier time";
    // A small step back, told by the later time; the open block is over.
    GiveSome(7, {0, 1});
    auto packets = PacketsOf(ImageFrame(64, 48, 99000), Content(kSize, 1), 1, form_);
    GiveAll(packets);
    ASSERT_EQ(frames_.size(), 6U);
    EXPECT_EQ(frames_[4].info.id, 7U);
    EXPECT_TRUE(frames_[4].info.incomplete);
    EXPECT_EQ(frames_[5].info.id, 1U);
    EXPECT_FALSE(frames_[5].info.incomplete);
    // The same id again.
    packets = PacketsOf(ImageFrame(64, 48, 100000), Content(kSize, 1), 1, form_);
    GiveAll(packets);
    EXPECT_EQ(frames_.size(), 7U);
}

TEST_F(BlockReceivers, DeliverAsManyFramesAsAreWanted) {
    Start({}, kPacketSize, 2);
    GiveSome(1, {0, 1, 2, 3});
    GiveAll(Packets(2));
    GiveAll(Packets(3));
    EXPECT_FALSE(receiver_->IsFinished());
    GiveSome(1, {kTrailer});
    ExpectWhole({1, 2});
    EXPECT_TRUE(receiver_->IsFinished());
    EXPECT_FALSE(receiver_->HasOpenFrames());
    EXPECT_TRUE(buffers_.AreAllBack());
    GiveAll(Packets(4));
    ExpectWhole({1, 2});
    receiver_->Start(1);
    GiveAll(Packets(3));
    ExpectWhole({1, 2, 3});
}

TEST_F(BlockReceivers, GiveBackAllBuffersWhenTheyStop) {
    for (const bool isKilled : {false, true}) {
        frames_.clear();
        Start();
        GiveSome(1, {0, 1});
        GiveAll(Packets(2));
        receiver_->Stop(isKilled);
        EXPECT_TRUE(buffers_.AreAllBack());
        EXPECT_EQ(frames_.size(), isKilled ? 1U : 2U);
        EXPECT_EQ(frames_[0].info.incomplete, !isKilled);
        EXPECT_EQ(buffers_.numLost, 0U);
        GiveSome(3, {0, 1});
        EXPECT_TRUE(buffers_.AreAllBack()) << "it is stopped";
    }
}

TEST_F(BlockReceivers, AllocateNothingOnceFramesHaveComeOnce) {
    std::vector<std::vector<Bytes>> blocks;
    for (uint64_t id = 0; id < 40; ++id)
        blocks.push_back(Packets(id));
    frames_.reserve(100);
    buffers_.onFrame = nullptr;
    uint64_t numAsked = 0;
    receiver_ = std::make_unique<BlockReceiver>(buffers_, ReceptionSettings{},
                                                [&](const auto&) { ++numAsked; });
    receiver_->SetPacketSize(kPacketSize);
    receiver_->Start(UINT64_MAX);
    const auto give = [&](const Bytes& packet) {
        receiver_->OnPacket(ViewOf(packet).Sub(0, 8), ViewOf(packet).From(8), now_);
    };
    for (const Bytes& packet : blocks[1])
        give(packet);
    ZelTest::AllocationFaults::Begin(0, 0);
    const ZelTest::AllocationFaults::Counted counted;
    for (size_t id = 2; id < 40; ++id) {
        if (id % 7 == 0) continue;
        for (size_t i = 0; i < blocks[id].size(); ++i) {
            if (id % 3 != 0 || i != 2) give(blocks[id][i]);
            now_ += milliseconds(1);
            receiver_->OnTimer(now_);
        }
    }
    EXPECT_EQ(ZelTest::AllocationFaults::End(), 0U);
    EXPECT_GT(numAsked, 10U);
}
