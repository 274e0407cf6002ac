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
    named("Enumeration", "E",
          entry("A", 0) + entry("B", 1, "", "<Symbolic>Bee</Symbolic>") +
              entry("Gone", 2, "<pIsAvailable>Zero</pIsAvailable>") +
              entry("Never", 3, "<pIsImplemented>Zero</pIsImplemented>") +
              entry("Half", 4, "", "<NumericValue>0.5</NumericValue>") + "<pValue>R</pValue>") +
    intReg("R", 0) + literal("Zero", "0");

TEST(Enumerations, EntriesAndTheirSymbolics) {
    TestMap map(kEnumeration);
    IEnumeration& e = map.enumeration("E");
    StringList_t symbolics;
    e.GetSymbolics(symbolics);
    std::string text;
    for (size_t i = 0; i < symbolics.size(); ++i)
        text += toStd(symbolics[i]) + " ";
    EXPECT_EQ(text, "A Bee Half ");
    NodeList_t entries;
    e.GetEntries(entries);
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_EQ(toStd(entries[3]->GetName()), "EnumEntry_E_Never");
    EXPECT_EQ(e.GetEntryByName("B"), nullptr);
    EXPECT_EQ(e.GetEntryByName("Bee"), e.GetEntry(1));
    EXPECT_NE(e.GetEntryByName("Never"), nullptr);
    EXPECT_EQ(e.GetEntry(9), nullptr);
    EXPECT_EQ(e.GetEntry(4)->GetNumericValue(), 0.5);
    EXPECT_EQ(e.GetEntry(1)->GetNumericValue(), 1);
    EXPECT_EQ(e.GetEntry(1)->GetAccessMode(), RO);
    EXPECT_EQ(toStd(e.GetEntry(1)->GetSymbolic()), "Bee");
    EXPECT_EQ(toStd(e.GetEntry(4)->ToString()), "4");
    EXPECT_EQ(e.GetCurrentEntry(), e.GetEntry(0));
}

TEST(Enumerations, ErrorsOfWriting) {
    TestMap map(kEnumeration);
    IEnumeration& e = map.enumeration("E");
    const auto invalid = [](const char* value) {
        return std::string("InvalidArgumentException: Feature 'E' : cannot convert value '") +
               value + "', the value is invalid.";
    };
    const std::string refused =
        "AccessException: Failed to write enumeration value. Enum entry is not writable";
    for (const bool verify : {true, false}) {
        EXPECT_EQ(errorOf([&] { e.FromString("B", verify); }), invalid("B"));
        EXPECT_EQ(errorOf([&] { e.SetIntValue(7, verify); }), invalid("7"));
    }
    EXPECT_EQ(errorOf([&] { e.FromString("Gone"); }), refused);
    EXPECT_EQ(errorOf([&] { e.SetIntValue(3); }), refused);
    EXPECT_EQ(map.port.trace, "");
    e.FromString("Gone", false);
    e = "Bee";
    EXPECT_EQ(map.port.trace, "W0=2 W0=1 ");
}

TEST(Enumerations, ErrorsOfReading) {
    TestMap map(kEnumeration);
    IEnumeration& e = map.enumeration("E");
    map.set("R", "7");
    EXPECT_EQ(e.GetIntValue(), 7);
    EXPECT_THAT(errorOf([&] { e.GetIntValue(true); }), HasSubstr("OutOfRangeException"));
    EXPECT_THAT(errorOf([&] { *e; }), HasSubstr("InvalidArgumentException"));
    EXPECT_THAT(errorOf([&] { map.get("E"); }), HasSubstr("InvalidArgumentException"));
    EXPECT_EQ(e.GetCurrentEntry(), nullptr);
    map.set("R", "2");
    EXPECT_EQ(map.get("E"), "Gone");
    EXPECT_EQ(e.GetIntValue(), 2);
    EXPECT_THAT(errorOf([&] { e.ToString(true); }), HasSubstr("AccessException"));
    EXPECT_THAT(errorOf([&] { e.GetIntValue(true); }), HasSubstr("AccessException"));
}

