// Numbers: where values and limits come from, and how they pass between integers and floats.
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;
using GENICAM_NAMESPACE::gcstring_vector;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const char* const kFull = "-9223372036854775808..9223372036854775807/1";
const char* const kFullFloat = "-1.79769e+308..1.79769e+308/none";

std::string minMaxInc(const char* min, const char* max, const char* inc) {
    return element("Min", min) + element("Max", max) + element("Inc", inc);
}
// Variables that stand for one node.
std::string variables(const std::string& node, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += named("pVariable", name, node);
    return text;
}
std::string byteReg(const std::string& name, int address) {
    return named("IntReg", name, registerAt(address, 1) + kLittle);
}

TEST(IndexedValues, AreReadWrittenAndLimitedByTheOnePicked) {
    const std::string cases =
        "<pIndex>Index</pIndex><ValueIndexed Index='1'>11</ValueIndexed>"
        "<pValueIndexed Index='-2'>Reg</pValueIndexed><pValueIndexed Index='3'>Low</pValueIndexed>";
    TestMap map(kPort + literal("Index", "1") +
                named("Integer", "I", cases + "<ValueDefault>99</ValueDefault>") +
                named("Integer", "J", cases + "<pValueDefault>Low</pValueDefault>") +
                named("Float", "F",
                      "<pIndex>Index</pIndex><ValueIndexed Index='1'>1.5</ValueIndexed>"
                      "<pValueIndexed Index='3'>Low</pValueIndexed>"
                      "<ValueDefault>-0.5</ValueDefault>") +
                byteReg("Reg", 0) + literal("Low", "3", minMaxInc("1", "7", "2")));
    map.port.fill(0, {22});
    const struct {
        const char* index;
        const char* values;
        const char* limits;
    } picked[] = {{"1", "11 11 1.5", kFull},
                  {"-2", "22 22 -0.5", "0..255/1"},
                  {"3", "3 3 3", "1..7/2"},
                  {"4", "99 3 -0.5", kFull}};
    for (const auto& p : picked) {
        map.set("Index", p.index);
        EXPECT_EQ(map.get("I") + " " + map.get("J") + " " + map.get("F"), p.values);
        EXPECT_EQ(map.limits("I"), p.limits) << p.index;
    }
    map.set("I", "100");  // the default of I alone
    map.set("J", "5");
    map.set("Index", "1");
    map.set("I", "12");
    map.set("Index", "-2");
    map.set("I", "23");
    EXPECT_EQ(map.port.content(0, 1), Bytes{23});
    std::string read;
    for (const char* index : {"1", "-2", "3", "4"}) {
        map.set("Index", index);
        read += map.get("I") + "," + map.get("J") + " ";
    }
    EXPECT_EQ(read, "12,11 23,23 5,5 100,5 ");
}

TEST(Values, CopiesAreWrittenToo) {
    TestMap map(kPort + over("I", "A", "<pValueCopy>B</pValueCopy><pValueCopy>C</pValueCopy>") +
                intReg("A", 0) + byteReg("B", 4) + literal("C", "0", element("Min", -3)));
    map.set("I", "7");
    EXPECT_EQ(map.port.takeTrace(), "W0=7 W4=7 ");
    EXPECT_EQ(map.get("C"), "7");
    map.set("B", "1");
    EXPECT_EQ(map.get("I"), "7");
    EXPECT_EQ(map.limits("I"), "0..255/1") << "what every copy can hold";
}

const std::string kLimitNodes =
    kPort + byteReg("Byte", 0) + literal("Five", "5") + literal("Ten", "10") +
    literal("Grid", "9", minMaxInc("5", "100", "4")) +
    literal("Real", "1", element("Min", "-2.5") + element("Max", "9.9"), "Float") +
    over("Flag", "Byte", "", "Boolean") +
    named("Enumeration", "List",
          named("EnumEntry", "One", element("Value", 1)) + element("pValue", "Byte"));

