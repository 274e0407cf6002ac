// Values, limits and formulas in the cases that descriptions of cameras meet seldom.
#include <cfloat>
#include <string>

#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace test;

namespace {

TEST(Limits, AreFinite) {
    TestMap map(
        Literal("F", "1", "<Min>-INF</Min><Max>INF</Max>", "Float") +
        Named("SwissKnife", "Infinite", "<Formula>-LN(0)</Formula>") +
        Literal("G", "1", "<pMax>Infinite</pMax>", "Float") +
        Named("Converter", "C",
              "<FormulaTo>0</FormulaTo><FormulaFrom>LN(TO)</FormulaFrom><pValue>Zero</pValue>") +
        Literal("Zero", "0", "<Min>0</Min><Max>0</Max>", "Float"));
    EXPECT_EQ(map.Floating("F").GetMin(), -DBL_MAX);
    EXPECT_EQ(map.Floating("F").GetMax(), DBL_MAX);
    EXPECT_EQ(map.Floating("G").GetMax(), DBL_MAX);
    EXPECT_EQ(map.Floating("C").GetMin(), -DBL_MAX);
    EXPECT_EQ(ErrorOf([&] { map.Floating("F").SetValue(5e300); }), "nothing");
}

TEST(Limits, AnIncrementIsLargerThanZero) {
    for (const char* inc : {"0", "-2"}) {
        TestMap map(Literal("I", "5", "<Min>1</Min><Max>9</Max>" + Element("Inc", inc)));
        EXPECT_EQ(map.Integer("I").GetInc(), std::stoi(inc));
        EXPECT_EQ(ErrorOf([&] { map.Set("I", "5"); }),
                  "LogicalErrorException: Increment must be larger than 0.");
        EXPECT_EQ(ErrorOf([&] { map.Integer("I").SetValue(4, false); }), "nothing");
    }
}

TEST(Numbers, AFloatIsRoundedToTheGridOnBothSidesOfItsBeginning) {
    TestMap map(Literal("I", "5", "<Min>5</Min><Max>49</Max><Inc>4</Inc>") +
                Over("F", "I", "<Min>-100</Min><Max>100</Max>", "Float"));
    const struct {
        double written;
        const char* found;  // null: beyond the limits
    } cases[] = {{6.9, "5"}, {7.1, "5"},   {8, "9"},    {4, "5"},
                 {3.6, "5"}, {3, nullptr}, {1, nullptr}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.written);
        const std::string error = ErrorOf([&] { map.Floating("F").SetValue(c.written); });
        if (c.found)
            EXPECT_EQ(map.Get("I"), c.found);
        else
            EXPECT_THAT(error, testing::StartsWith("OutOfRangeException"));
    }
}

TEST(Registers, ANumberHasALengthOfNumbers) {
    const auto at = [](const char* kind, int length) {
        TestMap map(kPort + Named(kind, "R", RegisterAt(0, length) + kLittle));
        return ErrorOf([&] { map.As<IRegister>("R").GetLength(); });
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
                Named("Register", "R", RegisterAt(-4, 4)) +
                Named("Register", "C", RegisterAt(-4, 4, "RO", "Chunk")));
    EXPECT_EQ(map.As<IRegister>("R").GetAddress(), -4);
    EXPECT_EQ(map.As<IRegister>("C").GetAddress(), -4) << "there is no chunk";
    map.map._Connect(&map.port, "Chunk");
    map.port.Fill(0x7FFFFFFFFFFFFFF0, {100});
    EXPECT_EQ(map.As<IRegister>("C").GetAddress(), 96);
}

TEST(Enumerations, OfEqualEntriesTheLastCounts) {
    TestMap map(Literal("V", "3") +
                Named("Enumeration", "E", Entry("A", 3) + Entry("B", 3) + "<pValue>V</pValue>") +
                Named("Enumeration", "F",
                      Entry("A", 1, "", "<Symbolic>S</Symbolic>") +
                          Entry("B", 2, "", "<Symbolic>S</Symbolic>") + "<pValue>V</pValue>"));
    EXPECT_EQ(map.Get("E"), "B");
    map.Set("F", "S");
    EXPECT_EQ(map.Get("V"), "2");
    map.Integer("V").SetValue(0x100000000 - 5);
    EXPECT_THAT(ErrorOf([&] { map.Get("E"); }), testing::HasSubstr("cannot convert value '-5'"));
}

TEST(Formulas, AnEnumerationWithoutAnEntryHasNoValue) {
    const auto knife = [](const char* kind, const char* name) {
        return Named(kind, "K",
                     std::string("<pVariable Name='") + name + "'>E</pVariable><Formula>" + name +
                         "</Formula>");
    };
    const std::string list =
        Literal("V", "7") +
        Named("Enumeration", "E",
              Named("EnumEntry", "A", "<Value>1</Value><NumericValue>2.5</NumericValue>") +
                  "<pValue>V</pValue>");
    for (const char* kind : {"SwissKnife", "IntSwissKnife"}) {
        TestMap map(list + knife(kind, "V"));
        EXPECT_EQ(ErrorOf([&] { map.Get("K"); }),
                  "LogicalErrorException: NULL pointer dereferenced");
        map.Set("V", "1");
        EXPECT_EQ(map.Get("K"), std::string(kind) == "SwissKnife" ? "2.5" : "1");
    }
    EXPECT_EQ(ErrorOf([&] { TestMap(list + knife("SwissKnife", "V.Entry.B")).Get("K"); }),
              "RuntimeException: Variable 'V.Entry.B' does not point to EnumEntry 'B'");
}

// Version 1.0 of the schema reads formulas in upper case.
TEST(Formulas, OfOldDescriptionsAreReadInUpperCase) {
    CNodeMapRef map;
    map._LoadXMLFromString(
        Document(Literal("I", "5", "<Max>9</Max>") + Literal("J", "7") +
                     Named("IntSwissKnife", "K",
                           "<pVariable Name='A'>I</pVariable><pVariable Name='a'>J</pVariable>"
                           "<pVariable Name='A.Max'>I</pVariable>"
                           "<Formula>a*100+A.Max</Formula>") +
                     Named("Converter", "C",
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
        kPort + IntReg("R", 0) + Over("I", "R") +
        Named("IntSwissKnife", "K", "<pVariable Name='V'>R</pVariable><Formula>V+1</Formula>"));
    EXPECT_EQ(map.Integer("K").GetValue(false, true), 1);
    EXPECT_TRUE(map.As<IValue>("K").IsValueCacheValid());
    EXPECT_EQ(map.Integer("I").GetValue(false, true), 0);
    EXPECT_FALSE(map.As<IValue>("I").IsValueCacheValid());
}

TEST(Texts, WhatCannotBeWrittenIsAsLongAsItsText) {
    const std::string unavailable = "<pIsAvailable>Zero</pIsAvailable>";
    TestMap map(kPort + Literal("Zero", "0") + Named("StringReg", "R", RegisterAt(0, 8, "RO")) +
                Named("String", "S", unavailable + "<pValue>R</pValue>") +
                Named("StringReg", "Q", unavailable + RegisterAt(0, 8, "RO")));
    map.port.Fill(0, {'a', 'b', 'c'});
    EXPECT_EQ(map.As<IString>("R").GetMaxLength(), 3);
    EXPECT_EQ(map.As<IString>("S").GetMaxLength(), 3);
    EXPECT_EQ(ErrorOf([&] { map.As<IString>("Q").GetMaxLength(); }),
              "AccessException: Node is not readable.");
}

}  // namespace
