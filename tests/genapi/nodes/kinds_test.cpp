// What is peculiar to the kinds of nodes, and the texts of values.
#include <map>
#include <string>
#include <vector>

#include <GenApi/ISelector.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;
using testing::HasSubstr;

namespace {

const std::string kEnumeration =
    kPort +
    Named("Enumeration", "E",
          Entry("A", 0) + Entry("B", 1, "", "<Symbolic>Bee</Symbolic>") +
              Entry("Gone", 2, "<pIsAvailable>Zero</pIsAvailable>") +
              Entry("Never", 3, "<pIsImplemented>Zero</pIsImplemented>") +
              Entry("Half", 4, "", "<NumericValue>0.5</NumericValue>") + "<pValue>R</pValue>") +
    IntReg("R", 0) + Literal("Zero", "0");

TEST(Enumerations, EntriesAndTheirSymbolics) {
    TestMap map(kEnumeration);
    IEnumeration& e = map.Enumeration("E");
    StringList_t symbolics;
    e.GetSymbolics(symbolics);
    std::string text;
    for (size_t i = 0; i < symbolics.size(); ++i)
        text += ToStd(symbolics[i]) + " ";
    EXPECT_EQ(text, "A Bee Half ");
    NodeList_t entries;
    e.GetEntries(entries);
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_EQ(ToStd(entries[3]->GetName()), "EnumEntry_E_Never");
    EXPECT_EQ(e.GetEntryByName("B"), nullptr);
    EXPECT_EQ(e.GetEntryByName("Bee"), e.GetEntry(1));
    EXPECT_NE(e.GetEntryByName("Never"), nullptr);
    EXPECT_EQ(e.GetEntry(9), nullptr);
    EXPECT_EQ(e.GetEntry(4)->GetNumericValue(), 0.5);
    EXPECT_EQ(e.GetEntry(1)->GetNumericValue(), 1);
    EXPECT_EQ(e.GetEntry(1)->GetAccessMode(), RO);
    EXPECT_EQ(ToStd(e.GetEntry(1)->GetSymbolic()), "Bee");
    EXPECT_EQ(ToStd(e.GetEntry(4)->ToString()), "4");
    EXPECT_EQ(e.GetCurrentEntry(), e.GetEntry(0));
}

TEST(Enumerations, ErrorsOfWriting) {
    TestMap map(kEnumeration);
    IEnumeration& e = map.Enumeration("E");
    const auto invalid = [](const char* value) {
        return std::string("InvalidArgumentException: Feature 'E' : cannot convert value '") +
               value + "', the value is invalid.";
    };
    const std::string refused =
        "AccessException: Failed to write enumeration value. Enum entry is not writable";
    for (const bool verify : {true, false}) {
        EXPECT_EQ(ErrorOf([&] { e.FromString("B", verify); }), invalid("B"));
        EXPECT_EQ(ErrorOf([&] { e.SetIntValue(7, verify); }), invalid("7"));
    }
    EXPECT_EQ(ErrorOf([&] { e.FromString("Gone"); }), refused);
    EXPECT_EQ(ErrorOf([&] { e.SetIntValue(3); }), refused);
    EXPECT_EQ(map.port.trace, "");
    e.FromString("Gone", false);
    e = "Bee";
    EXPECT_EQ(map.port.trace, "W0=2 W0=1 ");
}

TEST(Enumerations, ErrorsOfReading) {
    TestMap map(kEnumeration);
    IEnumeration& e = map.Enumeration("E");
    map.Set("R", "7");
    EXPECT_EQ(e.GetIntValue(), 7);
    EXPECT_THAT(ErrorOf([&] { e.GetIntValue(true); }), HasSubstr("OutOfRangeException"));
    EXPECT_THAT(ErrorOf([&] { *e; }), HasSubstr("InvalidArgumentException"));
    EXPECT_THAT(ErrorOf([&] { map.Get("E"); }), HasSubstr("InvalidArgumentException"));
    EXPECT_EQ(e.GetCurrentEntry(), nullptr);
    map.Set("R", "2");
    EXPECT_EQ(map.Get("E"), "Gone");
    EXPECT_EQ(e.GetIntValue(), 2);
    EXPECT_THAT(ErrorOf([&] { e.ToString(true); }), HasSubstr("AccessException"));
    EXPECT_THAT(ErrorOf([&] { e.GetIntValue(true); }), HasSubstr("AccessException"));
}

TEST(Booleans, KnowTwoValuesOnly) {
    TestMap map(
        kPort + IntReg("R", 0) +
        Named("Boolean", "B", "<pValue>R</pValue><OnValue>5</OnValue><OffValue>3</OffValue>"));
    IBoolean& flag = map.As<IBoolean>("B");
    flag = true;
    flag.SetValue(false);
    EXPECT_EQ(map.port.TakeTrace(), "W0=5 W0=3 ");
    EXPECT_FALSE(flag());
    map.Set("R", "9");
    const std::string neither =
        "LogicalErrorException: Value '9' is neither true (5) nor false (3)";
    EXPECT_EQ(ErrorOf([&] { flag.GetValue(); }), neither);
    EXPECT_EQ(ErrorOf([&] { map.Get("B"); }), neither);
    map.Set("B", "true");
    EXPECT_EQ(map.Get("B"), "1");
}

TEST(Commands, RunUntilTheDeviceSaysOtherwise) {
    const auto command = [](const char* name, const char* target) {
        return Named("Command", name,
                     Element("pValue", target) + "<pCommandValue>Seven</pCommandValue>");
    };
    TestMap map(kPort + command("C", "R") + command("Blind", "W") + command("Stuck", "Fixed") +
                Literal("Now", "0", "<CommandValue>1</CommandValue>", "Command") +
                Literal("Seven", "7") + IntReg("R", 0) +
                Named("IntReg", "W", RegisterAt(4, 4, "WO") + kLittle) +
                Named("IntReg", "Fixed", RegisterAt(8, 4, "RO") + kLittle));
    ICommand& polled = map.As<ICommand>("C");
    EXPECT_TRUE(polled.IsDone());
    EXPECT_EQ(map.port.TakeTrace(), "");
    polled.Execute();
    EXPECT_EQ(map.Get("C"), "1") << "the text asks the device, too";
    EXPECT_FALSE(polled.IsDone());
    EXPECT_FALSE(polled.IsDone());
    EXPECT_EQ(map.port.TakeTrace(), "W0=7 R0 R0 R0 ");
    map.port.Fill(0, {0});
    EXPECT_TRUE(polled.IsDone());
    EXPECT_EQ(map.Get("C"), "0");
    EXPECT_TRUE(polled.IsDone());
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");

    ICommand& blind = map.As<ICommand>("Blind");
    blind();
    EXPECT_TRUE(blind.IsDone());
    EXPECT_EQ(map.port.TakeTrace(), "W4=7 ");
    EXPECT_EQ(ErrorOf([&] { map.Get("Blind"); }), "AccessException: Node is not readable");
    EXPECT_EQ(map.Mode("Stuck"), RO);
    EXPECT_THAT(ErrorOf([&] { map.As<ICommand>("Stuck").Execute(false); }),
                HasSubstr("AccessException"));
    map.As<ICommand>("Now").Execute();
    EXPECT_TRUE(map.As<ICommand>("Now").IsDone());
    EXPECT_EQ(ErrorOf([&] { map.Set("C", "0"); }),
              "InvalidArgumentException: '0' does not convert to TRUE");
    map.Set("C", "true");
    EXPECT_EQ(map.port.TakeTrace(), "W0=7 ");
}

TEST(ErrorNodes, CountForVerifiedAccess) {
    TestMap map(
        kPort + Named("Integer", "I", "<pError>Status</pError><pValue>R</pValue>") +
        IntReg("R", 0) +
        Named("Enumeration", "Status",
              Entry("Fine", 0) + Entry("Bad", 1, "<ToolTip>tt bad</ToolTip>") +
                  "<pValue>Code</pValue>") +
        Named("IntReg", "Code", RegisterAt(4, 4) + "<Cachable>NoCache</Cachable>" + kLittle));
    map.Set("I", "1");
    map.port.Fill(4, {1});
    EXPECT_EQ(ErrorOf([&] { map.Set("I", "2"); }), "RuntimeException: Bad : tt bad");
    EXPECT_EQ(map.port.Content(0, 1), Bytes{2});
    EXPECT_EQ(ErrorOf([&] { map.Integer("I").GetValue(true); }), "RuntimeException: Bad : tt bad");
    map.Integer("I").SetValue(3, false);
    EXPECT_EQ(map.Get("I"), "3");
}

TEST(Selectors, KnowTheirDirectNeighbours) {
    const auto selecting = [](const char* target) { return Element("pSelected", target); };
    TestMap map(Literal("A", "1", selecting("B") + selecting("C")) +
                Literal("B", "1", selecting("C")) + Literal("C", "1") +
                Named("Category", "Root", "<pFeature>A</pFeature>"));
    const auto names = [](const FeatureList_t& list) {
        std::string text;
        for (size_t i = 0; i < list.size(); ++i)
            text += ToStd(list[i]->GetNode()->GetName());
        return text;
    };
    std::string all;
    for (const char* name : {"A", "B", "C", "Root"}) {
        const ISelector& selector = map.As<ISelector>(name);
        FeatureList_t selected, selectors;
        selector.GetSelectedFeatures(selected);
        selector.GetSelectingFeatures(selectors);
        all += names(selectors) + (selector.IsSelector() ? ">" : "-") + names(selected) + " ";
    }
    EXPECT_EQ(all, ">BC A>C AB- - ");
}

TEST(Presentation, IsPassedUp) {
    TestMap map(Literal("Low", "300", "<Unit>us</Unit><Representation>HexNumber</Representation>") +
                Over("High", "Low") +
                Named("Integer", "Own",
                      "<pValue>Low</pValue><Unit>s</Unit>"
                      "<Representation>Linear</Representation>") +
                Literal("None", "1"));
    EXPECT_EQ(map.Get("High"), "0x12c");
    EXPECT_EQ(ToStd(map.Integer("High").GetUnit()), "us");
    EXPECT_EQ(map.Get("Own"), "300");
    EXPECT_EQ(ToStd(map.Integer("Own").GetUnit()), "s");
    EXPECT_EQ(map.Integer("None").GetRepresentation(), PureNumber);
}

std::string Shown(const char* representation) {
    return Element("Representation", representation);
}
std::string Digits(const char* notation, int precision) {
    return Element("DisplayNotation", notation) + Element("DisplayPrecision", precision);
}

// Each text written and the text read afterwards; "!" for text that does not convert.
TEST(Texts, OfNumbers) {
    const struct {
        const char* kind;
        std::string more;
        std::vector<std::string> texts;
    } cases[] = {
        {"Integer",
         "",
         {"300",
          "300",
          " -7x",
          "-7",
          "1.5",
          "1",
          "010",
          "10",
          "0x1F",
          "31",
          "+4",
          "4",
          "99999999999999999999",
          "9223372036854775807",
          "-99999999999999999999",
          "-9223372036854775808",
          "abc",
          "!",
          "",
          "!"}},
        {"Integer",
         Shown("HexNumber"),
         {"300", "0x12c", "0", "0", "-1", "0xffffffffffffffff", "0xAB", "0xab"}},
        {"Integer", Shown("IPV4Address"), {"192.168.1.100", "192.168.1.100", "5", "!"}},
        {"Integer", Shown("MACAddress"), {"00:11:22:AA:bb:cc", "00:11:22:aa:bb:cc", "5", "!"}},
        {"Integer", Shown("Boolean"), {"true", "true", "false", "false", "1", "!"}},
        {"Float", "", {"1234567.8", "1.23457e+06", "2e3", "2000", "0.1", "0.1", " -2.5V",
                       "-2.5",      "1,5",         "1",   "-0",   "-0",  "abc", "!",
                       "inf",       "!",           "nan", "!",    "",    "!"}},
        {"Float", Digits("Fixed", 6), {"1234.567891", "1234.567891", "1", "1.000000"}},
        {"Float", Digits("Scientific", 3), {"1234.5678", "1.235e+03"}},
        {"Boolean", "", {"1", "1", "false", "0", "true", "1", "0", "0", "True", "!"}},
        {"String", "", {"any text", "any text", "", ""}},
    };
    const std::map<std::string, std::string> types = {
        {"Integer", "int."}, {"Float", "double."}, {"Boolean", "boolean"}};
    for (const auto& c : cases) {
        TestMap map(Literal("N", "0", c.more, c.kind));
        for (size_t i = 0; i < c.texts.size(); i += 2) {
            const std::string error = ErrorOf([&] { map.Set("N", c.texts[i]); });
            const bool bad = c.texts[i + 1] == "!";
            EXPECT_EQ(error, bad ? "InvalidArgumentException: Node 'N' : cannot convert string '" +
                                       c.texts[i] + "' to " + types.at(c.kind)
                                 : "nothing");
            EXPECT_TRUE(bad || map.Get("N") == c.texts[i + 1]) << c.kind << c.more << map.Get("N");
        }
    }
}

TEST(Texts, OfFloatsStayWithinTheirLimits) {
    TestMap map(
        Literal("F", "0.123456789", "<Max>0.123456789</Max>", "Float") +
        Named("Category", "Root", "<DisplayName>All of it</DisplayName><pFeature>F</pFeature>"));
    EXPECT_EQ(map.Get("F"), "0.123456") << "0.123457 could not be written back";
    map.Set("F", map.Get("F"));
    EXPECT_EQ(map.Get("Root"), "All of it");
    EXPECT_THAT(ErrorOf([&] { map.Set("Root", "x"); }), HasSubstr("AccessException"));
}

}  // namespace
