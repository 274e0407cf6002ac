// Which packets are asked for again, when, how often, and what becomes of frames without them.
#include <gmock/gmock.h>

#include "tests/gigevision/stream/blockfixture.h"

using namespace GevTest;
using testing::ElementsAre;
using testing::IsEmpty;
using WireTest::Hex;
using ZelGev::ResendPolicy;

// ---- Missing packets ---------------------------------------------------------------------------

TEST_F(BlockReceivers, AskForAGapOnceItIsNoReordering) {
    Start();
    GiveSome(1, {0, 3, kTrailer});
    Wait(microseconds(999));
    EXPECT_THAT(Asked(), IsEmpty());
    Wait(microseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:1-2"));
    GiveResent(1, 1);
    GiveResent(1, 2);
    ExpectWhole({1});
    EXPECT_EQ(Statistics().resendCommands, 1U);
    EXPECT_EQ(Statistics().resendPackets, 2U);
    EXPECT_EQ(Statistics().resentPackets, 2U);
    Wait(milliseconds(1));
    EXPECT_EQ(receiver_->NextDeadline(), Time::max());
}

TEST_F(BlockReceivers, GiveReorderingsMoreTimeOnceOneTookLonger) {
    Start();
    GiveSome(1, {0, 2});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:1-1"));
    GiveSome(1, {1, 3, kTrailer});
    GiveSome(2, {0, 2});
    Wait(microseconds(1999));
    EXPECT_THAT(Asked(), IsEmpty());
    Wait(microseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("2:1-1"));
    GiveSome(2, {1, 3, kTrailer});
    ExpectWhole({1, 2});
}

TEST_F(BlockReceivers, AskForPacketsAgainSomeTimesAndGiveUp) {
    ReceptionSettings settings;
    settings.maxRequests = 3;
    Start(settings);
    GiveSome(1, {0, 1, 3, kTrailer});
    GiveAll(Packets(2));
    for (int i = 0; i < 20; ++i) {
        Wait(milliseconds(2));
        GiveSome(2, {0});  // the camera lives
    }
    EXPECT_THAT(Asked(), ElementsAre("1:2-2", "1:2-2", "1:2-2"));
    ASSERT_EQ(frames_.size(), 2U);
    const FrameInfo& frame = frames_[0].info;
    EXPECT_TRUE(frame.incomplete);
    EXPECT_EQ(frame.sizeFilled, kSize - 1364);
    EXPECT_EQ(frame.dataSize, kSize);
    EXPECT_FALSE(frames_[1].info.incomplete);
    EXPECT_EQ(Statistics().incompleteBlocks, 1U);
    EXPECT_EQ(Statistics().discardedBlocks, 0U);
    EXPECT_EQ(Statistics().lostPackets, 1U);
}

TEST_F(BlockReceivers, WaitForACameraThatSaysNothingAtAll) {
    Start();
    GiveSome(1, {0, 1, 3, kTrailer});
    Wait(milliseconds(300));
    EXPECT_EQ(Asked().size(), 8U);
    EXPECT_THAT(frames_, IsEmpty());
    GiveResent(1, 2);
    ExpectWhole({1});
    GiveSome(2, {0, 1});
    Wait(milliseconds(1000));
    EXPECT_EQ(frames_.size(), 2U);
}

TEST_F(BlockReceivers, DropIncompleteFramesWhenToldTo) {
    ReceptionSettings settings;
    settings.resend = false;
    settings.deliverIncomplete = false;
    Start(settings);
    GiveSome(1, {0, 1, 3, kTrailer});
    GiveAll(Packets(2));
    EXPECT_THAT(frames_, IsEmpty()) << "the other packet may just be late";
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), IsEmpty());
    ExpectWhole({2});
    EXPECT_EQ(buffers_.numLost, 1U);
    EXPECT_EQ(Statistics().discardedBlocks, 1U);
    // Without a trailer, the next block ends it.
    GiveSome(3, {0, 1, 2});
    Wait(milliseconds(5));
    GiveAll(Packets(4));
    Wait(milliseconds(1));
    ExpectWhole({2, 4});
}

