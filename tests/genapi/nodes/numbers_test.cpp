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

std::string MinMaxInc(const char* min, const char* max, const char* inc) {
    return Element("Min", min) + Element("Max", max) + Element("Inc", inc);
}
// Variables that stand for one node.
std::string Variables(const std::string& node, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += Named("pVariable", name, node);
    return text;
}
std::string ByteReg(const std::string& name, int address) {
    return Named("IntReg", name, RegisterAt(address, 1) + kLittle);
}

TEST(IndexedValues, AreReadWrittenAndLimitedByTheOnePicked) {
    const std::string cases =
        "<pIndex>Index</pIndex><ValueIndexed Index='1'>11</ValueIndexed>"
        "<pValueIndexed Index='-2'>Reg</pValueIndexed><pValueIndexed Index='3'>Low</pValueIndexed>";
    TestMap map(kPort + Literal("Index", "1") +
                Named("Integer", "I", cases + "<ValueDefault>99</ValueDefault>") +
                Named("Integer", "J", cases + "<pValueDefault>Low</pValueDefault>") +
                Named("Float", "F",
                      "<pIndex>Index</pIndex><ValueIndexed Index='1'>1.5</ValueIndexed>"
                      "<pValueIndexed Index='3'>Low</pValueIndexed>"
                      "<ValueDefault>-0.5</ValueDefault>") +
                ByteReg("Reg", 0) + Literal("Low", "3", MinMaxInc("1", "7", "2")));
    map.port.Fill(0, {22});
    const struct {
        const char* index;
        const char* values;
        const char* limits;
    } picked[] = {{"1", "11 11 1.5", kFull},
                  {"-2", "22 22 -0.5", "0..255/1"},
                  {"3", "3 3 3", "1..7/2"},
                  {"4", "99 3 -0.5", kFull}};
    for (const auto& p : picked) {
        map.Set("Index", p.index);
        EXPECT_EQ(map.Get("I") + " " + map.Get("J") + " " + map.Get("F"), p.values);
        EXPECT_EQ(map.Limits("I"), p.limits) << p.index;
    }
    map.Set("I", "100");  // the default of I alone
    map.Set("J", "5");
    map.Set("Index", "1");
    map.Set("I", "12");
    map.Set("Index", "-2");
    map.Set("I", "23");
    EXPECT_EQ(map.port.Content(0, 1), Bytes{23});
    std::string read;
    for (const char* index : {"1", "-2", "3", "4"}) {
        map.Set("Index", index);
        read += map.Get("I") + "," + map.Get("J") + " ";
    }
    EXPECT_EQ(read, "12,11 23,23 5,5 100,5 ");
}

TEST(Values, CopiesAreWrittenToo) {
    TestMap map(kPort + Over("I", "A", "<pValueCopy>B</pValueCopy><pValueCopy>C</pValueCopy>") +
                IntReg("A", 0) + ByteReg("B", 4) + Literal("C", "0", Element("Min", -3)));
    map.Set("I", "7");
    EXPECT_EQ(map.port.TakeTrace(), "W0=7 W4=7 ");
    EXPECT_EQ(map.Get("C"), "7");
    map.Set("B", "1");
    EXPECT_EQ(map.Get("I"), "7");
    EXPECT_EQ(map.Limits("I"), "0..255/1") << "what every copy can hold";
}

const std::string kLimitNodes =
    kPort + ByteReg("Byte", 0) + Literal("Five", "5") + Literal("Ten", "10") +
    Literal("Grid", "9", MinMaxInc("5", "100", "4")) +
    Literal("Real", "1", Element("Min", "-2.5") + Element("Max", "9.9"), "Float") +
    Over("Flag", "Byte", "", "Boolean") +
    Named("Enumeration", "List",
          Named("EnumEntry", "One", Element("Value", 1)) + Element("pValue", "Byte"));

