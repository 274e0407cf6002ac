// zelcam read and write, run as programs against a simulated camera.

#include <gmock/gmock.h>

#include "tests/tools/toolrun.h"

using nlohmann::json;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// Registers of the simulated cameras: one with a meaning, one that was never written.
constexpr const char* kWidthAddress = "0x2110";
constexpr const char* kFreeAddress = "0xa0000";

class ToolRegisters : public ToolTest {
  protected:
    ToolRegisters()
        : ToolTest(R"(
  <Interface id="eth7" type="GEV">
    <Camera id="little" width="320" height="240"/>
    <Camera id="big" width="320" height="240" bigEndian="true"/>
  </Interface>)") {}

    // The output of a run, or its failure.
    std::string Output(const std::vector<std::string>& arguments) {
        const ToolResult result = Run(arguments);
        return result.exitCode == 0 ? result.out
                                    : std::to_string(result.exitCode) + " " + result.err;
    }
};

TEST_F(ToolRegisters, ReadsInTheOrderOfTheCamera) {
    EXPECT_EQ(Output({"read", "little", kWidthAddress, "8", "--as", "u32"}),
              "0x00002110  320  u32 little-endian\n0x00002114  240  u32 little-endian\n");
    EXPECT_EQ(Output({"read", "big", "8464", "--as", "u32"}), "0x00002110  320  u32 big-endian\n");
    EXPECT_EQ(Output({"read", "big", kWidthAddress, "--as", "u16", "--endian", "little"}),
              "0x00002110  0  u16 little-endian\n");
    EXPECT_EQ(Output({"read", "big", kWidthAddress}),
              "0x00002110  00 00 01 40                                      |...@|\n");
    const json read = Run({"read", "big", kWidthAddress, "8", "--as", "u16", "--json"}).Json();
    EXPECT_EQ(read.at("address"), 0x2110);
    EXPECT_EQ(read.at("byteOrder"), "big-endian");
    EXPECT_EQ(read.at("values"), json({0, 320, 0, 240}));
}

TEST_F(ToolRegisters, ReadsTextsAndLongRanges) {
    EXPECT_EQ(Output({"read", "little", "0x2C0", "64", "--as", "text"}), "0x000002c0  \"2.4.1\"\n");
    EXPECT_EQ(Output({"read", "little", "0x2BE", "18"}),
              "0x000002be  00 00 32 2e 34 2e 31 00 00 00 00 00 00 00 00 00  |..2.4.1.........|\n"
              "0x000002ce  00 00                                            |..|\n");
    // More than a single access can read.
    EXPECT_THAT(Output({"read", "little", "0x1000", "0x1010", "-m", "stream"}),
                EndsWith("|little/Stream0..|\n"));
}

// The command prints the written value, so that the test sees its bytes.
TEST_F(ToolRegisters, WritesEveryTypeInBothOrders) {
    const struct {
        const char* type;
        const char* value;
        const char* order;
        const char* printed;
    } cases[] = {{"u32", "160", "auto", "160  u32 little-endian"},
                 {"u32", "0xA0", "big", "160  u32 big-endian"},
                 {"u8", "255", "auto", "255  u8"},
                 {"i8", "-128", "auto", "-128  i8"},
                 {"i16", "0xFFFE", "little", "-2  i16 little-endian"},
                 {"i64", "-9223372036854775808", "big", "-9223372036854775808  i64 big-endian"},
                 {"u64", "18446744073709551615", "auto", "18446744073709551615  u64 little-endian"},
                 {"f32", "0.1", "big", "0.1  f32 big-endian"},
                 {"f64", "-1e300", "auto", "-1e+300  f64 little-endian"},
                 {"text", "hello", "auto", "\"hello\""}};
    for (const auto& c : cases) {
        EXPECT_EQ(Output({"write", "little", kFreeAddress, "--as", c.type, "--endian", c.order,
                          "--", c.value}),
                  std::string("0x000a0000  ") + c.printed + "\n");
    }
    const std::pair<const char*, const char*> bytes[] = {{"hex:0a0B", "0a 0b"},
                                                         {"hex:0a 0b 0c", "0a 0b 0c"}};
    for (const auto& [value, printed] : bytes)
        EXPECT_THAT(Output({"write", "little", kFreeAddress, value}), HasSubstr(printed));
}