TEST_F(BlockReceivers, AskForLeaders) {
    Start();
    GiveSome(1, {1, 2, 3, kTrailer});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:0-0"));
    GiveResent(1, 0);
    ExpectWhole({1});
}

TEST_F(BlockReceivers, AskForTheEndOfABlockAfterASilence) {
    Start();
    GiveSome(1, {0, 1});
    Wait(milliseconds(9));
    EXPECT_THAT(Asked(), IsEmpty());
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:2-2")) << "the camera may just be slow";
    GiveResent(1, 2);
    Wait(milliseconds(10));
    EXPECT_THAT(Asked(), ElementsAre("1:3-4"));
    GiveResent(1, 3);
    GiveResent(1, kTrailer);
    ExpectWhole({1});
}

TEST_F(BlockReceivers, AskForTheEndOfABlockWhenTheNextBegins) {
    Start();
    GiveSome(1, {0, 1});
    GiveSome(2, {0, 1});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:2-4"));
    for (const uint32_t id : {2U, 3U, 4U})
        GiveResent(1, id);
    GiveSome(2, {2, 3, kTrailer});
    ExpectWhole({1, 2});
}

TEST_F(BlockReceivers, DoWithoutATrailerWhenAllDataAreThere) {
    Start();
    GiveSome(1, {0, 1, 2, 3});
    Wait(milliseconds(10));
    EXPECT_THAT(Asked(), ElementsAre("1:4-4"));
    Wait(milliseconds(30));
    ExpectWhole({1});
    EXPECT_EQ(Statistics().deliveredPackets, 4U);
}

TEST_F(BlockReceivers, WaitForTheDataOfATriggeredFrameAsLongAsItTakes) {
    Start();
    GiveSome(1, {0});
    Wait(std::chrono::hours(1));
    EXPECT_EQ(receiver_->NextDeadline(), Time::max());
    EXPECT_THAT(Asked(), IsEmpty());
    EXPECT_TRUE(receiver_->HasOpenFrames());
    GiveSome(1, {1, 2, 3, kTrailer});
    ExpectWhole({1});
    // A leader of which nothing else came is no frame.
    GiveSome(2, {0});
    receiver_->Stop(false);
    ExpectWhole({1});
}

TEST_F(BlockReceivers, DoNotWaitForEverWhenOnlyATrailerCame) {
    ReceptionSettings settings;
    settings.maxGaps = 1;
    Start(settings);
    // Of a block with very many packets, as it says.
    Give(Hex("0000000102fffff0 0000000100000030"));
    Wait(milliseconds(1000));
    ASSERT_EQ(frames_.size(), 1U);
    EXPECT_TRUE(frames_[0].info.incomplete);
    EXPECT_LT(Statistics().resendPackets, 100U);
}

TEST_F(BlockReceivers, KeepTheFirstLeaderAndTheFirstTrailer) {
    Start();
    GiveSome(1, {0, 1, 2});
    Bytes wrong = Packets(1)[0];
    wrong[8 + 19] = 32;  // its width
    Give(wrong);
    GiveAll(Packets(2));
    GiveSome(1, {kTrailer});
    wrong = Packets(1)[kTrailer];
    wrong[7] = 9;
    Give(wrong);
    GiveSome(1, {3});
    ExpectWhole({1, 2});
    EXPECT_EQ(frames_[0].info.width, 64U);
    EXPECT_EQ(Statistics().duplicatePackets, 2U);
}

TEST_F(BlockReceivers, TakeNoDataBehindTheTrailerAndNoTrailerBeforeData) {
    Start();
    GiveSome(1, {0, 1, 2});
    Bytes wrong = Packets(1)[kTrailer];
    wrong[7] = 2;
    Give(wrong);
    GiveSome(1, {kTrailer});
    wrong = Packets(1)[1];
    wrong[7] = 5;
    Give(wrong);
    GiveSome(1, {3});
    ExpectWhole({1});
}

