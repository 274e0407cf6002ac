// Values, limits and formulas in the cases that descriptions of cameras meet seldom.
#include <cfloat>
#include <string>

#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

TEST(Limits, AreFinite) {
    TestMap map(
        literal("F", "1", "<Min>-INF</Min><Max>INF</Max>", "Float") +
        named("SwissKnife", "Infinite", "<Formula>-LN(0)</Formula>") +
        literal("G", "1", "<pMax>Infinite</pMax>", "Float") +
        named("Converter", "C",
              "<FormulaTo>0</FormulaTo><FormulaFrom>LN(TO)</FormulaFrom><pValue>Zero</pValue>") +
        literal("Zero", "0", "<Min>0</Min><Max>0</Max>", "Float"));
    EXPECT_EQ(map.floating("F").GetMin(), -DBL_MAX);
    EXPECT_EQ(map.floating("F").GetMax(), DBL_MAX);
    EXPECT_EQ(map.floating("G").GetMax(), DBL_MAX);
    EXPECT_EQ(map.floating("C").GetMin(), -DBL_MAX);
    EXPECT_EQ(errorOf([&] { map.floating("F").SetValue(5e300); }), "nothing");
}

TEST(Limits, AnIncrementIsLargerThanZero) {
    for (const char* inc : {"0", "-2"}) {
        TestMap map(literal("I", "5", "<Min>1</Min><Max>9</Max>" + element("Inc", inc)));
        EXPECT_EQ(map.integer("I").GetInc(), std::stoi(inc));
        EXPECT_EQ(errorOf([&] { map.set("I", "5"); }),
                  "LogicalErrorException: Increment must be larger than 0.");
        EXPECT_EQ(errorOf([&] { map.integer("I").SetValue(4, false); }), "nothing");
    }
}

TEST(Numbers, AFloatIsRoundedToTheGridOnBothSidesOfItsBeginning) {
    TestMap map(literal("I", "5", "<Min>5</Min><Max>49</Max><Inc>4</Inc>") +
                over("F", "I", "<Min>-100</Min><Max>100</Max>", "Float"));
    const struct {
        double written;
        const char* found;  // null: beyond the limits
    } cases[] = {{6.9, "5"}, {7.1, "5"},   {8, "9"},    {4, "5"},
                 {3.6, "5"}, {3, nullptr}, {1, nullptr}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        const std::string error = errorOf([&] { map.floating("F").SetValue(c.written); });
        if (c.found)
            EXPECT_EQ(map.get("I"), c.found);
        else
            EXPECT_THAT(error, testing::StartsWith("OutOfRangeException"));
    }
}

TEST(Registers, ANumberHasALengthOfNumbers) {
    const auto at = [](const char* kind, int length) {
        TestMap map(kPort + named(kind, "R", registerAt(0, length) + kLittle));
        return errorOf([&] { map.as<IRegister>("R").GetLength(); });
    };
    const std::string few = "OutOfRangeException: Value = ";
    EXPECT_EQ(at("IntReg", 0), few + "0 must be equal or greater than Min = 1");
    EXPECT_EQ(at("IntReg", 9), few + "9 must be equal or smaller than Max = 8");
    EXPECT_EQ(at("FloatReg", 2), few + "2 must be equal or greater than Min = 4");
    EXPECT_EQ(at("FloatReg", 9), few + "9 must be equal or smaller than Max = 8");
    EXPECT_EQ(at("IntReg", 1), "nothing");
    EXPECT_EQ(at("FloatReg", 8), "nothing");
}

TEST(Registers, OnlyChunkDataCountFromTheirEnd) {
    TestMap map(kPort + "<Port Name='Chunk'><ChunkID>1</ChunkID></Port>" +
                named("Register", "R", registerAt(-4, 4)) +
                named("Register", "C", registerAt(-4, 4, "RO", "Chunk")));
    EXPECT_EQ(map.as<IRegister>("R").GetAddress(), -4);
    EXPECT_EQ(map.as<IRegister>("C").GetAddress(), -4) << "there is no chunk";
    map.map._Connect(&map.port, "Chunk");
    map.port.fill(0x7FFFFFFFFFFFFFF0, {100});
    EXPECT_EQ(map.as<IRegister>("C").GetAddress(), 96);
}

