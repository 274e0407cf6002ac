// Numbers and names as users write them.

#include "tools/zelcam/console/numbertext.h"

#include <climits>
#include <cmath>

#include <gtest/gtest.h>

#include "tools/zelcam/console/suggestion.h"

using namespace ZelTool;
namespace {

TEST(NumberText, CountsAreDigits) {
    EXPECT_EQ(ParseCount("0"), 0U);
    EXPECT_EQ(ParseCount("010"), 10U);
    EXPECT_EQ(ParseCount("18446744073709551615"), UINT64_MAX);
    for (const char* text :
         {"", "-1", "+1", " 1", "1 ", "1x", "1.0", "1e3", "0x10", "-0", "18446744073709551616"})
        EXPECT_FALSE(ParseCount(text).has_value()) << text;
}

TEST(NumberText, IntegersHaveSignsAndTwoBases) {
    const std::pair<const char*, int64_t> whole[] = {{"-9223372036854775808", INT64_MIN},
                                                     {"+7", 7},
                                                     {"0x1F", 31},
                                                     {"-0x10", -16},
                                                     {"0XffffFFFFffffFFFF", -1}};
    for (const auto& [text, number] : whole)
        EXPECT_EQ(ParseInteger(text), number) << text;
    for (const char* text : {"", "-", "+-1", "--1", "0x", "0x1g", "3.5", "9223372036854775808",
                             "0x10000000000000000", "+0x8000000000000000"})
        EXPECT_FALSE(ParseInteger(text).has_value()) << text;
}

// The number times a power of ten, and what stands behind it.
std::string Exactly(const std::string& text, int power) {
    std::string rest;
    const auto number = Decimal::Parse(text, rest);
    if (!number) return "none";
    const auto whole = number->TimesTenTo(power).Whole();
    return (whole ? std::to_string(*whole) : "no integer") + "|" + rest;
}

TEST(NumberText, DecimalsStayExact) {
    EXPECT_EQ(Exactly("1.0000000000000000001s", 19), "no integer|s") << "10000000000000000001";
    EXPECT_EQ(Exactly("0.000000000000000001", 18), "1|");
    EXPECT_EQ(Exactly("922337203685.4775807 s", 7), "9223372036854775807| s");
    EXPECT_EQ(Exactly("-9223372036854775.808", 3), "-9223372036854775808|");
    EXPECT_EQ(Exactly("5000e-3ms", 0), "5|ms");
    EXPECT_EQ(Exactly("2eggs", 0), "2|eggs");
    EXPECT_EQ(Exactly("0.5", 0), "no integer|");
    EXPECT_EQ(Exactly("000.000", -3), "0|");
    EXPECT_EQ(Exactly("1e99999999999999999999", 6), "no integer|");
    for (const char* text : {"", ".", "-", "e5", "nan", "inf", " 1", "--1"})
        EXPECT_EQ(Exactly(text, 0), "none") << text;
    // Multiplied as doubles these are 16100.000000000002 and 0.0009000000000000001.
    std::string rest;
    EXPECT_EQ(Decimal::Parse("16.1", rest)->TimesTenTo(3).Nearest(), 16100.0);
    EXPECT_EQ(Decimal::Parse("0.9", rest)->TimesTenTo(-3).Nearest(), 0.0009);
    EXPECT_FALSE(Decimal::Parse("1e309", rest)->Nearest().has_value());
}

TEST(NumberText, UnitsConvertWithinTheirKind) {
    EXPECT_EQ(PowerBetween("ms", "us"), 3);
    EXPECT_EQ(PowerBetween("ns", "s"), -9);
    EXPECT_EQ(PowerBetween("MHz", "Hz"), 6);
    EXPECT_EQ(PowerBetween("dB", "dB"), 0);
    EXPECT_EQ(PowerBetween("px", "px"), 0) << "units that nobody knows";
    // Both signs for micro.
    EXPECT_EQ(PowerBetween("\u00B5s", "us"), 0);
    EXPECT_EQ(PowerBetween("ms", "\u03BCs"), 3);
    for (const auto& [from, to] : {std::pair{"ms", "Hz"}, {"mHz", "Hz"}, {"x", "us"}, {"us", ""}})
        EXPECT_FALSE(PowerBetween(from, to).has_value()) << from;
}

TEST(Suggestion, TheMostAlikeFirst) {
    const std::vector<std::string> names = {"WidthMax",    "Width",       "Height",
                                            "Gain",        "SensorWidth", "ExposureTime",
                                            "PixelFormat", "ExposureMode"};
    EXPECT_EQ(DidYouMean("width", names), "; did you mean Width or WidthMax or SensorWidth?");
    EXPECT_EQ(DidYouMean("ExposureTme", names), "; did you mean ExposureTime or ExposureMode?");
    EXPECT_EQ(DidYouMean("Pixl", {"PixelFormat", "Pixel"}), "; did you mean Pixel?");
    for (const std::string& wanted : {std::string(), std::string("Xyz"), std::string(100000, 'W')})
        EXPECT_EQ(DidYouMean(wanted, names), "");
}

}  // namespace