TEST_F(LargeBlocks, EndWithTheirTrailersHoweverManyPacketsWereExpected) {
    Start();
    GiveAll(PacketsOf(ImageFrame(256, 199, 1), Content(kChunked, 5), 1, form_));
    GiveSome(2, {1});
    GiveSome(3, {0, 1});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("2:0-0", "2:2-35"));
    GiveResent(2, 0);
    Refuse(2, 2, Status::PacketUnavailable);
    GiveResent(2, 3);
    GiveResent(2, kTrailer);
    Wait(milliseconds(2));
    EXPECT_EQ(frames_.size(), 2U) << "nothing more is awaited";
}

TEST_F(BlockReceivers, AskForBlocksOfWhichNothingCame) {
    Start();
    GiveAll(Packets(1));
    GiveAll(Packets(3));
    Wait(milliseconds(1));
    ExpectWhole({1});
    EXPECT_THAT(Asked(), ElementsAre("2:0-1"));
    GiveResent(2, 0);
    GiveResent(2, 1);
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("2:2-4"));
    for (const uint32_t id : {2U, 3U, 4U})
        GiveResent(2, id);
    ExpectWhole({1, 2, 3});
    EXPECT_EQ(Statistics().skippedBlocks, 0U);
}

TEST_F(BlockReceivers, SkipBlocksThatTheCameraDoesNotHave) {
    Start();
    GiveAll(Packets(1));
    GiveAll(Packets(4));
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("2:0-1", "3:0-1"));
    Refuse(2, 0, Status::PacketUnavailable);
    Refuse(2, 1, Status::PacketUnavailable);
    // Another one says nothing.
    for (int i = 0; i < 100; ++i) {
        Wait(milliseconds(1));
        Refuse(4, 0, Status::PacketUnavailable);
    }
    ExpectWhole({1, 4});
    EXPECT_EQ(Statistics().skippedBlocks, 2U);
    EXPECT_EQ(Statistics().incompleteBlocks, 0U);
    EXPECT_THAT(Asked(), ElementsAre("3:0-1", "3:0-1", "3:0-1"));
    // Far too many, and one that the camera says it dropped.
    GiveAll(Packets(64));
    Wait(milliseconds(1));
    ExpectWhole({1, 4});
    EXPECT_EQ(Asked().size(), 2U) << "one buffer is left for the next frame";
}

TEST_F(BlockReceivers, AskForBlocksBeforeOneThatBeginsWithGarbage) {
    Start();
    GiveAll(Packets(1));
    Wait(milliseconds(1));
    Give(Hex("0000000301000000 00000001"));
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("2:0-1"));
}

TEST_F(BlockReceivers, DoNotAskForABlockThatTheCameraDropped) {
    form_.extendedIds = true;
    Start();
    GiveAll(Packets(1));
    auto packets = Packets(3);
    for (Bytes& packet : packets)
        packet[3] = 0x02;
    GiveAll(packets);
    ExpectWhole({1, 3});
    EXPECT_EQ(Statistics().skippedBlocks, 1U);
}

TEST_F(BlockReceivers, StopAskingForWhatTheCameraDoesNotHaveAnyMore) {
    Start();
    for (const auto status : {Status::PacketUnavailable, Status::PacketRemovedFromMemory,
                              Status::PacketAndPrevRemovedFromMemory, Status::Overflow}) {
        frames_.clear();
        const uint64_t id = static_cast<uint16_t>(status) & 0xFFU;
        const bool isLast = status == Status::PacketAndPrevRemovedFromMemory;
        Start();
        GiveSome(id, {0, 3, kTrailer});
        Wait(milliseconds(1));
        EXPECT_EQ(Asked().size(), 1U);
        Refuse(id, 2, status);
        EXPECT_EQ(frames_.size(), isLast ? 1U : 0U) << "it and all before it are gone";
        if (!isLast) GiveResent(id, 1);
        ASSERT_EQ(frames_.size(), 1U);
        EXPECT_TRUE(frames_[0].info.incomplete);
        EXPECT_EQ(Statistics().unavailablePackets, 1U);
        Wait(milliseconds(100));
        EXPECT_THAT(Asked(), IsEmpty());
        receiver_->Stop(true);
    }
}

