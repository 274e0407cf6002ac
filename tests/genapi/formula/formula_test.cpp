// Values of formulas.
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/genapi/formula/calculate.h"

using namespace GENAPI_NAMESPACE::Engine;

namespace {

constexpr int64_t kMin = std::numeric_limits<int64_t>::min();
constexpr int64_t kMax = std::numeric_limits<int64_t>::max();

const std::vector<std::vector<std::string>> kLevels = {
    {"<", "<=", ">", ">=", "=", "<>", "&&", "||"},
    {"+", "-"},
    {"*", "/", "%"},
    {"**", "<<", ">>", "&", "^", "|"},
};

// "a x b y c" must be what brackets make of it: to the left unless the right one binds more.
template <typename Number>
void CheckPair(const std::string& first, const std::string& second, bool toTheLeft) {
    for (const char* operands : {"723", "532", "314", "257"}) {
        const std::string a(1, operands[0]), b(1, operands[1]), c(1, operands[2]);
        const std::string plain = a + first + b + second + c;
        const std::string bracketed = toTheLeft ? "(" + a + first + b + ")" + second + c
                                                : a + first + "(" + b + second + c + ")";
        ASSERT_EQ(ErrorOf<Number>(plain), ErrorOf<Number>(bracketed)) << plain;
        if (!ErrorOf<Number>(plain).empty()) continue;
        EXPECT_EQ(Calculate<Number>(plain), Calculate<Number>(bracketed)) << plain;
    }
}

TEST(Formula, takesEachPairOfOperatorsByItsLevels) {
    for (size_t i = 0; i < kLevels.size(); ++i)
        for (size_t j = 0; j < kLevels.size(); ++j)
            for (const std::string& first : kLevels[i])
                for (const std::string& second : kLevels[j]) {
                    CheckPair<int64_t>(first, second, i >= j);
                    CheckPair<double>(first, second, i >= j);
                }
}

class Integers : public testing::TestWithParam<IntegerCase> {};
class Floats : public testing::TestWithParam<FloatCase> {};

TEST_P(Integers, evaluate) {
    EXPECT_EQ(Calculate<int64_t>(GetParam().text), GetParam().expected);
}

TEST_P(Floats, evaluate) {
    EXPECT_DOUBLE_EQ(Calculate<double>(GetParam().text), GetParam().expected);
}

// Where both evaluators agree.
const std::vector<IntegerCase> kShared = {
    {"-2**2", 4},
    {"2*-3", -6},
    {"A<-1", 0},
    {"1?-2:3", -2},
    {"-(-5)", 5},
    {"+5", 5},
    {"~5", -6},
    {"~-5", 4},
    {"2**3**2", 64},
    {"1+1<<2", 5},
    {"4&1=1", 0},
    {"1=1&&2=2", 0},
    {"-7%3", -1},
    {"7%-3", 1},
    {"-8>>1", -4},
    {"6&3", 2},
    {"6|3", 7},
    {"6^3", 5},
    {"2<>2", 0},
    {"2<=2", 1},
    {"3>=4", 0},
    {"5&&0", 0},
    {"5&&-3", 1},
    {"0||0", 0},
    {"0||2", 1},
    {"0?1:0?2:3", 3},
    {"0?1:5?2:3", 2},
    {"1?(0?2:3):4", 3},
    {"1+0?2:3", 2},
    {"(A=7)?A:B", 7},
    {"A+B*C", 31},
    {"V.Max-A", 93},
    {"NEGATIVE", -16},
    {"TWICE-SUM", 9},
    {"ALIAS+ALIAS*SUM", 180},
    {"SUM?ALIAS-A:TWICE", 11},
    {"(A-B)-(B-A)", 10},
    {"A-(B-(A-(B-A)))", 17},
    {"SGN(-5)", -1},
    {"sgn(0)", 0},
    {"Sgn ( 3 )", 1},
    {"Neg(A)", -7},
    {" \t1\r\n+\n2 ", 3},
    {"010", 10},
    {"0xfF", 255},
};

INSTANTIATE_TEST_SUITE_P(Shared, Integers, testing::ValuesIn(kShared));
INSTANTIATE_TEST_SUITE_P(Shared, Floats, testing::ValuesIn([] {
                             std::vector<FloatCase> result;
                             result.reserve(std::size(kShared));
                             for (const auto& [text, expected] : kShared)
                                 result.push_back({text, static_cast<double>(expected)});
                             return result;
                         }()));

INSTANTIATE_TEST_SUITE_P(
    Own, Integers,
    testing::Values(
        IntegerCase{"-7/2", -3}, IntegerCase{"(1<<40)>>33", 128}, IntegerCase{"2**-1", 0},
        IntegerCase{"(-1)**-3", -1}, IntegerCase{"(-1)**-2", 1}, IntegerCase{"1<<64", 1},
        IntegerCase{"1<<-1", kMin}, IntegerCase{"1<<40", 1099511627776},
        IntegerCase{"7**22", 3909821048582988049}, IntegerCase{"(-2)**63", kMin},
        IntegerCase{"2**64", kMin}, IntegerCase{"3**40", kMin}, IntegerCase{"(-2)**64", kMin},
        IntegerCase{"0**-1", kMin}, IntegerCase{"2**63-1", kMax},
        IntegerCase{"9223372036854775807+1", kMin}, IntegerCase{"-9223372036854775807-2", kMax},
        IntegerCase{"(1<<63)/-1", kMin}, IntegerCase{"(1<<63)%-1", 0},
        IntegerCase{"-(1<<63)", kMin}, IntegerCase{"3037000500*3037000500", -9223372036709301616},
        IntegerCase{"99999999999999999999", kMax}, IntegerCase{"0xFFFFFFFFFFFFFFFF", kMax}));

INSTANTIATE_TEST_SUITE_P(
    Own, Floats,
    testing::Values(FloatCase{"5.", 5}, FloatCase{"1.5E-2", 0.015}, FloatCase{"2e3", 2000},
                    FloatCase{"0X10", 16}, FloatCase{"0xFFFFFFFFFFFFFFFF", 18446744073709551615.0},
                    FloatCase{"-7/2", -3.5}, FloatCase{"2**-1", 0.5}, FloatCase{"-7.5%2", -1.5},
                    FloatCase{"5.7<<1", 10}, FloatCase{"(65526<<16)>>16", -10},
                    FloatCase{"1<<40", 256}, FloatCase{"1<<-1", -2147483648.0},
                    FloatCase{"-2147483648.9>>31", -1}, FloatCase{"~-1.9", 0},
                    FloatCase{"0.5?1:2", 1}, FloatCase{"0.5&&1", 1}, FloatCase{"PI", M_PI},
                    FloatCase{"PI()", M_PI}, FloatCase{"LN(E)", 1}, FloatCase{"LG(1000)", 3},
                    FloatCase{"EXP(1)", M_E}, FloatCase{"ABS(-2.5)", 2.5}, FloatCase{"SQRT(16)", 4},
                    FloatCase{"SIN(PI/2)", 1}, FloatCase{"COS(PI)", -1}, FloatCase{"TAN(PI/4)", 1},
                    FloatCase{"ASIN(1)", M_PI_2}, FloatCase{"ACOS(-1)", M_PI},
                    FloatCase{"ATAN(1)", M_PI_4}, FloatCase{"TRUNC(-2.7)", -2},
                    FloatCase{"FLOOR(-2.2)", -3}, FloatCase{"CEIL(2.2)", 3},
                    FloatCase{"ROUND(2.5)", 3}, FloatCase{"ROUND(-2.5)", -3},
                    FloatCase{"ROUND(2.456,2)", 2.46}, FloatCase{"ROUND(1850, -2)", 1900},
                    FloatCase{"ROUND(3.5,400)", 3.5}, FloatCase{"ROUND(3.5,-400)", 0},
                    FloatCase{"LN(0)", -HUGE_VAL}));

TEST(Formula, hasValuesThatAreNoNumber) {
    EXPECT_TRUE(std::isnan(Calculate<double>("SQRT(-1)")));
}

TEST(Formula, knowsItsOwnNamesFirstWhereItHasFractions) {
    FormulaSymbols symbols;
    symbols.variables = {"E", "X", "SIN"};
    symbols.constants = {{"pi", "3"}, {"X", "1"}, {"Z", "5"}};
    symbols.expressions = {{"E", "6"}, {"Z", "4"}};
    EXPECT_EQ(Calculate<double>("E", symbols), M_E);
    EXPECT_EQ(Calculate<double>("pi", symbols), M_PI);
    EXPECT_EQ(Calculate<double>("SIN(0)", symbols), 0);
    EXPECT_EQ(Calculate<double>("SIN", symbols), 100) << "without brackets it is no function";
    EXPECT_EQ(Calculate<double>("X*10+Z", symbols), 25);
    EXPECT_EQ(Calculate<int64_t>("E", symbols), 7);
}

TEST(Formula, mayBeReadInUpperCase) {
    FormulaSymbols symbols;
    symbols.upperCase = true;
    symbols.variables = {"A", "a", "Mixed"};
    symbols.constants = {{"V.Max", "3"}};
    symbols.expressions = {{"SUM", "a+Mixed"}};
    EXPECT_EQ(Calculate<int64_t>("a", symbols), 7);
    EXPECT_EQ(Calculate<int64_t>("Mixed", symbols), 100) << "where no other name is found";
    EXPECT_EQ(Calculate<double>("sum+V.Max+0xfF", symbols), 107 + 3 + 255);
    EXPECT_EQ(ErrorOf<double>("V.Min", symbols), "parse: # V.MIN - Unknown function/variable!");
}

}  // namespace
