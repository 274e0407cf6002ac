// A receiver that is given packets one by one, in virtual time.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "producers/gigevision/stream/blockreceiver.h"
#include "tests/gigevision/stream/virtualstream.h"

namespace GevTest {

using ZelCti::FrameInfo;
using ZelCti::Gev::Status;
using ZelCti::Gvcp::PacketResend;
using ZelGev::BlockReceiver;
using ZelGev::ReceptionSettings;
using ZelGev::StreamStatistics;

constexpr size_t kSize = size_t{64} * 48;  // the image of most tests: three data packets
constexpr size_t kPacketSize = 1400;
constexpr uint32_t kTrailer = 4;

// The ranges of requests: "block:first-last".
inline std::string Text(const PacketResend& request) {
    return std::to_string(request.blockId) + ":" + std::to_string(request.firstPacket) + "-" +
           std::to_string(request.lastPacket);
}

class BlockReceivers : public testing::Test {
  protected:
    explicit BlockReceivers(size_t bufferSize = kSize, size_t numBuffers = 4)
        : buffers_(numBuffers, bufferSize) {
        buffers_.onFrame = [this](const FrameInfo& frame, const Bytes& data) {
            frames_.push_back({frame, data});
        };
    }
    ~BlockReceivers() override {
        if (receiver_ == nullptr) return;
        receiver_->Stop(true);
        EXPECT_TRUE(buffers_.AreAllBack());
    }

    void Start(const ReceptionSettings& settings = {}, size_t packetSize = kPacketSize,
               uint64_t numFrames = UINT64_MAX) {
        receiver_ = std::make_unique<BlockReceiver>(
            buffers_, settings, [this](const auto& request) { asked_.push_back(Text(request)); });
        receiver_->SetPacketSize(packetSize);
        receiver_->SetTickFrequency(1000000000);
        receiver_->Start(numFrames);
    }

    void Give(const Bytes& packet) { reader_.Read(*receiver_, {packet}, now_); }
    void GiveAll(const std::vector<Bytes>& packets) {
        for (const Bytes& packet : packets)
            Give(packet);
    }
    // Packets of the usual image by their ids.
    void GiveSome(uint64_t blockId, std::initializer_list<uint32_t> ids) {
        const auto packets = Packets(blockId);
        for (const uint32_t id : ids)
            Give(packets[id]);
    }
    std::vector<Bytes> Packets(uint64_t blockId) const {
        return PacketsOf(ImageFrame(64, 48, blockId * 1000), Content(kSize, blockId), blockId,
                         form_);
    }
    void GiveResent(uint64_t blockId, uint32_t id) {
        Bytes packet = Packets(blockId)[id];
        packet[0] = 0x01;
        Give(packet);
    }
    void Refuse(uint64_t blockId, uint32_t id, Status reason) {
        const auto status = static_cast<uint16_t>(reason);
        Bytes packet = Packets(blockId)[std::min(id, kTrailer)];
        packet.resize(8);
        packet[0] = static_cast<uint8_t>(status >> 8U);
        packet[1] = static_cast<uint8_t>(status);
        packet[7] = static_cast<uint8_t>(id);
        Give(packet);
    }

    // Lets time pass as a thread does that calls OnTimer when it is due.
    void Wait(Duration time) {
        const Time end = now_ + time;
        while (receiver_->NextDeadline() <= end) {
            now_ = std::max(now_, receiver_->NextDeadline());
            receiver_->OnTimer(now_);
            ASSERT_LT(++numTimers_, 10000) << "it never rests";
        }
        now_ = end;
    }
    std::vector<std::string> Asked() { return std::exchange(asked_, {}); }

    // The frames so far are these blocks, whole.
    void ExpectWhole(std::initializer_list<uint64_t> ids) {
        std::vector<uint64_t> found;
        for (const auto& frame : frames_) {
            found.push_back(frame.info.id);
            EXPECT_FALSE(frame.info.incomplete) << frame.info.id;
            EXPECT_EQ(frame.info.sizeFilled, kSize);
            EXPECT_TRUE(frame.data == Content(kSize, frame.info.id)) << frame.info.id;
        }
        EXPECT_EQ(found, std::vector<uint64_t>(ids));
    }
    const StreamStatistics& Statistics() const { return receiver_->Statistics(); }

    ZelSim::BlockForm form_ = [] {
        ZelSim::BlockForm form;
        form.packetSize = kPacketSize;
        return form;
    }();
    Time now_ = Time(milliseconds(1000));
    Buffers buffers_;
    std::unique_ptr<BlockReceiver> receiver_;
    std::vector<DeliveredFrame> frames_;
    std::vector<std::string> asked_;
    Reader reader_;
    int numTimers_ = 0;
};

class LargeBlocks : public BlockReceivers {
  protected:
    static constexpr size_t kChunked = size_t{256} * 199 + 8 + 16;
    LargeBlocks() : BlockReceivers(kChunked) {}

    static FrameInfo ChunkFrame() {
        FrameInfo frame = ImageFrame(256, 199, 99);
        frame.chunkOrder = ZelCti::ByteOrder::Big;
        frame.chunkLayoutId = 7;
        frame.sizeFilled = kChunked;
        return frame;
    }
    const FrameInfo& Deliver(uint64_t blockId, const FrameInfo& info) {
        const Bytes content = Content(info.sizeFilled, 5);
        GiveAll(PacketsOf(info, content, blockId, form_));
        EXPECT_EQ(frames_.size(), blockId);
        EXPECT_FALSE(frames_.back().info.incomplete);
        EXPECT_EQ(
            memcmp(content.data(), frames_.back().data.data(), frames_.back().info.sizeFilled), 0);
        return frames_.back().info;
    }
};

}  // namespace GevTest