// Requests for frames that are beyond repair would delay those for others, until these are beyond
// repair, too.
TEST_F(BlockReceivers, StopAskingForAFrameThatIsBeyondRepair) {
    Start();
    GiveSome(1, {0, 2, kTrailer});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:1-1", "1:3-3"));
    Refuse(1, 1, Status::PacketUnavailable);
    Wait(milliseconds(50));
    EXPECT_THAT(Asked(), IsEmpty());
    ASSERT_EQ(frames_.size(), 1U);
    EXPECT_TRUE(frames_[0].info.incomplete);
}

TEST_F(BlockReceivers, AskLaterForWhatIsNotThereYet) {
    Start();
    GiveSome(1, {0, 1});
    Wait(milliseconds(10));
    EXPECT_THAT(Asked(), ElementsAre("1:2-2"));
    Refuse(1, 2, Status::PacketNotYetAvailable);
    Wait(milliseconds(10));
    EXPECT_THAT(Asked(), testing::Contains("1:2-2"));
    // One without extended codes means the same by this.
    Refuse(1, 2, Status::PacketUnavailable);
    Wait(milliseconds(300));
    EXPECT_THAT(frames_, IsEmpty());
    Asked();
    GiveSome(1, {3, kTrailer});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:2-2"));
    GiveResent(1, 2);
    ExpectWhole({1});
}

TEST_F(BlockReceivers, DoNotTakeWhatNobodyAskedForAsARefusal) {
    Start();
    GiveSome(1, {0, 1});
    Refuse(1, 2, Status::PacketAndPrevRemovedFromMemory);
    Refuse(1, 1, Status::PacketUnavailable);
    Refuse(9, 1, Status::PacketUnavailable);
    GiveSome(1, {2, 3, kTrailer});
    ExpectWhole({1});
    EXPECT_EQ(Statistics().unavailablePackets, 0U);
}

// ---- Limits ------------------------------------------------------------------------------------

TEST_F(BlockReceivers, GiveUpAFrameThatDelaysOthersForTooLong) {
    Start();
    GiveSome(1, {0, 1});
    GiveAll(Packets(2));
    Wait(milliseconds(99));
    EXPECT_THAT(frames_, IsEmpty());
    Wait(milliseconds(3));
    ASSERT_EQ(frames_.size(), 2U);
    EXPECT_TRUE(frames_[0].info.incomplete);
    // One that delays nothing is waited for longer.
    GiveSome(3, {0, 1});
    Wait(milliseconds(300));
    EXPECT_EQ(frames_.size(), 2U);
    Wait(milliseconds(300));
    EXPECT_EQ(frames_.size(), 3U);
    EXPECT_EQ(receiver_->NextDeadline(), Time::max());
}

class ManyBuffers : public BlockReceivers {
  protected:
    ManyBuffers() : BlockReceivers(kSize, 40) {}
};

TEST_F(ManyBuffers, HoldBackOnlySoManyFrames) {
    Start();
    GiveSome(1, {0, 1, 3, kTrailer});
    for (uint64_t id = 2; id <= 32; ++id)
        GiveAll(Packets(id));
    EXPECT_THAT(frames_, IsEmpty());
    GiveAll(Packets(33));
    ASSERT_EQ(frames_.size(), 33U);
    EXPECT_TRUE(frames_[0].info.incomplete);
    EXPECT_EQ(frames_[32].info.id, 33U);
}

TEST_F(ManyBuffers, AskForTheLatestOfTheBlocksThatAStallCost) {
    Start();
    GiveAll(Packets(1));
    GiveAll(Packets(22));
    Wait(milliseconds(1));
    const std::vector<std::string> asked = Asked();
    ASSERT_EQ(asked.size(), 16U);
    EXPECT_EQ(asked.front(), "6:0-1");
    EXPECT_EQ(asked.back(), "21:0-1");
    EXPECT_EQ(Statistics().skippedBlocks, 4U);
}