TEST(Limits, OfIntegersAndFloats) {
    const struct {
        std::string node;
        const char* limits;
    } cases[] = {
        {literal("N", "1"), kFull},
        {over("N", "Byte"), "0..255/1"},
        {over("N", "Byte", minMaxInc("-5", "300", "3")), "-5..300/3"},
        {over("N", "Byte", "<pMin>Five</pMin><pMax>Ten</pMax><pInc>Five</pInc>"), "5..10/5"},
        {over("N", "Grid"), "5..100/4"},
        {over("N", "Flag"), kFull},
        {over("N", "List"), kFull},
        {over("N", "Real"), "-3..10/1"},
        {named("IntSwissKnife", "N", "<Formula>3</Formula>"), kFull},
        {literal("N", "1.5", "", "Float"), kFullFloat},
        {literal("N", "1.5", minMaxInc("-1", "2", "0.25"), "Float"), "-1..2/0.250000"},
        {over("N", "Real", "", "Float"), "-2.5..9.9/none"},
        {over("N", "Grid", "", "Float"), "5..100/4.000000"},
        {over("N", "Byte", element("Max", "0.5"), "Float"), "0..0.5/1.000000"},
        {over("N", "Real", element("pMin", "Five"), "Float"), "5..9.9/none"},
        {named("SwissKnife", "N", "<Formula>3</Formula>"), kFullFloat},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TestMap(kLimitNodes + c.node).limits("N"), c.limits) << c.node;
    TestMap map(kLimitNodes);
    EXPECT_EQ(map.integer("Five").GetIncMode(), fixedIncrement);
    EXPECT_EQ(map.integer("Five").GetListOfValidValues().size(), 0u);
    EXPECT_EQ(map.floating("Real").GetIncMode(), noIncrement);
    EXPECT_EQ(errorOf([&] { map.floating("Real").GetInc(); }),
              "RuntimeException: node does not have an increment.");
}