TEST(Enumerations, OfEqualEntriesTheLastCounts) {
    TestMap map(literal("V", "3") +
                named("Enumeration", "E", entry("A", 3) + entry("B", 3) + "<pValue>V</pValue>") +
                named("Enumeration", "F",
                      entry("A", 1, "", "<Symbolic>S</Symbolic>") +
                          entry("B", 2, "", "<Symbolic>S</Symbolic>") + "<pValue>V</pValue>"));
    EXPECT_EQ(map.get("E"), "B");
    map.set("F", "S");
    EXPECT_EQ(map.get("V"), "2");
    map.integer("V").SetValue(0x100000000 - 5);
    EXPECT_THAT(errorOf([&] { map.get("E"); }), testing::HasSubstr("cannot convert value '-5'"));
}

TEST(Formulas, AnEnumerationWithoutAnEntryHasNoValue) {
    const auto knife = [](const char* kind, const char* name) {
        return named(kind, "K",
                     std::string("<pVariable Name='") + name + "'>E</pVariable><Formula>" + name +
                         "</Formula>");
    };
    const std::string list =
        literal("V", "7") +
        named("Enumeration", "E",
              named("EnumEntry", "A", "<Value>1</Value><NumericValue>2.5</NumericValue>") +
                  "<pValue>V</pValue>");
    for (const char* kind : {"SwissKnife", "IntSwissKnife"}) {
        TestMap map(list + knife(kind, "V"));
        EXPECT_EQ(errorOf([&] { map.get("K"); }),
                  "LogicalErrorException: NULL pointer dereferenced");
        map.set("V", "1");
        EXPECT_EQ(map.get("K"), std::string(kind) == "SwissKnife" ? "2.5" : "1");
    }
    EXPECT_EQ(errorOf([&] { TestMap(list + knife("SwissKnife", "V.Entry.B")).get("K"); }),
              "RuntimeException: Variable 'V.Entry.B' does not point to EnumEntry 'B'");
}

// Version 1.0 of the schema reads formulas in upper case.
TEST(Formulas, OfOldDescriptionsAreReadInUpperCase) {
    CNodeMapRef map;
    map._LoadXMLFromString(
        document(literal("I", "5", "<Max>9</Max>") + literal("J", "7") +
                     named("IntSwissKnife", "K",
                           "<pVariable Name='A'>I</pVariable><pVariable Name='a'>J</pVariable>"
                           "<pVariable Name='A.Max'>I</pVariable>"
                           "<Formula>a*100+A.Max</Formula>") +
                     named("Converter", "C",
                           "<FormulaTo>from*2</FormulaTo><FormulaFrom>to/2</FormulaFrom>"
                           "<pValue>I</pValue>"),
                 0)
            .c_str());
    EXPECT_EQ(CIntegerPtr(map._GetNode("K"))->GetValue(), 509);
    EXPECT_EQ(CFloatPtr(map._GetNode("C"))->GetValue(), 2.5);
}

// What is read past the cache is new in the cache of a formula, but of no other node.
TEST(Caching, AFormulaReadPastItsCacheStaysKnown) {
    TestMap map(
        kPort + intReg("R", 0) + over("I", "R") +
        named("IntSwissKnife", "K", "<pVariable Name='V'>R</pVariable><Formula>V+1</Formula>"));
    EXPECT_EQ(map.integer("K").GetValue(false, true), 1);
    EXPECT_TRUE(map.as<IValue>("K").IsValueCacheValid());
    EXPECT_EQ(map.integer("I").GetValue(false, true), 0);
    EXPECT_FALSE(map.as<IValue>("I").IsValueCacheValid());
}

TEST(Texts, WhatCannotBeWrittenIsAsLongAsItsText) {
    const std::string unavailable = "<pIsAvailable>Zero</pIsAvailable>";
    TestMap map(kPort + literal("Zero", "0") + named("StringReg", "R", registerAt(0, 8, "RO")) +
                named("String", "S", unavailable + "<pValue>R</pValue>") +
                named("StringReg", "Q", unavailable + registerAt(0, 8, "RO")));
    map.port.fill(0, {'a', 'b', 'c'});
    EXPECT_EQ(map.as<IString>("R").GetMaxLength(), 3);
    EXPECT_EQ(map.as<IString>("S").GetMaxLength(), 3);
    EXPECT_EQ(errorOf([&] { map.as<IString>("Q").GetMaxLength(); }),
              "AccessException: Node is not readable.");
}

}  // namespace