TEST_F(BlockReceivers, GiveUpAFrameThatComesDropByDrop) {
    ReceptionSettings settings;
    settings.maxRequests = 1000;
    Start(settings, 256 + 28);
    form_.packetSize = 256 + 28;
    GiveSome(1, {0});
    GiveAll(Packets(2));
    for (uint32_t id = 1; id < 12; ++id) {
        Wait(milliseconds(90));
        GiveResent(1, id);
    }
    EXPECT_EQ(frames_.size(), 2U);
}

TEST_F(BlockReceivers, AskForAFrameWithinLimits) {
    ReceptionSettings settings;
    settings.minAskedPerFrame = 3;
    settings.maxAskedPercent = 0;
    Start(settings);
    GiveSome(1, {kTrailer});
    GiveAll(Packets(2));
    for (int i = 0; i < 50; ++i) {
        Wait(milliseconds(1));
        GiveSome(2, {0});
    }
    EXPECT_THAT(Asked(), ElementsAre("1:0-2"));
    EXPECT_EQ(frames_.size(), 2U);
}

TEST(ResendPolicies, GrantWhatASmallReceiveBufferTakesAndNoMoreInASecond) {
    ReceptionSettings settings;
    settings.maxAskedPerSecond = 1000;
    ResendPolicy policy(settings);
    constexpr uint64_t kBytes = 48 << 10;
    Time now(milliseconds(1000));
    EXPECT_EQ(policy.Grant(10, 1500, now), 10U);
    EXPECT_EQ(policy.Grant(100, 1500, now), kBytes / 1500 - 10);
    EXPECT_EQ(policy.Grant(100, 1500, now), 0U);
    EXPECT_TRUE(policy.IsWaiting()) << "for answers";
    policy.SetAwaited(0);
    EXPECT_EQ(policy.Grant(100, 1500, now), 0U);
    EXPECT_FALSE(policy.IsWaiting());
    EXPECT_GT(policy.NextGrant(), now + milliseconds(10));
    now += milliseconds(10);
    EXPECT_EQ(policy.Grant(100, 1500, now), 10U);
    now += milliseconds(1000);
    policy.SetAwaited(0);
    EXPECT_EQ(policy.Grant(100, 9000, now), 5U);
}

TEST(ResendPolicies, GrantLessWhileAnswersGetLost) {
    ResendPolicy policy(ReceptionSettings{});
    Time now(milliseconds(1000));
    const auto grant = [&] {
        now += milliseconds(100);
        policy.SetAwaited(0);
        return policy.Grant(100, 1500, now);
    };
    EXPECT_EQ(grant(), 32U);
    for (const uint64_t expected : {32U, 16U, 8U, 4U, 2U, 2U}) {
        policy.OnSilence(now);
        policy.OnSilence(now);
        EXPECT_EQ(grant(), expected);
    }
    for (int i = 0; i < 100; ++i)
        policy.OnAnswer(milliseconds(1));
    EXPECT_EQ(grant(), 32U);
}

TEST(ResendPolicies, WaitForAnswersTwiceAsLongAsTheyTakeAndLongerEachTime) {
    ResendPolicy policy(ReceptionSettings{});
    EXPECT_EQ(policy.RepeatDelay(1), milliseconds(5));
    policy.OnAnswer(milliseconds(4));
    EXPECT_EQ(policy.RepeatDelay(1), milliseconds(8));
    EXPECT_EQ(policy.RepeatDelay(2), milliseconds(16));
    EXPECT_EQ(policy.RepeatDelay(8), milliseconds(25));
    for (int i = 0; i < 100; ++i)
        policy.OnAnswer(microseconds(100));
    EXPECT_EQ(policy.RepeatDelay(1), milliseconds(3));
}

TEST_F(LargeBlocks, AreAskedForAFewPacketsAtATime) {
    ReceptionSettings settings;
    Start(settings);
    const auto packets = PacketsOf(ImageFrame(256, 199, 1), Content(kChunked, 5), 1, form_);
    ASSERT_EQ(packets.size(), 40U);
    GiveAll({packets.front(), packets.back()});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:1-35"));
    for (uint32_t id = 1; id < 40; ++id) {
        Bytes packet = packets[id];
        packet[0] = 0x01;
        Give(packet);
        if (id == 10) {
            receiver_->OnTimer(now_ += microseconds(100));
            EXPECT_THAT(Asked(), ElementsAre("1:36-38"));
        }
    }
    ASSERT_EQ(frames_.size(), 1U);
    EXPECT_FALSE(frames_[0].info.incomplete);
}