TEST(Limits, TextsAndTheNodeThatRefuses) {
    TestMap map(kLimitNodes + literal("I", "4", minMaxInc("2", "10", "2")) +
                over("Wide", "Byte", element("Max", 300)) +
                literal("F", "5", element("Min", 2) + element("Max", 10), "Float"));
    const struct {
        const char* node;
        const char* value;
        const char* text;
    } cases[] = {
        {"I", "12", "Value = 12 must be equal or smaller than Max = 10."},
        {"I", "1", "Value = 1 must be equal or greater than Min = 2."},
        {"I", "5",
         "The difference between Value = 5 and Min = 2 must be dividable without rest by Inc = 2."},
        {"F", "11", "Value 11.000000 must be smaller than or equal 10.000000."},
        {"F", "1", "Value 1.000000 must be greater than or equal 2.000000."},
        {"Wide", "300", "Value = 300 must be equal or smaller than Max = 255."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(errorOf([&] { map.set(c.node, c.value); }),
                  std::string("OutOfRangeException: ") + c.text);
    EXPECT_EQ(map.port.takeTrace(), "");
    try {
        map.integer("Wide").SetValue(300);
        FAIL();
    } catch (const GENICAM_NAMESPACE::OutOfRangeException& e) {
        EXPECT_THAT(e.what(), HasSubstr("thrown in node 'Byte' while calling 'Wide.SetValue()'"));
    }
    // unverified, the value is cut to the field, or stored as it is
    map.integer("Wide").SetValue(300, false);
    EXPECT_EQ(map.port.content(0, 2), (Bytes{44, 0}));
    map.integer("I").SetValue(12, false);
    EXPECT_EQ(map.integer("I").GetValue(), 12);
    EXPECT_THAT(errorOf([&] { map.integer("I").GetValue(true); }), HasSubstr("OutOfRange"));
    map.floating("F").SetValue(11, false);
    EXPECT_EQ(map.floating("F").GetValue(), 11);
    EXPECT_THAT(errorOf([&] { map.floating("F").GetValue(true); }), HasSubstr("OutOfRange"));
}

TEST(Limits, ImposedOnesNarrowAndReachTheNodesAbove) {
    TestMap map(kLimitNodes + over("I", "Byte") + over("Upper", "I") +
                over("F", "Real", "", "Float"));
    map.integer("I").ImposeMin(10);
    map.integer("I").ImposeMax(20);
    EXPECT_EQ(map.limits("Upper"), "10..20/1");
    EXPECT_THAT(errorOf([&] { map.set("Upper", "21"); }), HasSubstr("Max = 20."));
    map.set("Byte", "21");
    map.integer("I").ImposeMin(-10);
    map.integer("I").ImposeMax(1000);
    EXPECT_EQ(map.limits("Upper"), "0..255/1");
    map.floating("Real").ImposeMax(1.5);
    map.floating("Real").ImposeMin(-100);
    EXPECT_EQ(map.limits("F"), "-2.5..1.5/none");
}

TEST(Limits, ListsOfValidValues) {
    TestMap map(literal("I", "2", element("Min", 2) + "<ValidValueSet>1;2;4;8</ValidValueSet>"));
    IInteger& number = map.integer("I");
    const auto list = [&](bool bounded) {
        std::vector<int64_t> values;
        const int64_autovector_t found = number.GetListOfValidValues(bounded);
        for (size_t i = 0; i < found.size(); ++i)
            values.push_back(found[i]);
        return values;
    };
    EXPECT_EQ(number.GetIncMode(), listIncrement);
    EXPECT_THAT(list(true), ElementsAre(2, 4, 8));
    EXPECT_THAT(list(false), ElementsAre(1, 2, 4, 8));
}

TEST(Conversions, FloatsOverIntegersAndBack) {
    TestMap map(kLimitNodes + literal("Plain", "0") + over("OfPlain", "Plain", "", "Float") +
                over("OfGrid", "Grid", "", "Float") + over("I", "Real") +
                over("OfList", "List", "", "Float") + over("OfFlag", "Flag"));
    const struct {
        const char* node;
        double written;
        int64_t stored;
    } cases[] = {{"Plain", 2.5, 3},  {"Plain", -2.5, -3}, {"Plain", 2.4999, 2}, {"Plain", -0.4, 0},
                 {"Grid", 6.9, 5},   {"Grid", 7.0, 5},    {"Grid", 7.1, 5},     {"Grid", 8, 9},
                 {"Grid", 49.9, 49}, {"Grid", 50, 49},    {"Grid", 97, 97}};
    for (const auto& c : cases) {
        map.floating(std::string("Of") + c.node).SetValue(c.written);
        EXPECT_EQ(map.integer(c.node).GetValue(), c.stored) << c.written;
    }
    for (const double value : {4.0, 101.0})
        EXPECT_THAT(errorOf([&] { map.floating("OfGrid").SetValue(value); }),
                    HasSubstr("OutOfRangeException"));
    for (const auto& [real, whole] : {std::pair{2.5, 3}, {-2.5, -3}, {2.4999, 2}}) {
        map.floating("Real").SetValue(real);
        EXPECT_EQ(map.integer("I").GetValue(), whole);
    }
    map.integer("I").SetValue(-2);
    EXPECT_EQ(map.floating("Real").GetValue(), -2.0);
    map.set("OfList", "1");
    EXPECT_EQ(map.get("List") + map.get("OfFlag") + map.get("Flag"), "One11");
    map.set("OfFlag", "0");
    EXPECT_EQ(map.port.content(0, 1), Bytes{0});
}

std::string converter(const std::string& kind, const std::string& from, const std::string& slope) {
    return named(kind, "C",
                 "<FormulaTo>FROM</FormulaTo>" + element("FormulaFrom", from) +
                     element("pValue", "Below") + (slope.empty() ? "" : element("Slope", slope)));
}

TEST(Converters, LimitsFollowTheSlope) {
    const struct {
        const char* slope;
        const char* from;
        const char* limits;
    } cases[] = {{"Increasing", "TO-1", "4..49"}, {"Decreasing", "0-TO", "-50..-5"},
                 {"Automatic", "TO-1", "4..49"},  {"Automatic", "0-TO", "-50..-5"},
                 {"", "0-TO", "-50..-5"},         {"Varying", "TO", nullptr}};
    for (const auto& c : cases) {
        const std::string below = literal("Below", "5", minMaxInc("5", "50", "5"));
        const std::string shown = c.limits ? c.limits : "";
        EXPECT_EQ(TestMap(below + converter("IntConverter", c.from, c.slope)).limits("C"),
                  c.limits ? shown + "/1" : kFull);
        EXPECT_EQ(TestMap(below + converter("Converter", c.from, c.slope)).limits("C"),
                  c.limits ? shown + "/none" : kFullFloat);
    }
}

TEST(Converters, ComputeBothWays) {
    TestMap map(kPort + byteReg("Raw", 0) + literal("Scale", "2") +
                named("Converter", "C",
                      variables("Scale", {"S"}) +
                          "<FormulaTo>(FROM-1)*S</FormulaTo>"
                          "<FormulaFrom>TO/S+1</FormulaFrom><pValue>J</pValue>") +
                over("J", "Raw", minMaxInc("0", "100", "5")) +
                named("IntConverter", "N",
                      "<FormulaTo>255-FROM</FormulaTo><FormulaFrom>255-TO</FormulaFrom>"
                      "<pValue>Raw</pValue>"));
    map.floating("C").SetValue(11.3);
    EXPECT_EQ(map.port.content(0, 1), Bytes{20});
    EXPECT_EQ(map.integer("N").GetValue(), 235);
    map.set("Scale", "4");
    EXPECT_EQ(map.floating("C").GetValue(false, true), 6.0);
    map.set("N", "250");
    EXPECT_EQ(map.get("Raw"), "5");
    EXPECT_EQ(map.floating("C").GetValue(), 2.25) << "a change below reaches the converter";
    EXPECT_THAT(errorOf([&] { map.set("N", "256"); }), HasSubstr("Max = 255."));
    EXPECT_EQ(map.node("C_ConvertTo").GetPrincipalInterfaceType(), intfIFloat);
    EXPECT_EQ(map.integer("N_ConvertFrom").GetValue(), 255);
    EXPECT_EQ(map.mode("N_ConvertTo"), RO);
}

const std::string kOperands =
    literal("I", "6", minMaxInc("2", "10", "4")) +
    literal("F", "1.25", minMaxInc("-1.5", "9.75", "0.25"), "Float") +
    literal("B", "true", "", "Boolean") +
    named("Enumeration", "E",
          named("EnumEntry", "Half", element("Value", 3) + element("NumericValue", "1.5")) +
              named("EnumEntry", "Full", element("Value", 4)) + element("Value", 3)) +
    named("Integer", "Shy", element("Visibility", "Guru") + element("Value", 1));

std::string knife(const std::string& kind, const std::string& before, const std::string& formula) {
    return named(kind, "K", before + element("Formula", formula));
}

TEST(Formulas, VariablesConstantsAndExpressions) {
    const std::string names =
        "<Constant Name='C'>12</Constant><Expression Name='X'>V+C</Expression>"
        "<Expression Name='Y'>X*2</Expression>";
    const struct {
        const char* kind;
        std::string before;
        const char* formula;
        const char* result;
    } cases[] = {
        {"IntSwissKnife", variables("I", {"V"}) + names, "Y-X", "18"},
        {"SwissKnife", variables("F", {"V"}) + names, "Y", "26.5"},
        {"IntSwissKnife", variables("I", {"V.Min", "V.Max", "V.Inc", "V.Value"}),
         "V.Min*1000+V.Max*100+V.Inc*10+V.Value", "3046"},
        {"SwissKnife", variables("F", {"A.Min", "A.Max", "A.Inc"}), "A.Min*100+A.Max+A.Inc",
         "-140"},
        {"IntSwissKnife", variables("F", {"V", "V.Inc"}), "V*10+V.Inc", "10"},
        {"IntSwissKnife", variables("B", {"V"}), "V+1", "2"},
        {"IntSwissKnife", variables("E", {"V", "V.Entry.Full"}), "V*10+V.Entry.Full", "34"},
        {"SwissKnife", variables("E", {"V", "V.Entry.Full"}), "V*10+V.Entry.Full", "19"},
        {"IntSwissKnife", variables("Shy", {"V.AccessMode", "V.Visibility", "V.CachingMode"}),
         "V.AccessMode*100+V.Visibility*10+V.CachingMode", "421"},
    };
    for (const auto& c : cases) {
        TestMap map(kOperands + knife(c.kind, c.before, c.formula));
        EXPECT_EQ(map.get("K"), c.result) << c.kind << " " << c.formula;
        EXPECT_EQ(map.mode("K"), RO);
        EXPECT_EQ(errorOf([&] { map.set("K", "1"); }), "AccessException: Node is not writable.");
        EXPECT_TRUE(map.nodeMap()->ParseSwissKnifes());
    }
}

TEST(Formulas, ErrorsNameNodeAndFormula) {
    const std::string failed = "LogicalErrorException: K : Failed to ",
                      message = " : error message is ";
    const struct {
        const char* kind;
        const char* formula;
        std::string error;
        size_t unparsed;
    } cases[] = {
        {"SwissKnife", "1+*", failed + "parse formula '1+*'" + message + "'#Syntax error!'", 1},
        {"SwissKnife", "1+", failed + "evaluate formula '1+'" + message + "'#Extra operation!'", 0},
        {"IntSwissKnife", "(1",
         failed + "parse formula '(1'" + message + "'#Brackets do not match!'", 1},
        {"IntSwissKnife", "1/0",
         failed + "evaluate formula '1/0'" + message + "'#Infinity somewhere!'", 0},
    };
    for (const auto& c : cases) {
        TestMap map(kOperands + knife(c.kind, "", c.formula));
        EXPECT_EQ(errorOf([&] { map.get("K"); }), c.error);
        gcstring_vector errors;
        EXPECT_EQ(map.nodeMap()->ParseSwissKnifes(&errors), c.unparsed == 0);
        EXPECT_EQ(errors.size(), c.unparsed) << c.formula;
    }
    TestMap map(kOperands + knife("IntSwissKnife", variables("I", {"V.Foo"}), "V.Foo"));
    EXPECT_TRUE(map.nodeMap()->ParseSwissKnifes());
    EXPECT_EQ(errorOf([&] { map.get("K"); }), "RuntimeException: Invalid Extension Foo");

    // A fault in an expression is told of the expression, once.
    TestMap parts(kOperands + named("IntSwissKnife", "K",
                                    "<Expression Name='X'>Y+1</Expression><Formula>X</Formula>"));
    EXPECT_EQ(errorOf([&] { parts.get("K"); }),
              "LogicalErrorException: _K_X : Failed to parse formula 'Y+1'" + message +
                  "'# Y - Unknown function/variable!'");
    gcstring_vector errors;
    EXPECT_FALSE(parts.nodeMap()->ParseSwissKnifes(&errors));
    ASSERT_EQ(errors.size(), 1u);
}

TEST(Formulas, FollowTheirVariables) {
    TestMap map(kPort + literal("Zero", "0") +
                knife("SwissKnife", variables("Raw", {"A"}) + variables("Gone", {"B"}), "A+B") +
                byteReg("Raw", 0) +
                named("Integer", "Gone", "<pIsAvailable>Present</pIsAvailable><Value>2</Value>") +
                literal("Present", "1") + named("IntReg", "W", registerAt(8, 1, "WO") + kLittle) +
                named("SwissKnife", "OfW", variables("W", {"W"}) + "<Formula>W</Formula>"));
    EXPECT_EQ(map.get("K"), "2");
    map.set("Raw", "5");
    EXPECT_EQ(map.get("K"), "7");
    map.set("Present", "0");
    EXPECT_EQ(map.mode("K"), NA);
    EXPECT_EQ(errorOf([&] { map.get("K"); }), "AccessException: Node is not readable");
    EXPECT_EQ(map.mode("OfW"), RO);
}

}  // namespace