TEST(Booleans, KnowTwoValuesOnly) {
    TestMap map(
        kPort + intReg("R", 0) +
        named("Boolean", "B", "<pValue>R</pValue><OnValue>5</OnValue><OffValue>3</OffValue>"));
    IBoolean& flag = map.as<IBoolean>("B");
    flag = true;
    flag.SetValue(false);
    EXPECT_EQ(map.port.takeTrace(), "W0=5 W0=3 ");
    EXPECT_FALSE(flag());
    map.set("R", "9");
    const std::string neither =
        "LogicalErrorException: Value '9' is neither true (5) nor false (3)";
    EXPECT_EQ(errorOf([&] { flag.GetValue(); }), neither);
    EXPECT_EQ(errorOf([&] { map.get("B"); }), neither);
    map.set("B", "true");
    EXPECT_EQ(map.get("B"), "1");
}

TEST(Commands, RunUntilTheDeviceSaysOtherwise) {
    const auto command = [](const char* name, const char* target) {
        return named("Command", name,
                     element("pValue", target) + "<pCommandValue>Seven</pCommandValue>");
    };
    TestMap map(kPort + command("C", "R") + command("Blind", "W") + command("Stuck", "Fixed") +
                literal("Now", "0", "<CommandValue>1</CommandValue>", "Command") +
                literal("Seven", "7") + intReg("R", 0) +
                named("IntReg", "W", registerAt(4, 4, "WO") + kLittle) +
                named("IntReg", "Fixed", registerAt(8, 4, "RO") + kLittle));
    ICommand& command_ = map.as<ICommand>("C");
    EXPECT_TRUE(command_.IsDone());
    EXPECT_EQ(map.port.takeTrace(), "");
    command_.Execute();
    EXPECT_EQ(map.get("C"), "1") << "the text asks the device, too";
    EXPECT_FALSE(command_.IsDone());
    EXPECT_FALSE(command_.IsDone());
    EXPECT_EQ(map.port.takeTrace(), "W0=7 R0 R0 R0 ");
    map.port.fill(0, {0});
    EXPECT_TRUE(command_.IsDone());
    EXPECT_EQ(map.get("C"), "0");
    EXPECT_TRUE(command_.IsDone());
    EXPECT_EQ(map.port.takeTrace(), "R0 ");

    ICommand& blind = map.as<ICommand>("Blind");
    blind();
    EXPECT_TRUE(blind.IsDone());
    EXPECT_EQ(map.port.takeTrace(), "W4=7 ");
    EXPECT_EQ(errorOf([&] { map.get("Blind"); }), "AccessException: Node is not readable");
    EXPECT_EQ(map.mode("Stuck"), RO);
    EXPECT_THAT(errorOf([&] { map.as<ICommand>("Stuck").Execute(false); }),
                HasSubstr("AccessException"));
    map.as<ICommand>("Now").Execute();
    EXPECT_TRUE(map.as<ICommand>("Now").IsDone());
    EXPECT_EQ(errorOf([&] { map.set("C", "0"); }),
              "InvalidArgumentException: '0' does not convert to TRUE");
    map.set("C", "true");
    EXPECT_EQ(map.port.takeTrace(), "W0=7 ");
}

TEST(ErrorNodes, CountForVerifiedAccess) {
    TestMap map(
        kPort + named("Integer", "I", "<pError>Status</pError><pValue>R</pValue>") +
        intReg("R", 0) +
        named("Enumeration", "Status",
              entry("Fine", 0) + entry("Bad", 1, "<ToolTip>tt bad</ToolTip>") +
                  "<pValue>Code</pValue>") +
        named("IntReg", "Code", registerAt(4, 4) + "<Cachable>NoCache</Cachable>" + kLittle));
    map.set("I", "1");
    map.port.fill(4, {1});
    EXPECT_EQ(errorOf([&] { map.set("I", "2"); }), "RuntimeException: Bad : tt bad");
    EXPECT_EQ(map.port.content(0, 1), Bytes{2});
    EXPECT_EQ(errorOf([&] { map.integer("I").GetValue(true); }), "RuntimeException: Bad : tt bad");
    map.integer("I").SetValue(3, false);
    EXPECT_EQ(map.get("I"), "3");
}

