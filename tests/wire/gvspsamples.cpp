#include "tests/wire/gvspsamples.h"

#include <initializer_list>

#include "tests/wire/gvspcontents.h"

namespace ZelCti::Gvsp {

using namespace WireTest;

namespace {

GvspSample Sample(const char* name, const Header& header, const Content& content, const char* hex,
                  const char* fields) {
    return {name,
            [=](ByteSpan out) {
                const size_t size = EncodeHeader(out, header);
                return size + content(out.From(size));
            },
            Hex(hex), fields};
}

// Captured, or built by hand and decoded by another program. Where only the beginning of the data
// is known, the packet ends there.
std::vector<GvspSample> KnownSamples() {
    using Format = PacketFormat;
    const Header refused =
        RefusedHeader(Classic(Format::Payload, 65534, 9), Gev::Status::PacketUnavailable);
    const Header resent = ResentHeader(Classic(Format::Payload, 65535, 2));
    constexpr uint64_t kBlock = 0xFFFFFFFF;
    constexpr uint64_t kPartBytes = 25600;
    Leader jpeg = LeaderOf(PayloadType::Jpeg, JpegLeader{1000, 1000000000, 7});
    jpeg.genericFlags = 1;
    return {
        Sample("image leader", Classic(Format::Leader, 65401, 0),
               Of(LeaderOf(PayloadType::Image, ImageOf(64, 48), 0x18ea6053856ccc80)),
               "0000ff79010000000000000118ea6053856ccc80010800010000004000000030"
               "000000000000000000000000",
               "blockid16=65401 format=0x01 payloadtype=0x0001 timestamp=0x18ea6053856ccc80 "
               "pixel=0x01080001 pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 "
               "sizex=64 sizey=48"),
        Sample("image data", Classic(Format::Payload, 65401, 1),
               Of({}, Hex("797a7b7c7d7e7f808182838485868788")),
               "0000ff7903000001797a7b7c7d7e7f808182838485868788",
               "blockid16=65401 format=0x03 packetid24=1 "
               "payloaddata=79:7a:7b:7c:7d:7e:7f:80:81:82:83:84:85:86:87:88"),
        Sample("image trailer without a height", Classic(Format::Trailer, 65401, 4),
               Of(TrailerOf(Number(PayloadType::Image), 0)), "0000ff79020000040000000100000000",
               "blockid16=65401 format=0x02 packetid24=4 payloadtype=0x0001"),
        Sample("image trailer", Classic(Format::Trailer, 65534, 3),
               Of(TrailerOf(Number(PayloadType::Image), 32)), "0000fffe020000030000000100000020",
               "blockid16=65534 format=0x02 packetid24=3 payloadtype=0x0001 sizey=32"),
        Sample("resent data", resent, Of({}, Hex("bcbdbebfc0c1c2c3c4c5c6c7c8c9cacb")),
               "0100ffff03000002bcbdbebfc0c1c2c3c4c5c6c7c8c9cacb",
               "status=0x0100 blockid16=65535 format=0x03 packetid24=2"),
        Sample("refused resend", refused, Nothing(), "800cfffe03000009",
               "status=0x800c blockid16=65534 format=0x03 packetid24=9"),
        Sample("image leader, extended", Extended(Format::Leader, kBlock, 0),
               Of(LeaderOf(PayloadType::Image, ImageOf(256, 200), 0x18ea60757b9b0958)),
               "000000008100000000000000ffffffff000000000000000118ea60757b9b0958"
               "0108000100000100000000c8000000000000000000000000",
               "format=0x81 blockid64=4294967295 payloadtype=0x0001 timestamp=0x18ea60757b9b0958 "
               "pixel=0x01080001 pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 "
               "sizex=256 sizey=200"),
        Sample("image data, extended", Extended(Format::Payload, kBlock, 1),
               Of({}, Hex("ff000102030405060708090a")),
               "000000008300000000000000ffffffff00000001ff000102030405060708090a",
               "format=0x83 blockid64=4294967295 packetid32=1 "
               "payloaddata=ff:00:01:02:03:04:05:06:07:08:09:0a"),
        Sample("image trailer, extended", Extended(Format::Trailer, kBlock, 37),
               Of(TrailerOf(Number(PayloadType::Image), 200)),
               "000000008200000000000000ffffffff0000002500000001000000c8",
               "format=0x82 blockid64=4294967295 packetid32=37 payloadtype=0x0001 sizey=200"),
        Sample("leader of an image with chunks", Classic(Format::Leader, 65534, 0),
               Of(LeaderOf(WithChunks(PayloadType::Image), ImageOf(256, 199), 0x18ea607c05f3ecc9)),
               "0000fffe010000000000400118ea607c05f3ecc90108000100000100000000c7"
               "000000000000000000000000",
               "blockid16=65534 format=0x01 payloadtype=0x4001 timestamp=0x18ea607c05f3ecc9 "
               "pixel=0x01080001 pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 "
               "sizex=256 sizey=199"),
        Sample("trailer of an image with chunks", Classic(Format::Trailer, 65534, 36),
               Of(TrailerOf(WithChunks(PayloadType::Image), 199, 50968, 7)),
               "0000fffe0200002400004001000000c70000c71800000007",
               "blockid16=65534 format=0x02 packetid24=36 payloadtype=0x4001 sizey=199 "
               "chunkdatapayloadlengthhex=0x0000c718 chunklayoutidhex=0x00000007"),
        Sample("multi-part leader", Extended(Format::Leader, 0x100000001, 0, 2),
               Parts(Number(PayloadType::MultiPart), 0x18ea607d3c1a3e66,
                     {ImagePart(PartType::Image2D, kPartBytes, 1, 256, 100),
                      ImagePart(PartType::ConfidenceMap, kPartBytes, 2, 256, 100)}),
               "00000000810000020000000100000001000000000000000a18ea607d3c1a3e66"
               "0001000000006400010800010000000000000000000100000000010000000064"
               "0000000000000000000000000000000000090000000064000108000100000000"
               "0000000000020000000001000000006400000000000000000000000000000000",
               "format=0x81 numparts=2 blockid64=4294967297 payloadtype=0x000a "
               "timestamp=0x18ea607d3c1a3e66 multipartdatatype=0x0001 "
               "partlength=0x0000000000006400 pixel=0x01080001 pixel.color=0x00000001 "
               "pixel.occupy=8 pixel.id=0x00000001 datapurposeid=0x0001 sizex=256 sizey=100 "
               "multipartdatatype=0x0009 partlength=0x0000000000006400 pixel=0x01080001 "
               "pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 datapurposeid=0x0002 "
               "sizex=256 sizey=100"),
        Sample("multi-part data", Extended(Format::PayloadMultiPart, 0x100000001, 1),
               Of(MultiPartPrefix{}, Hex("0102030405060708090a0b0c")),
               "0000000087000000000000010000000100000001000000000000000001020304"
               "05060708090a0b0c",
               "format=0x87 blockid64=4294967297 packetid32=1 "
               "payloaddata=01:02:03:04:05:06:07:08:09:0a:0b:0c"),
        Sample("multi-part trailer", Extended(Format::Trailer, 0x100000001, 37),
               PartTrailers(TrailerOf(Number(PayloadType::MultiPart)),
                            {{1, kPartBytes, 100}, {9, kPartBytes, 100}}),
               "00000000820000000000000100000001000000250000000a0001000000006400"
               "000000640000000000090000000064000000006400000000",
               "format=0x82 blockid64=4294967297 packetid32=37 payloadtype=0x000a "
               "multipartdatatype=0x0001 partlength=0x0000000000006400 sizey=100 "
               "multipartdatatype=0x0009 partlength=0x0000000000006400 sizey=100"),
        Sample("JPEG leader", Classic(Format::Leader, 5, 0), Of(jpeg),
               "000000050100000000010006010203040506070800000000000003e800000000"
               "3b9aca0000000007",
               "blockid16=5 format=0x01 genericflag=0x01 payloadtype=0x0006 "
               "timestamp=0x0102030405060708 payloaddatasize=1000 "
               "timestamptickfrequency=0x000000003b9aca00 dataformat=0x00000007"),
        Sample(
            "GenDC leader", Extended(Format::Leader, 5, 0),
            Of(LeaderOf(PayloadType::GenDc, GenDcLeader{4096, kGenDcPreliminaryDescriptor, 0x150})),
            "00000000810000000000000000000005000000000000000b0102030405060708"
            "00000000000010008000000000000150",
            "format=0x81 blockid64=5 payloadtype=0x000b timestamp=0x0102030405060708 "
            "payloaddatasize=4096 gendc.leader.flags=0x80 "
            "gendc.leader.flags.preliminarydescriptor=0x01 gendcdescriptorsize=0x00000150"),
        Sample("GenDC descriptor", Extended(Format::PayloadGenDc, 5, 1), GenDcDescriptor(),
               "0000000088000000000000000000000500000001000001500000000000000000"
               "f0c00000474e4443010000000010010040000000050000000000000021000000"
               "0000000000b00400000000005001000000000000500100000100000040000000"
               "0000000000200000380000000000010002000300040000000500000008070605"
               "0403020101000000000000000100080100000100780000000000000000420000"
               "400000000100080100000100000000000000000000b004000000000050010000"
               "0000000080020000e001000000000000000000000000000000000000",
               "format=0x88 blockid64=5 packetid32=1 gendc.payload.datasize=0x00000150 "
               "gendc.payload.dataflags=0xf0 gendc.payload.dataflags.descriptordatapresent=0x03 "
               "gendc.payload.dataflags.startofdescriptordata=0x01 "
               "gendc.payload.dataflags.endofdescriptordata=0x01 gendc.payload.flowflags=0xc0 "
               "gendc.payload.flowflags.firstpacketwithcurrentflow=0x01 "
               "gendc.payload.flowflags.lastpacketwithcurrentflow=0x01 "
               "gendc.container.header.signature=GNDC gendc.container.header.majorversion=1 "
               "gendc.header.type=0x1000 gendc.container.header.flags=0x0001 "
               "gendc.container.header.flags.timestampptp=0x0001 gendc.header.size=0x00000040 "
               "gendc.container.header.id=0x0000000000000005 "
               "gendc.container.header.variablefields=0x0021 "
               "gendc.container.header.variablefields.datasize=0x0001 "
               "gendc.container.header.variablefields.timestamp=0x0001 "
               "gendc.container.header.datasize=0x000000000004b000 "
               "gendc.container.header.dataoffset=0x0000000000000150 "
               "gendc.container.header.descriptorsize=0x00000150 "
               "gendc.container.header.componentcount=0x00000001 "
               "gendc.container.header.componentoffset=0x0000000000000040 "
               "gendc.header.type=0x2000 gendc.header.size=0x00000038 "
               "gendc.component.header.groupid=0x0001 gendc.component.header.sourceid=0x0002 "
               "gendc.component.header.regionid=0x0003 offsetx=4 offsety=5 "
               "timestamp=0x0102030405060708 gendc.component.header.typeid=1 pixel=0x01080001 "
               "pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 "
               "gendc.component.header.partcount=0x0001 "
               "gendc.container.header.partoffset=0x0000000000000078 gendc.header.type=0x4200 "
               "gendc.header.size=0x00000040 pixel=0x01080001 pixel.color=0x00000001 "
               "pixel.occupy=8 pixel.id=0x00000001 gendc.payload.flowid=1 "
               "gendc.container.header.datasize=0x000000000004b000 "
               "gendc.container.header.dataoffset=0x0000000000000150 sizex=640 sizey=480"),
        Sample("image in one packet", Classic(Format::AllIn, 5, 0),
               Of(LeaderOf(PayloadType::Image, ImageLeader{kMono8, {640, 480, 16, 8, 0, 0}}),
                  TrailerOf(Number(PayloadType::Image), 480), {}, Hex("706978656c73")),
               "00000005040000000000000101020304050607080108000100000280000001e0"
               "00000010000000080000000000000001000001e0706978656c73",
               "blockid16=5 format=0x04 payloadtype=0x0001 timestamp=0x0102030405060708 "
               "pixel=0x01080001 pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 "
               "sizex=640 sizey=480 offsetx=16 offsety=8 payloadtype=0x0001 sizey=480 "
               "payloaddata=70:69:78:65:6c:73"),
    };
}

// The other types, with another value in each field.
std::vector<GvspSample> OtherLeaders() {
    using Format = PacketFormat;
    const Geometry geometry{0x101, 0x202, 0x303, 0x404, 0x55, 0x66};
    Leader interlaced = LeaderOf(PayloadType::ExtendedChunk, ImageLeader{0x02180014, geometry});
    interlaced.fieldId = 1;
    interlaced.fieldCount = 2;
    interlaced.genericFlags = 0x81;
    Leader h264 = LeaderOf(PayloadType::H264, OddH264());
    h264.fieldId = 3;
    h264.fieldCount = 4;
    return {
        Sample("raw leader with chunks", Classic(Format::Leader, 6, 0),
               Of(LeaderOf(WithChunks(PayloadType::Raw), RawLeader{0x100000002})),
               "0000 0006 01 000000  0000 4002 0102030405060708 0000000100000002",
               "blockid16=6 format=0x01 payloadtype=0x4002 timestamp=0x0102030405060708 "
               "payloaddatasize=4294967298"),
        Sample("file leader", Classic(Format::Leader, 6, 0),
               Of(LeaderOf(PayloadType::File, FileLeader{16, "a.txt"})),
               "0000 0006 01 000000  0000 0003 0102030405060708 0000000000000010 612e74787400",
               "blockid16=6 format=0x01 payloadtype=0x0003 timestamp=0x0102030405060708 "
               "payloaddatasize=16 filename=a.txt"),
        Sample("chunk data leader", Classic(Format::Leader, 6, 0),
               Of(LeaderOf(PayloadType::ChunkData, ChunkDataLeader{})),
               "0000 0006 01 000000  0000 0004 0102030405060708",
               "blockid16=6 format=0x01 payloadtype=0x0004 timestamp=0x0102030405060708"),
        Sample("extended chunk leader", Classic(Format::Leader, 6, 0), Of(interlaced),
               "0000 0006 01 000000  12 81 0005 0102030405060708 02180014"
               "00000101 00000202 00000303 00000404 0055 0066",
               "blockid16=6 format=0x01 fieldinfo=0x12 fieldid=0x01 fieldcount=0x02 "
               "genericflag=0x81 payloadtype=0x0005 timestamp=0x0102030405060708 pixel=0x02180014 "
               "pixel.color=0x00000002 pixel.occupy=24 pixel.id=0x00000014 sizex=257 sizey=514 "
               "offsetx=771 offsety=1028 paddingx=85 paddingy=102"),
        Sample("JPEG 2000 leader with chunks", Extended(Format::Leader, 6, 0),
               Of(LeaderOf(WithChunks(PayloadType::Jpeg2000), JpegLeader{1, 2, 3})),
               "0000 0000 81 000000 0000000000000006 00000000  0000 4007 0102030405060708"
               "0000000000000001 0000000000000002 00000003",
               "format=0x81 blockid64=6 payloadtype=0x4007 timestamp=0x0102030405060708 "
               "payloaddatasize=1 timestamptickfrequency=0x0000000000000002 dataformat=0x00000003"),
        Sample("H.264 leader", Classic(Format::Leader, 6, 0), Of(h264),
               "0000 0006 01 000000  34 00 0008 0000000000001122 00 02 0578"
               "00 42 a0 1f 0003 0004 00000005 00000006",
               "blockid16=6 format=0x01 fieldinfo=0x34 fieldid=0x03 fieldcount=0x04 "
               "payloadtype=0x0008 payloaddatasize=4386 packetizationmode=0x02 packetsize=1400 "
               "profileidc=0x42 cs=0xa0 cs0=0x01 cs2=0x01 levelidc=0x1f "
               "sropinterleavingdepth=0x0003 sropmaxdondiff=0x0004 sropdeintbufreq=0x00000005 "
               "sropinitbuftime=0x00000006"),
        Sample("multi-zone leader", Extended(Format::Leader, 6, 0, 2),
               Of(LeaderOf(PayloadType::MultiZone, MultiZoneLeader{0xa0000000, kMono8, geometry})),
               "0000 0000 81 000002 0000000000000006 00000000  0000 0009 0102030405060708"
               "a0000000 01080001 00000101 00000202 00000303 00000404 0055 0066",
               "format=0x81 addzones=0x02 blockid64=6 payloadtype=0x0009 "
               "timestamp=0x0102030405060708 zonedirection=0xa0000000 zone0direction=1 "
               "zone2direction=1 pixel=0x01080001 pixel.color=0x00000001 pixel.occupy=8 "
               "pixel.id=0x00000001 sizex=257 sizey=514 offsetx=771 offsety=1028 paddingx=85 "
               "paddingy=102"),
        Sample(
            "multi-part leader with chunks", Extended(Format::Leader, 6, 0, 3),
            Parts(WithChunks(PayloadType::MultiPart), kTime, {OddPart(), JpegPart(), ChunkPart()}),
            "0000 0000 81 000003 0000000000000006 00000000  0000 400a 0102030405060708"
            "0005 010203040506 0260003d 0000 07 09 80000001 1112 1314"
            "00000101 00000202 00000303 00000404 0055 0066 00000000"
            "000b 0000000003e8 00000007 0000 00 00 00000000 0000 0000"
            "80 000000 000000003b9aca00 21222324 0000000000000000"
            "000a 000000000030 00000000 0000 00 00 00000000 0000 0000"
            "000000000000000000000000000000000000000000000000",
            "format=0x81 numparts=3 blockid64=6 payloadtype=0x400a "
            "timestamp=0x0102030405060708 multipartdatatype=0x0005 "
            "partlength=0x0000010203040506 pixel=0x0260003d pixel.color=0x00000002 "
            "pixel.occupy=96 pixel.id=0x0000003d sourceid=0x07 multipartaddzones=0x09 "
            "zonedirection=0x80000001 zone0direction=1 zone31direction=1 datapurposeid=0x1112 "
            "regionid=0x1314 sizex=257 sizey=514 offsetx=771 offsety=1028 paddingx=85 "
            "paddingy=102 multipartdatatype=0x000b partlength=0x00000000000003e8 "
            "dataformat=0x00000007 genericflag=0x80 timestamptickfrequency=0x000000003b9aca00 "
            "dataformat=0x21222324 multipartdatatype=0x000a partlength=0x0000000000000030"),
    };
}

std::vector<GvspSample> OtherTrailers() {
    const Header header = Classic(PacketFormat::Trailer, 6, 9);
    const Header extended = Extended(PacketFormat::Trailer, 6, 9, 2);
    return {
        Sample("raw trailer", header, Of(TrailerOf(Number(PayloadType::Raw))),
               "0000 0006 02 000009  0000 0002",
               "blockid16=6 format=0x02 packetid24=9 payloadtype=0x0002"),
        Sample("raw trailer with chunks", header,
               Of(TrailerOf(WithChunks(PayloadType::Raw), {}, 48, 7)),
               "0000 0006 02 000009  0000 4002 00000030 00000007",
               "blockid16=6 format=0x02 packetid24=9 payloadtype=0x4002 "
               "chunkdatapayloadlengthhex=0x00000030 chunklayoutidhex=0x00000007"),
        Sample("chunk data trailer", header, Of(TrailerOf(Number(PayloadType::ChunkData), {}, 48)),
               "0000 0006 02 000009  0000 0004 00000030",
               "blockid16=6 format=0x02 packetid24=9 payloadtype=0x0004 payloadlength=48"),
        Sample("extended chunk trailer", header,
               Of(TrailerOf(Number(PayloadType::ExtendedChunk), 32, 48, 7)),
               "0000 0006 02 000009  0000 0005 00000030 00000020 00000007",
               "blockid16=6 format=0x02 packetid24=9 payloadtype=0x0005 payloadlength=48 sizey=32 "
               "chunklayoutidhex=0x00000007"),
        Sample("H.264 trailer", header, Of(TrailerOf(Number(PayloadType::H264))),
               "0000 0006 02 000009  0000 0008",
               "blockid16=6 format=0x02 packetid24=9 payloadtype=0x0008"),
        Sample("multi-zone trailer", extended, Of(TrailerOf(Number(PayloadType::MultiZone), 32)),
               "0000 0000 82 000002 0000000000000006 00000009  0000 0009 00000020",
               "format=0x82 blockid64=6 packetid32=9 payloadtype=0x0009 sizey=32"),
        Sample("multi-part trailer with chunks", extended,
               PartTrailers(TrailerOf(WithChunks(PayloadType::MultiPart), {}, 48, 7),
                            {{5, 0x010203040506, 11}, {10, 48, 0}}),
               "0000 0000 82 000002 0000000000000006 00000009  0000 400a"
               "0005 010203040506 0000000b 00000000"
               "000a 000000000030 00000000 00000000  00000030 00000007",
               "format=0x82 blockid64=6 packetid32=9 payloadtype=0x400a multipartdatatype=0x0005 "
               "partlength=0x0000010203040506 sizey=11 multipartdatatype=0x000a "
               "partlength=0x0000000000000030 chunkdatapayloadlengthhex=0x00000030 "
               "chunklayoutidhex=0x00000007"),
        Sample("GenDC trailer", Extended(PacketFormat::Trailer, 6, 9),
               Of(TrailerOf(Number(PayloadType::GenDc))),
               "0000 0000 82 000000 0000000000000006 00000009  0000 000b",
               "format=0x82 blockid64=6 packetid32=9 payloadtype=0x000b"),
    };
}

std::vector<GvspSample> OtherData() {
    using Format = PacketFormat;
    const Header multiPart = ResentHeader(Extended(Format::PayloadMultiPart, 6, 1));
    const Bytes data = Hex("d0d1");
    Header beyond = RefusedHeader(Extended(Format::Leader, 6, 9), Gev::Status::PacketUnavailable);
    beyond.flags = kFlagNoSuchPacket;
    GenDcPrefix genDc;
    genDc.dataSize = 2;
    genDc.offset = 0x0102030405060708;
    genDc.dataFlags = kGenDcDataOnly;
    genDc.flowFlags = kGenDcLastOfFlow;
    genDc.flowId = 0x1112;
    return {
        Sample("H.264 data", Classic(Format::PayloadH264, 6, 1), Of(H264Prefix{kTime}, data),
               "0000 0006 05 000001  0102030405060708 d0d1",
               "blockid16=6 format=0x05 packetid24=1 timestamp=0x0102030405060708 "
               "payloaddata=d0:d1"),
        Sample("multi-zone data", Extended(Format::PayloadMultiZone, 6, 1),
               Of(MultiZonePrefix{21, true, 0x010203040506}, data),
               "0000 0000 86 000000 0000000000000006 00000001  00 2b 010203040506 d0d1",
               "format=0x86 blockid64=6 packetid32=1 multizoneinfo=0x2b zoneid=0x15 endofzone=1 "
               "addressoffset=0x0000010203040506 payloaddata=d0:d1"),
        Sample("resent multi-part data", multiPart,
               Of(MultiPartPrefix{3, true, 21, false, 0x010203040506}, data),
               "0100 0001 87 000000 0000000000000006 00000001  03 6a 010203040506 d0d1",
               "status=0x0100 flags=0x0001 flag.packetresend=0x0001 format=0x87 blockid64=6 "
               "packetid32=1 partid=0x03 multipartzoneinfo=0x6a endofpart=1 zoneid=0x15 "
               "addressoffset=0x0000010203040506 payloaddata=d0:d1"),
        Sample("GenDC data", Extended(Format::PayloadGenDc, 6, 1), Of(genDc, data),
               "0000 0000 88 000000 0000000000000006 00000001"
               "00000002 0102030405060708 00 40 1112 d0d1",
               "format=0x88 blockid64=6 packetid32=1 gendc.payload.datasize=0x00000002 "
               "gendc.payload.datadestinationoffset=0x0102030405060708 "
               "gendc.payload.flowflags=0x40 "
               "gendc.payload.flowflags.lastpacketwithcurrentflow=0x01 gendc.payload.flowid=4370 "
               "payloaddata=d0:d1"),
        Sample("refused resend beyond the block", beyond, Nothing(),
               "800c 0004 83 000000 0000000000000006 00000009",
               "status=0x800c flags=0x0004 flag.resendrangeerror=0x0001 format=0x83 blockid64=6 "
               "packetid32=9"),
    };
}

std::vector<GvspSample> OtherAllIn() {
    const Header header = Classic(PacketFormat::AllIn, 6, 0);
    const Header extended = Extended(PacketFormat::AllIn, 6, 0, 2);
    const Bytes data = Hex("d0d1");
    return {
        Sample("raw data with chunks in one packet", header,
               Of(LeaderOf(WithChunks(PayloadType::Raw), RawLeader{2}),
                  TrailerOf(WithChunks(PayloadType::Raw), {}, 48, 7), {}, data),
               "0000 0006 04 000000  0000 4002 0102030405060708 0000000000000002"
               "0000 4002 00000030 00000007  d0d1",
               "blockid16=6 format=0x04 payloadtype=0x4002 timestamp=0x0102030405060708 "
               "payloaddatasize=2 payloadtype=0x4002 chunkdatapayloadlengthhex=0x00000030 "
               "chunklayoutidhex=0x00000007 payloaddata=d0:d1"),
        Sample("file in one packet", header,
               Of(LeaderOf(PayloadType::File, FileLeader{2, "a.t"}),
                  TrailerOf(Number(PayloadType::File)), {}, data),
               "0000 0006 04 000000  0000 0003 0102030405060708 0000000000000002 612e7400"
               "0000 0003  d0d1",
               "blockid16=6 format=0x04 payloadtype=0x0003 timestamp=0x0102030405060708 "
               "payloaddatasize=2 filename=a.t payloadtype=0x0003 payloaddata=d0:d1"),
        Sample("H.264 in one packet", header,
               Of(LeaderOf(PayloadType::H264, OddH264(), 0), TrailerOf(Number(PayloadType::H264)),
                  H264Prefix{kTime}, data),
               "0000 0006 04 000000  0000 0008 0000000000001122 00 02 0578"
               "00 42 a0 1f 0003 0004 00000005 00000006  0000 0008  0102030405060708 d0d1",
               "blockid16=6 format=0x04 payloadtype=0x0008 payloaddatasize=4386 "
               "packetizationmode=0x02 packetsize=1400 profileidc=0x42 cs=0xa0 cs0=0x01 cs2=0x01 "
               "levelidc=0x1f sropinterleavingdepth=0x0003 sropmaxdondiff=0x0004 "
               "sropdeintbufreq=0x00000005 sropinitbuftime=0x00000006 payloadtype=0x0008 "
               "timestamp=0x0102030405060708 payloaddata=d0:d1"),
        Sample("multi-zone image in one packet", extended,
               Of(LeaderOf(PayloadType::MultiZone, MultiZoneLeader{1, kMono8, {2, 1, 0, 0, 0, 0}}),
                  TrailerOf(Number(PayloadType::MultiZone), 1), MultiZonePrefix{1, true, 0}, data),
               "0000 0000 84 000002 0000000000000006 00000000  0000 0009 0102030405060708"
               "00000001 01080001 00000002 00000001 00000000 00000000 0000 0000"
               "0000 0009 00000001  00 03 000000000000 d0d1",
               "format=0x84 blockid64=6 payloadtype=0x0009 timestamp=0x0102030405060708 "
               "zonedirection=0x00000001 zone31direction=1 pixel=0x01080001 "
               "pixel.color=0x00000001 pixel.occupy=8 pixel.id=0x00000001 sizex=2 sizey=1 "
               "payloadtype=0x0009 sizey=1 multizoneinfo=0x03 zoneid=0x01 endofzone=1 "
               "payloaddata=d0:d1"),
    };
}

std::vector<GvspSample> AllSamples() {
    std::vector<GvspSample> all;
    for (const auto& samples :
         {KnownSamples(), OtherLeaders(), OtherTrailers(), OtherData(), OtherAllIn()})
        all.insert(all.end(), samples.begin(), samples.end());
    return all;
}

}  // namespace

const std::vector<GvspSample>& GvspSamples() {
    static const std::vector<GvspSample> kSamples = AllSamples();
    return kSamples;
}

}  // namespace ZelCti::Gvsp
