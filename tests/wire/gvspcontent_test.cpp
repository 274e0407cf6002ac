// Leaders, trailers and data of the stream protocol that a hostile or a strange device sends.

#include <gtest/gtest.h>

#include "producers/wire/gvsppayload.h"
#include "tests/wire/gvspsamples.h"

namespace ZelCti::Gvsp {

using namespace WireTest;

namespace {

// A packet with this content; extended for blocks with parts or zones.
struct TestPacket {
    TestPacket(PacketFormat format, const char* hex, int count = -1) : content(Hex(hex)) {
        packet.header.format = format;
        packet.header.extended = count >= 0;
        packet.header.count = static_cast<uint8_t>(std::max(count, 0));
        packet.content = ViewOf(content);
    }

    Bytes content;
    Packet packet;
};

Result<Leader> LeaderFrom(const char* hex, int count = -1) {
    return DecodeLeader(TestPacket(PacketFormat::Leader, hex, count).packet);
}

// Without the parts, which lie in the packet.
Result<Trailer> TrailerFrom(const char* hex, int count = -1) {
    return DecodeTrailer(TestPacket(PacketFormat::Trailer, hex, count).packet);
}

bool LiesIn(const Bytes& bytes, ByteView part) {
    return part.data >= bytes.data() && part.data + part.size <= bytes.data() + bytes.size();
}

}  // namespace

TEST(GvspContentTest, EveryPacketMayEndAnywhere) {
    for (const GvspSample& sample : GvspSamples()) {
        SCOPED_TRACE(sample.name);
        for (size_t size = 0; size < sample.bytes.size(); ++size) {
            // Of the exact size, so that a sanitizer sees a byte read behind it.
            const Bytes cut(sample.bytes.begin(), sample.bytes.begin() + static_cast<int>(size));
            const Result<Packet> packet = DecodePacket(ViewOf(cut));
            if (!packet) {
                EXPECT_LT(size, kExtendedHeaderSize);
                EXPECT_EQ(Fault::TooShort, packet.GetFault());
                continue;
            }
            if (packet->header.format == PacketFormat::Leader) {
                const Result<Leader> leader = DecodeLeader(*packet);
                const bool nameMayEnd = leader && std::get_if<FileLeader>(&leader->body) != nullptr;
                EXPECT_TRUE(!leader || nameMayEnd) << size;
            }
            const Result<Trailer> trailer = DecodeTrailer(*packet);
            EXPECT_TRUE(!trailer || trailer->parts.size() * PartTrailerForm::kSize < size);
            const Result<Payload> payload = DecodePayload(*packet);
            EXPECT_TRUE(!payload || LiesIn(cut, payload->data));
            const Result<AllIn> block = DecodeAllIn(*packet);
            EXPECT_TRUE(!block || LiesIn(cut, block->payload.data));
        }
    }
}

TEST(GvspContentTest, LeadersWithChunksAreThoseOfTheirBaseType) {
    for (int type = 1; type <= 11; ++type) {
        SCOPED_TRACE(type);
        TestPacket leader(PacketFormat::Leader,
                          "0000 0000 0102030405060708 00000000 00000000 00000000 00000000 00000000"
                          "00000000 00000000 00000000",
                          0);
        leader.content[3] = static_cast<uint8_t>(type);
        const Leader plain = *DecodeLeader(leader.packet);
        leader.content[2] = 0x40;
        const Leader withChunks = *DecodeLeader(leader.packet);
        EXPECT_EQ(type | 0x4000, withChunks.payloadType);
        EXPECT_EQ(plain.body.index(), withChunks.body.index());
        EXPECT_EQ(TrailerSize(plain.payloadType) + 8, TrailerSize(withChunks.payloadType));
        leader.content[2] = 0xC0;
        EXPECT_EQ(Fault::UnknownPayloadType, DecodeLeader(leader.packet).GetFault())
            << "the device's own";
    }
    for (const char* unknown : {"0000 0000", "0000 000c", "0000 400c", "0000 8001", "0000 2001"}) {
        SCOPED_TRACE(unknown);
        EXPECT_EQ(Fault::UnknownPayloadType,
                  LeaderFrom((std::string(unknown) + "0102030405060708").c_str()).GetFault());
    }
}

TEST(GvspContentTest, PartsOfALeaderAreThoseThatThePacketHas) {
    const std::string head = "0000 000a 0102030405060708";
    const std::string part =
        "0001 ffffffffffff 01080001 ffff 01 ff 00000000 0001 0000"
        "00000100 00000064 00000000 00000000 0000 0000 ffffffff";
    EXPECT_EQ(Fault::TooShort, LeaderFrom((head + part).c_str(), 2).GetFault());
    EXPECT_EQ(Fault::TooShort, LeaderFrom((head + part).c_str(), 255).GetFault());
    EXPECT_EQ(Fault::UnknownPayloadType, LeaderFrom((head + part).c_str()).GetFault())
        << "its header has no number of parts";
    EXPECT_TRUE(LeaderFrom(head.c_str(), 0));

    const TestPacket two(PacketFormat::Leader, (head + part + part + "0000").c_str(), 2);
    const Leader leader = *DecodeLeader(two.packet);
    const auto& parts = std::get<MultiPartLeader>(leader.body).parts;
    ASSERT_EQ(2U, parts.size());
    EXPECT_EQ(0xFFFFFFFFFFFFU, parts[1].length);
    EXPECT_EQ(0x1F, parts[1].additionalZones) << "the other bits are reserved";
    EXPECT_EQ(100U, std::get<Geometry>(parts[1].details).sizeY);
}

TEST(GvspContentTest, DetailsOfPartsFollowTheirType) {
    for (unsigned type : {0U, 1U, 9U, 10U, 11U, 12U, 13U, 0x8001U}) {
        Bytes bytes(PartDescriptionForm::kSize);
        bytes[0] = static_cast<uint8_t>(type >> 8);
        bytes[1] = static_cast<uint8_t>(type);
        const PartDescription part = PartDescriptionForm::Read(ViewOf(bytes));
        EXPECT_EQ(type >= 1 && type <= 9, std::holds_alternative<Geometry>(part.details)) << type;
        EXPECT_EQ(type == 11 || type == 12, std::holds_alternative<PartJpeg>(part.details)) << type;
    }
}

TEST(GvspContentTest, FileNamesEndWithTheirPacket) {
    const TestPacket cut(PacketFormat::Leader, "0000 0003 0102030405060708 0000000000000001 6162");
    EXPECT_EQ("ab", std::get<FileLeader>(DecodeLeader(cut.packet)->body).name);
    const TestPacket none(PacketFormat::Leader, "0000 0003 0102030405060708 0000000000000001");
    EXPECT_EQ("", std::get<FileLeader>(DecodeLeader(none.packet)->body).name);
}

TEST(GvspContentTest, TrailersMayBeShorterAndLonger) {
    EXPECT_EQ(Fault::TooShort, TrailerFrom("").GetFault());
    EXPECT_EQ(Fault::TooShort, TrailerFrom("0000 00").GetFault());
    EXPECT_FALSE(TrailerFrom("0000 0001")->sizeY);
    EXPECT_FALSE(TrailerFrom("0000 0001 000000")->sizeY);
    EXPECT_EQ(5U, TrailerFrom("0000 0001 00000005 ffffffff ffffffff")->sizeY);
    EXPECT_FALSE(TrailerFrom("0000 0001 00000005 ffffffff ffffffff")->chunkLength);

    const Trailer half = *TrailerFrom("0000 4001 00000005 00000030 0000");
    EXPECT_EQ(0x30U, half.chunkLength);
    EXPECT_FALSE(half.chunkLayoutId);
    const Trailer unknown = *TrailerFrom("0000 8001 00000005");
    EXPECT_EQ(0x8001, unknown.payloadType);
    EXPECT_FALSE(unknown.sizeY);
}

TEST(GvspContentTest, PartsOfATrailerMayBeMissing) {
    const std::string part = "0001 000000006400 00000064 00000000";
    const TestPacket one(PacketFormat::Trailer, ("0000 400a" + part + "00000030 00000007").c_str(),
                         2);
    const Trailer trailer = *DecodeTrailer(one.packet);
    ASSERT_EQ(1U, trailer.parts.size());
    EXPECT_EQ(25600U, trailer.parts[0].length);
    EXPECT_FALSE(trailer.chunkLength) << "taken from where a part should be";

    const TestPacket whole(PacketFormat::Trailer,
                           ("0000 400a" + part + "00000030 00000007 ffff").c_str(), 1);
    EXPECT_EQ(0x30U, DecodeTrailer(whole.packet)->chunkLength);
    EXPECT_EQ(7U, DecodeTrailer(whole.packet)->chunkLayoutId);
    const TestPacket uncounted(PacketFormat::Trailer,
                               ("0000 400a" + part + part + "00000030 00000007").c_str(), 0);
    EXPECT_EQ(2U, DecodeTrailer(uncounted.packet)->parts.size());
    EXPECT_EQ(7U, DecodeTrailer(uncounted.packet)->chunkLayoutId);
}

TEST(GvspContentTest, DataAreWhatThePacketHas) {
    const TestPacket genDc(PacketFormat::PayloadGenDc, "00000001 0000000000000000 0000 0000 d0d1d2",
                           0);
    EXPECT_EQ(1U, DecodePayload(genDc.packet)->data.size) << "the rest is padding";
    const TestPacket more(PacketFormat::PayloadGenDc, "ffffffff ffffffffffffffff ffff ffff d0d1d2",
                          0);
    EXPECT_EQ(3U, DecodePayload(more.packet)->data.size);
    const TestPacket cut(PacketFormat::PayloadMultiPart, "00 00 00000000", 0);
    EXPECT_EQ(Fault::TooShort, DecodePayload(cut.packet).GetFault());
    const TestPacket empty(PacketFormat::Payload, "");
    EXPECT_EQ(0U, DecodePayload(empty.packet)->data.size);
    for (const auto format : {PacketFormat::Leader, PacketFormat::Trailer, PacketFormat::AllIn})
        EXPECT_EQ(Fault::UnknownFormat, DecodePayload(TestPacket(format, "00").packet).GetFault());
}

TEST(GvspContentTest, BlocksInOnePacketAreWhole) {
    const std::string leader = "0000 0002 0102030405060708 0000000000000002";
    const auto allIn = [](const std::string& hex, int count = -1) {
        return DecodeAllIn(TestPacket(PacketFormat::AllIn, hex.c_str(), count).packet);
    };
    EXPECT_EQ(0U, allIn(leader + "0000 0002")->payload.data.size);
    EXPECT_EQ(Fault::TooShort, allIn(leader + "0000 00").GetFault());
    EXPECT_EQ(Fault::WrongKey, allIn(leader + "0000 0001 00000000").GetFault())
        << "a trailer of another type";
    EXPECT_EQ(Fault::TooShort,
              allIn("0000 0003 0102030405060708 0000000000000002 61626364").GetFault())
        << "a name without an end";
    EXPECT_EQ(Fault::UnknownPayloadType,
              allIn("0000 000a 0102030405060708 0000 000a d0d1", 0).GetFault());
    EXPECT_EQ(Fault::UnknownPayloadType,
              allIn("0000 000b 0102030405060708 0000000000000002 00000000 00000000 0000 000b", 0)
                  .GetFault());
}

}  // namespace ZelCti::Gvsp