TEST(Selectors, KnowTheirDirectNeighbours) {
    const auto selecting = [](const char* target) { return element("pSelected", target); };
    TestMap map(literal("A", "1", selecting("B") + selecting("C")) +
                literal("B", "1", selecting("C")) + literal("C", "1") +
                named("Category", "Root", "<pFeature>A</pFeature>"));
    const auto names = [](const FeatureList_t& list) {
        std::string text;
        for (size_t i = 0; i < list.size(); ++i)
            text += toStd(list[i]->GetNode()->GetName());
        return text;
    };
    std::string all;
    for (const char* name : {"A", "B", "C", "Root"}) {
        const ISelector& selector = map.as<ISelector>(name);
        FeatureList_t selected, selecting_;
        selector.GetSelectedFeatures(selected);
        selector.GetSelectingFeatures(selecting_);
        all += names(selecting_) + (selector.IsSelector() ? ">" : "-") + names(selected) + " ";
    }
    EXPECT_EQ(all, ">BC A>C AB- - ");
}

TEST(Presentation, IsPassedUp) {
    TestMap map(literal("Low", "300", "<Unit>us</Unit><Representation>HexNumber</Representation>") +
                over("High", "Low") +
                named("Integer", "Own",
                      "<pValue>Low</pValue><Unit>s</Unit>"
                      "<Representation>Linear</Representation>") +
                literal("None", "1"));
    EXPECT_EQ(map.get("High"), "0x12c");
    EXPECT_EQ(toStd(map.integer("High").GetUnit()), "us");
    EXPECT_EQ(map.get("Own"), "300");
    EXPECT_EQ(toStd(map.integer("Own").GetUnit()), "s");
    EXPECT_EQ(map.integer("None").GetRepresentation(), PureNumber);
}

std::string shown(const char* representation) {
    return element("Representation", representation);
}
std::string digits(const char* notation, int precision) {
    return element("DisplayNotation", notation) + element("DisplayPrecision", precision);
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
         shown("HexNumber"),
         {"300", "0x12c", "0", "0", "-1", "0xffffffffffffffff", "0xAB", "0xab"}},
        {"Integer", shown("IPV4Address"), {"192.168.1.100", "192.168.1.100", "5", "!"}},
        {"Integer", shown("MACAddress"), {"00:11:22:AA:bb:cc", "00:11:22:aa:bb:cc", "5", "!"}},
        {"Integer", shown("Boolean"), {"true", "true", "false", "false", "1", "!"}},
        {"Float", "", {"1234567.8", "1.23457e+06", "2e3", "2000", "0.1", "0.1", " -2.5V",
                       "-2.5",      "1,5",         "1",   "-0",   "-0",  "abc", "!",
                       "inf",       "!",           "nan", "!",    "",    "!"}},
        {"Float", digits("Fixed", 6), {"1234.567891", "1234.567891", "1", "1.000000"}},
        {"Float", digits("Scientific", 3), {"1234.5678", "1.235e+03"}},
        {"Boolean", "", {"1", "1", "false", "0", "true", "1", "0", "0", "True", "!"}},
        {"String", "", {"any text", "any text", "", ""}},
    };
    const std::map<std::string, std::string> types = {
        {"Integer", "int."}, {"Float", "double."}, {"Boolean", "boolean"}};
    for (const auto& c : cases) {
        TestMap map(literal("N", "0", c.more, c.kind));
        for (size_t i = 0; i < c.texts.size(); i += 2) {
            const std::string error = errorOf([&] { map.set("N", c.texts[i]); });
            const bool bad = c.texts[i + 1] == "!";
            EXPECT_EQ(error, bad ? "InvalidArgumentException: Node 'N' : cannot convert string '" +
                                       c.texts[i] + "' to " + types.at(c.kind)
                                 : "nothing");
            EXPECT_TRUE(bad || map.get("N") == c.texts[i + 1]) << c.kind << c.more << map.get("N");
        }
    }
}

TEST(Texts, OfFloatsStayWithinTheirLimits) {
    TestMap map(
        literal("F", "0.123456789", "<Max>0.123456789</Max>", "Float") +
        named("Category", "Root", "<DisplayName>All of it</DisplayName><pFeature>F</pFeature>"));
    EXPECT_EQ(map.get("F"), "0.123456") << "0.123457 could not be written back";
    map.set("F", map.get("F"));
    EXPECT_EQ(map.get("Root"), "All of it");
    EXPECT_THAT(errorOf([&] { map.set("Root", "x"); }), HasSubstr("AccessException"));
}

}  // namespace