TEST(Limits, OfIntegersAndFloats) {
    const struct {
        std::string node;
        const char* limits;
    } cases[] = {
        {Literal("N", "1"), kFull},
        {Over("N", "Byte"), "0..255/1"},
        {Over("N", "Byte", MinMaxInc("-5", "300", "3")), "-5..300/3"},
        {Over("N", "Byte", "<pMin>Five</pMin><pMax>Ten</pMax><pInc>Five</pInc>"), "5..10/5"},
        {Over("N", "Grid"), "5..100/4"},
        {Over("N", "Flag"), kFull},
        {Over("N", "List"), kFull},
        {Over("N", "Real"), "-3..10/1"},
        {Named("IntSwissKnife", "N", "<Formula>3</Formula>"), kFull},
        {Literal("N", "1.5", "", "Float"), kFullFloat},
        {Literal("N", "1.5", MinMaxInc("-1", "2", "0.25"), "Float"), "-1..2/0.250000"},
        {Over("N", "Real", "", "Float"), "-2.5..9.9/none"},
        {Over("N", "Grid", "", "Float"), "5..100/4.000000"},
        {Over("N", "Byte", Element("Max", "0.5"), "Float"), "0..0.5/1.000000"},
        {Over("N", "Real", Element("pMin", "Five"), "Float"), "5..9.9/none"},
        {Named("SwissKnife", "N", "<Formula>3</Formula>"), kFullFloat},
    };
    for (const auto& c : cases)
        EXPECT_EQ(TestMap(kLimitNodes + c.node).Limits("N"), c.limits) << c.node;
    TestMap map(kLimitNodes);
    EXPECT_EQ(map.Integer("Five").GetIncMode(), fixedIncrement);
    EXPECT_EQ(map.Integer("Five").GetListOfValidValues().size(), 0u);
    EXPECT_EQ(map.Floating("Real").GetIncMode(), noIncrement);
    EXPECT_EQ(ErrorOf([&] { map.Floating("Real").GetInc(); }),
              "RuntimeException: node does not have an increment.");
}

TEST(Limits, TextsAndTheNodeThatRefuses) {
    TestMap map(kLimitNodes + Literal("I", "4", MinMaxInc("2", "10", "2")) +
                Over("Wide", "Byte", Element("Max", 300)) +
                Literal("F", "5", Element("Min", 2) + Element("Max", 10), "Float"));
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
        EXPECT_EQ(ErrorOf([&] { map.Set(c.node, c.value); }),
                  std::string("OutOfRangeException: ") + c.text);
    EXPECT_EQ(map.port.TakeTrace(), "");
    try {
        map.Integer("Wide").SetValue(300);
        FAIL();
    } catch (const GENICAM_NAMESPACE::OutOfRangeException& e) {
        EXPECT_THAT(e.what(), HasSubstr("thrown in node 'Byte' while calling 'Wide.SetValue()'"));
    }
    // unverified, the value is cut to the field, or stored as it is
    map.Integer("Wide").SetValue(300, false);
    EXPECT_EQ(map.port.Content(0, 2), (Bytes{44, 0}));
    map.Integer("I").SetValue(12, false);
    EXPECT_EQ(map.Integer("I").GetValue(), 12);
    EXPECT_THAT(ErrorOf([&] { map.Integer("I").GetValue(true); }), HasSubstr("OutOfRange"));
    map.Floating("F").SetValue(11, false);
    EXPECT_EQ(map.Floating("F").GetValue(), 11);
    EXPECT_THAT(ErrorOf([&] { map.Floating("F").GetValue(true); }), HasSubstr("OutOfRange"));
}

TEST(Limits, ImposedOnesNarrowAndReachTheNodesAbove) {
    TestMap map(kLimitNodes + Over("I", "Byte") + Over("Upper", "I") +
                Over("F", "Real", "", "Float"));
    map.Integer("I").ImposeMin(10);
    map.Integer("I").ImposeMax(20);
    EXPECT_EQ(map.Limits("Upper"), "10..20/1");
    EXPECT_THAT(ErrorOf([&] { map.Set("Upper", "21"); }), HasSubstr("Max = 20."));
    map.Set("Byte", "21");
    map.Integer("I").ImposeMin(-10);
    map.Integer("I").ImposeMax(1000);
    EXPECT_EQ(map.Limits("Upper"), "0..255/1");
    map.Floating("Real").ImposeMax(1.5);
    map.Floating("Real").ImposeMin(-100);
    EXPECT_EQ(map.Limits("F"), "-2.5..1.5/none");
}