// The simulated cameras live only as long as the process, so a later run cannot read what was
// written. A rejected value shows the byte order.
TEST_F(ToolRegisters, BytesReachTheCameraInItsOrder) {
    EXPECT_EQ(Run({"write", "big", kWidthAddress, "160"}).exitCode, 0);
    EXPECT_EQ(Run({"write", "big", kWidthAddress, "hex:000000a0"}).exitCode, 0);
    EXPECT_THAT(Output({"write", "big", kWidthAddress, "160", "--endian", "little"}),
                StartsWith("8 zelcam: 4 bytes at 0x00002110 of the camera cannot be written: the "
                           "value is rejected"));
    EXPECT_EQ(Run({"write", "little", kWidthAddress, "160", "-a", "readonly"}).exitCode, 8);
}

TEST_F(ToolRegisters, NumbersAreReadWholeAndRangesAreBounded) {
    for (const char* address : {"0x", "0x2110x", "2110 ", "-1", "+1", " 1", "0x-1", "1e3", "",
                                "0x10000000000000000", "18446744073709551616"})
        EXPECT_EQ(Run({"read", "--", "little", address}).exitCode, 1) << address;
    for (const char* length : {"0", "1048577", "0xFFFFFFFFFFFFFFFF", "-4", "4 "})
        EXPECT_EQ(Run({"read", "--", "little", "0x0", length}).exitCode, 1) << length;
    EXPECT_EQ(Run({"read", "little", "0x0", "6", "--as", "u32"}).exitCode, 1);
    EXPECT_EQ(Run({"read", "little", "0xFFFFFFFFFFFFFFFF", "2"}).exitCode, 1);
    EXPECT_EQ(Run({"read", "little", "0xFFFFFFFFFFFFFFFF", "1"}).exitCode, 0);
    const std::pair<const char*, const char*> values[] = {
        {"u8", "256"},    {"u8", "-1"},        {"i8", "128"},  {"i8", "-129"},  {"i8", "0x100"},
        {"u32", "5 "},    {"u32", "5.0"},      {"u32", ""},    {"f32", "1e39"}, {"f64", "1.5s"},
        {"u32", "hex:0"}, {"u32", "hex:0a 0"}, {"hex", "0g"},  {"text", ""},    {"f64", "0x10"},
        {"u32", "hex:"},  {"i32", "0x-1"},     {"i32", "--1"}, {"f32", ""},     {"u32", "320x"}};
    for (const auto& [type, value] : values) {
        EXPECT_EQ(Run({"write", "little", kFreeAddress, "--as", type, "--", value}).exitCode, 1)
            << type << " " << value;
    }
    EXPECT_EQ(Run({"write", "little", kFreeAddress, "hex:" + std::string(8192, '0')}).exitCode, 0);
    EXPECT_EQ(Run({"write", "little", kFreeAddress, "hex:" + std::string(8194, '0')}).exitCode, 1);
}

// The first register of each module has its identifier.
TEST_F(ToolRegisters, OtherModulesHaveRegistersOfTheirOwn) {
    const std::pair<std::string, std::string> modules[] = {
        {"local", "little"}, {"interface", "eth7"}, {"stream", "little/Stream0"}};
    for (const auto& [module, id] : modules) {
        EXPECT_EQ(Output({"read", "little", "0x2000", "64", "--as", "text", "-m", module}),
                  "0x00002000  \"" + id + "\"\n");
        EXPECT_THAT(Output({"read", "little", "0x2000", "-m", module, "--as", "u32"}),
                    AllOf(StartsWith("1 "), HasSubstr("--endian")));
        EXPECT_EQ(Run({"read", "little", "0x2000", "-m", module, "--as", "u32", "--endian", "big"})
                      .exitCode,
                  0);
        const std::string refused = Output({"write", "little", "0x2000", "hex:00", "-m", module});
        EXPECT_THAT(refused, AllOf(StartsWith("8 "), HasSubstr("cannot be written"))) << module;
        EXPECT_EQ(Run({"write", "little", kFreeAddress, "hex:00", "-m", module}).exitCode, 0);
    }
}

}  // namespace
