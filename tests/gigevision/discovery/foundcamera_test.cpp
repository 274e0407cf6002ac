// What cameras tell of themselves, as literal bytes.
#include "producers/gigevision/discovery/foundcamera.h"

#include <gmock/gmock.h>

#include "tests/gigevision/discovery/discoveryack.h"

using ZelGev::CleanText;
using ZelGev::ReadDiscoveryAnswer;
using ZelTest::Bytes;
using ZelTest::DiscoveryAck;

namespace {

std::optional<ZelGev::DiscoveryAnswer> Answer(const Bytes& bytes) {
    return ReadDiscoveryAnswer({bytes.data(), bytes.size()});
}

}  // namespace

TEST(FoundCamera, IsReadFromTheAnswer) {
    const auto answer = Answer(DiscoveryAck().Id(0x1234).Get());
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->ackId, 0x1234);
    const ZelGev::FoundCamera& camera = answer->camera;
    EXPECT_EQ(camera.id, "GEV-021122334455");
    EXPECT_EQ(camera.mac, 0x021122334455U);
    EXPECT_EQ(camera.ip.address, 0x0A4D0005U);
    EXPECT_EQ(camera.ip.mask, 0xFFFFFF00U);
    EXPECT_EQ(camera.ip.gateway, 0x0A4D0001U);
    EXPECT_EQ(camera.versionMajor, 2);
    EXPECT_EQ(camera.versionMinor, 1);
    EXPECT_TRUE(camera.bigEndian);
    EXPECT_EQ(camera.manufacturer, "Acme");
    EXPECT_EQ(camera.model, "Line 4");
    EXPECT_EQ(camera.version, "1.2.3");
    EXPECT_EQ(camera.serialNumber, "0815");
    EXPECT_EQ(camera.userName, "left");
}

// Garbage behind the end, texts that fill their fields, control characters, other character sets.
TEST(FoundCamera, TextsAreClean) {
    using namespace std::string_literals;
    const auto answer = Answer(DiscoveryAck()
                                   .Text(72, "Acme\0\xFF\x01 garbage"s)
                                   .Text(104, std::string(32, 'x'))
                                   .Text(216, "\t 08\x1B[2J15 \n"s)
                                   .Text(232, "M\xFCller")
                                   .Get());
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->camera.manufacturer, "Acme");
    EXPECT_EQ(answer->camera.model, std::string(32, 'x'));
    EXPECT_EQ(answer->camera.serialNumber, "08 [2J15");
    EXPECT_EQ(answer->camera.userName, "M\u00FCller");
    EXPECT_EQ(CleanText("\u00E4\u20AC\U0001F4F7"), "\u00E4\u20AC\U0001F4F7");
    EXPECT_EQ(CleanText("a\xC0\x80z"), "a\u00C0z") << "a form that is too long";
    EXPECT_EQ(CleanText("a\xED\xA0\x80z"), "a\u00ED\u00A0z") << "half of a pair";
    EXPECT_EQ(CleanText("a\xF5\x90\x80\x80z"), "a\u00F5z") << "beyond Unicode";
    EXPECT_EQ(CleanText("cut \xE2\x82"), "cut \u00E2");
    EXPECT_EQ(CleanText(" \r\n"), "");
}

TEST(FoundCamera, WithoutASerialNumberTheMacAddressTellsItApart) {
    const auto answer = Answer(DiscoveryAck().Put(216, Bytes(16)).Get());
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->camera.serialNumber, "021122334455");
}

TEST(FoundCamera, WithoutAMacAddressItsNamesMakeTheIdentifier) {
    const auto answer = Answer(DiscoveryAck().Mac(Bytes(6)).Get());
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->camera.id, "GEV-Acme-Line 4-0815");
}

TEST(FoundCamera, OtherDatagramsAreNone) {
    Bytes command = DiscoveryAck().Get();
    command[0] = 0x42;
    EXPECT_FALSE(Answer(command));
    Bytes error = DiscoveryAck().Get();
    error[0] = 0x80;
    error[1] = 0x06;
    EXPECT_FALSE(Answer(error));
    Bytes other = DiscoveryAck().Get();
    other[3] = 0x05;
    EXPECT_FALSE(Answer(other));
    const Bytes whole = DiscoveryAck().Get();
    for (size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(Answer(Bytes(whole.begin(), whole.begin() + static_cast<long>(size)))) << size;
}