TEST(Limits, ListsOfValidValues) {
    TestMap map(Literal("I", "2", Element("Min", 2) + "<ValidValueSet>1;2;4;8</ValidValueSet>"));
    IInteger& number = map.Integer("I");
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
    TestMap map(kLimitNodes + Literal("Plain", "0") + Over("OfPlain", "Plain", "", "Float") +
                Over("OfGrid", "Grid", "", "Float") + Over("I", "Real") +
                Over("OfList", "List", "", "Float") + Over("OfFlag", "Flag"));
    const struct {
        const char* node;
        double written;
        int64_t stored;
    } cases[] = {{"Plain", 2.5, 3},  {"Plain", -2.5, -3}, {"Plain", 2.4999, 2}, {"Plain", -0.4, 0},
                 {"Grid", 6.9, 5},   {"Grid", 7.0, 5},    {"Grid", 7.1, 5},     {"Grid", 8, 9},
                 {"Grid", 49.9, 49}, {"Grid", 50, 49},    {"Grid", 97, 97}};
    for (const auto& c : cases) {
        map.Floating(std::string("Of") + c.node).SetValue(c.written);
        EXPECT_EQ(map.Integer(c.node).GetValue(), c.stored) << c.written;
    }
    for (const double value : {4.0, 101.0})
        EXPECT_THAT(ErrorOf([&] { map.Floating("OfGrid").SetValue(value); }),
                    HasSubstr("OutOfRangeException"));
    for (const auto& [real, whole] : {std::pair{2.5, 3}, {-2.5, -3}, {2.4999, 2}}) {
        map.Floating("Real").SetValue(real);
        EXPECT_EQ(map.Integer("I").GetValue(), whole);
    }
    map.Integer("I").SetValue(-2);
    EXPECT_EQ(map.Floating("Real").GetValue(), -2.0);
    map.Set("OfList", "1");
    EXPECT_EQ(map.Get("List") + map.Get("OfFlag") + map.Get("Flag"), "One11");
    map.Set("OfFlag", "0");
    EXPECT_EQ(map.port.Content(0, 1), Bytes{0});
}

std::string Converter(const std::string& kind, const std::string& from, const std::string& slope) {
    return Named(kind, "C",
                 "<FormulaTo>FROM</FormulaTo>" + Element("FormulaFrom", from) +
                     Element("pValue", "Below") + (slope.empty() ? "" : Element("Slope", slope)));
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
        const std::string below = Literal("Below", "5", MinMaxInc("5", "50", "5"));
        const std::string shown = c.limits ? c.limits : "";
        EXPECT_EQ(TestMap(below + Converter("IntConverter", c.from, c.slope)).Limits("C"),
                  c.limits ? shown + "/1" : kFull);
        EXPECT_EQ(TestMap(below + Converter("Converter", c.from, c.slope)).Limits("C"),
                  c.limits ? shown + "/none" : kFullFloat);
    }
}

TEST(Converters, ComputeBothWays) {
    TestMap map(kPort + ByteReg("Raw", 0) + Literal("Scale", "2") +
                Named("Converter", "C",
                      Variables("Scale", {"S"}) +
                          "<FormulaTo>(FROM-1)*S</FormulaTo>"
                          "<FormulaFrom>TO/S+1</FormulaFrom><pValue>J</pValue>") +
                Over("J", "Raw", MinMaxInc("0", "100", "5")) +
                Named("IntConverter", "N",
                      "<FormulaTo>255-FROM</FormulaTo><FormulaFrom>255-TO</FormulaFrom>"
                      "<pValue>Raw</pValue>"));
    map.Floating("C").SetValue(11.3);
    EXPECT_EQ(map.port.Content(0, 1), Bytes{20});
    EXPECT_EQ(map.Integer("N").GetValue(), 235);
    map.Set("Scale", "4");
    EXPECT_EQ(map.Floating("C").GetValue(false, true), 6.0);
    map.Set("N", "250");
    EXPECT_EQ(map.Get("Raw"), "5");
    EXPECT_EQ(map.Floating("C").GetValue(), 2.25) << "a change below reaches the converter";
    EXPECT_THAT(ErrorOf([&] { map.Set("N", "256"); }), HasSubstr("Max = 255."));
    EXPECT_EQ(map.Node("C_ConvertTo").GetPrincipalInterfaceType(), intfIFloat);
    EXPECT_EQ(map.Integer("N_ConvertFrom").GetValue(), 255);
    EXPECT_EQ(map.Mode("N_ConvertTo"), RO);
}

const std::string kOperands =
    Literal("I", "6", MinMaxInc("2", "10", "4")) +
    Literal("F", "1.25", MinMaxInc("-1.5", "9.75", "0.25"), "Float") +
    Literal("B", "true", "", "Boolean") +
    Named("Enumeration", "E",
          Named("EnumEntry", "Half", Element("Value", 3) + Element("NumericValue", "1.5")) +
              Named("EnumEntry", "Full", Element("Value", 4)) + Element("Value", 3)) +
    Named("Integer", "Shy", Element("Visibility", "Guru") + Element("Value", 1));