TEST_F(LargeBlocks, AreAskedForUpToTheEndThatTheirLeadersState) {
    Start();
    GiveSome(1, {0, 1});
    GiveSome(2, {0, 1});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:2-4"));
}

TEST_F(LargeBlocks, AreAskedForFromTheBeginWhereNoGapCanBeCut) {
    ReceptionSettings settings;
    settings.maxGaps = settings.maxRequests = 1;
    Start(settings);
    const auto packets = PacketsOf(ImageFrame(256, 199, 1), Content(kChunked, 5), 1, form_);
    GiveAll({packets.front(), packets.back()});
    Wait(milliseconds(1));
    EXPECT_THAT(Asked(), ElementsAre("1:1-35"));
    for (uint32_t id = 1; id < 39; ++id) {
        if (id == 36) {
            Wait(milliseconds(25));
            EXPECT_THAT(Asked(), ElementsAre("1:36-38"));
        }
        Bytes packet = packets[id];
        packet[0] = 0x01;
        Give(packet);
    }
    ASSERT_EQ(frames_.size(), 1U);
    EXPECT_FALSE(frames_[0].info.incomplete);
}

TEST_F(LargeBlocks, AreNotAskedForWhatCameAfterASilence) {
    Start();
    const auto packets = PacketsOf(ImageFrame(256, 199, 1), Content(kChunked, 5), 1, form_);
    for (size_t id = 0; id <= 10; ++id)
        Give(packets[id]);
    Wait(milliseconds(10));
    EXPECT_THAT(Asked(), ElementsAre("1:11-11"));
    for (size_t id = 11; id <= 20; ++id)
        Give(packets[id]);
    Wait(milliseconds(8));
    EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(LargeBlocks, WithTooManyGapsAreNotRepaired) {
    ReceptionSettings settings;
    settings.maxGaps = 3;
    Start(settings);
    const auto packets = PacketsOf(ImageFrame(256, 199, 1), Content(kChunked, 5), 1, form_);
    for (size_t id = 0; id < packets.size(); id += 3)
        Give(packets[id]);
    Wait(milliseconds(2));
    EXPECT_THAT(Asked(), IsEmpty());
    EXPECT_EQ(frames_.size(), 1U);
}

TEST_F(BlockReceivers, DoNotBlameTheCameraForAPauseOfThisProgram) {
    Start();
    GiveSome(1, {0, 1});
    GiveSome(2, {0});
    now_ += milliseconds(500);
    // What waited in the socket is read after the timers.
    receiver_->OnTimer(now_);
    EXPECT_THAT(frames_, IsEmpty());
    EXPECT_THAT(Asked(), IsEmpty());
    GiveSome(2, {1, 2, 3, kTrailer});
    Wait(milliseconds(1));
    EXPECT_THAT(frames_, IsEmpty());
    EXPECT_THAT(Asked(), ElementsAre("1:2-4"));
    for (const uint32_t id : {2U, 3U, 4U})
        GiveResent(1, id);
    ExpectWhole({1, 2});
}

TEST_F(BlockReceivers, LoseFramesWithoutABufferAndGoOn) {
    Start();
    buffers_.keepsFrames = true;
    for (uint64_t id = 1; id <= 6; ++id)
        GiveAll(Packets(id));
    ExpectWhole({1, 2, 3, 4});
    EXPECT_EQ(Statistics().engineUnderruns, 2U);
    EXPECT_EQ(buffers_.numUnderruns, 2U);
    EXPECT_EQ(Statistics().latePackets, 10U);
    Wait(milliseconds(1));
    EXPECT_EQ(receiver_->NextDeadline(), Time::max());
    buffers_.QueueKept();
    GiveAll(Packets(7));
    ExpectWhole({1, 2, 3, 4, 7});
    EXPECT_THAT(Asked(), IsEmpty());
}