std::string Knife(const std::string& kind, const std::string& before, const std::string& formula) {
    return Named(kind, "K", before + Element("Formula", formula));
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
        {"IntSwissKnife", Variables("I", {"V"}) + names, "Y-X", "18"},
        {"SwissKnife", Variables("F", {"V"}) + names, "Y", "26.5"},
        {"IntSwissKnife", Variables("I", {"V.Min", "V.Max", "V.Inc", "V.Value"}),
         "V.Min*1000+V.Max*100+V.Inc*10+V.Value", "3046"},
        {"SwissKnife", Variables("F", {"A.Min", "A.Max", "A.Inc"}), "A.Min*100+A.Max+A.Inc",
         "-140"},
        {"IntSwissKnife", Variables("F", {"V", "V.Inc"}), "V*10+V.Inc", "10"},
        {"IntSwissKnife", Variables("B", {"V"}), "V+1", "2"},
        {"IntSwissKnife", Variables("E", {"V", "V.Entry.Full"}), "V*10+V.Entry.Full", "34"},
        {"SwissKnife", Variables("E", {"V", "V.Entry.Full"}), "V*10+V.Entry.Full", "19"},
        {"IntSwissKnife", Variables("Shy", {"V.AccessMode", "V.Visibility", "V.CachingMode"}),
         "V.AccessMode*100+V.Visibility*10+V.CachingMode", "421"},
    };
    for (const auto& c : cases) {
        TestMap map(kOperands + Knife(c.kind, c.before, c.formula));
        EXPECT_EQ(map.Get("K"), c.result) << c.kind << " " << c.formula;
        EXPECT_EQ(map.Mode("K"), RO);
        EXPECT_EQ(ErrorOf([&] { map.Set("K", "1"); }), "AccessException: Node is not writable.");
        EXPECT_TRUE(map.NodeMap()->ParseSwissKnifes());
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
        TestMap map(kOperands + Knife(c.kind, "", c.formula));
        EXPECT_EQ(ErrorOf([&] { map.Get("K"); }), c.error);
        gcstring_vector errors;
        EXPECT_EQ(map.NodeMap()->ParseSwissKnifes(&errors), c.unparsed == 0);
        EXPECT_EQ(errors.size(), c.unparsed) << c.formula;
    }
    TestMap map(kOperands + Knife("IntSwissKnife", Variables("I", {"V.Foo"}), "V.Foo"));
    EXPECT_TRUE(map.NodeMap()->ParseSwissKnifes());
    EXPECT_EQ(ErrorOf([&] { map.Get("K"); }), "RuntimeException: Invalid Extension Foo");

    // A fault in an expression is told of the expression, once.
    TestMap parts(kOperands + Named("IntSwissKnife", "K",
                                    "<Expression Name='X'>Y+1</Expression><Formula>X</Formula>"));
    EXPECT_EQ(ErrorOf([&] { parts.Get("K"); }),
              "LogicalErrorException: _K_X : Failed to parse formula 'Y+1'" + message +
                  "'# Y - Unknown function/variable!'");
    gcstring_vector errors;
    EXPECT_FALSE(parts.NodeMap()->ParseSwissKnifes(&errors));
    ASSERT_EQ(errors.size(), 1u);
}

TEST(Formulas, FollowTheirVariables) {
    TestMap map(kPort + Literal("Zero", "0") +
                Knife("SwissKnife", Variables("Raw", {"A"}) + Variables("Gone", {"B"}), "A+B") +
                ByteReg("Raw", 0) +
                Named("Integer", "Gone", "<pIsAvailable>Present</pIsAvailable><Value>2</Value>") +
                Literal("Present", "1") + Named("IntReg", "W", RegisterAt(8, 1, "WO") + kLittle) +
                Named("SwissKnife", "OfW", Variables("W", {"W"}) + "<Formula>W</Formula>"));
    EXPECT_EQ(map.Get("K"), "2");
    map.Set("Raw", "5");
    EXPECT_EQ(map.Get("K"), "7");
    map.Set("Present", "0");
    EXPECT_EQ(map.Mode("K"), NA);
    EXPECT_EQ(ErrorOf([&] { map.Get("K"); }), "AccessException: Node is not readable");
    EXPECT_EQ(map.Mode("OfW"), RO);
}

}  // namespace
