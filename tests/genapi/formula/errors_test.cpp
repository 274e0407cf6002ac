// Formulas without a value: which error, and whether parsing or evaluation finds it.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/genapi/formula/calculate.h"

using namespace GENAPI_NAMESPACE::Engine;

namespace {

using namespace std::string_literals;

const std::string kSyntax = "parse: #Syntax error!";
const std::string kBrackets = "parse: #Brackets do not match!";
const std::string kInfinity = "evaluate: #Infinity somewhere!";
const std::string kExtraOperation = "evaluate: #Extra operation!";
const std::string kTooBig = "evaluate: #Value too big for operation!";

std::string Unknown(const std::string& name) {
    return "parse: # " + name + " - Unknown function/variable!";
}

TEST(FormulaErrors, ofBothEvaluators) {
    const Case<std::string> cases[] = {
        {"--5", kSyntax},
        {"A - -B", kSyntax},
        {"A+-B", kSyntax},
        {"2*+-3", kSyntax},
        {"1==1", kSyntax},
        {"!A", kSyntax},
        {"A!=B", kSyntax},
        {"A B", kSyntax},
        {"2 3", kSyntax},
        {"1+", kExtraOperation},
        {"*2", kSyntax},
        {"()", kSyntax},
        {"1?2", kSyntax},
        {"1:2", kSyntax},
        {"1?0?2:3:4", kSyntax},
        {"1,2", kSyntax},
        {".5", kSyntax},
        {"0x", kSyntax},
        {"A$", kSyntax},
        {"1\0"s, kSyntax},
        {"\xC3\xA4", kSyntax},
        {"SGN()", kSyntax},
        {"SGN(1,2)", kSyntax},
        {"A(1)", kSyntax},
        {"(1", kBrackets},
        {"1)", kBrackets},
        {")1(", kBrackets},
        {"", kInvalid},
        {" \n", kInvalid},
        {"a", Unknown("a")},
        {"V", Unknown("V")},
        {"V.Min", Unknown("V.Min")},
        {"MIN(1,2)", Unknown("MIN")},
        {"LOG(1)", Unknown("LOG")},
        {"SGN", Unknown("SGN")},
        {"1/0", kInfinity},
        {"A%(B-2)", kInfinity},
        {"1?2:1/0", kInfinity},
        {"1||1/0", kInfinity},
        {"0&&1%0", kInfinity},
        {"A/0", kInfinity},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(ErrorOf<int64_t>(text), expected) << text;
        EXPECT_EQ(ErrorOf<double>(text), expected) << text;
    }
}

TEST(FormulaErrors, ofIntegersOnly) {
    for (const char* name : {"ABS", "TRUNC", "SQRT", "ROUND", "SIN"})
        EXPECT_EQ(ErrorOf<int64_t>(name + "(1)"s), Unknown(name));
    for (const char* name : {"PI", "E"})
        EXPECT_EQ(ErrorOf<int64_t>(name), Unknown(name));
    for (const char* text : {"1.5", "5.", "1E2", "0X10"})
        EXPECT_EQ(ErrorOf<int64_t>(text), kSyntax) << text;
}

TEST(FormulaErrors, ofFloatsOnly) {
    for (const char* text : {"1E19&1", "1<<1E300", "~1E19", "SQRT(-1)|1", "2147483648<<1",
                             "1>>2147483648", "-2147483649>>1"})
        EXPECT_EQ(ErrorOf<double>(text), kTooBig) << text;
    EXPECT_EQ(ErrorOf<double>("1E999"), kInvalid);
    EXPECT_EQ(ErrorOf<double>("PI(1)"), kSyntax);
    EXPECT_EQ(ErrorOf<double>("1-9223372036854774784&-1"), "");
}

TEST(FormulaErrors, ofNamedParts) {
    FormulaSymbols symbols;
    symbols.constants = {{"HALF", "0.5"}, {"TEXT", "1+1"}, {"EMPTY", ""}};
    symbols.expressions = {
        {"EARLY", "LATE"}, {"LATE", "1"}, {"SELF", "SELF"}, {"OPEN", "(1"}, {"ZERO", "1/0"}};
    const Case<std::string> cases[] = {
        {"HALF", kSyntax},         {"TEXT", kSyntax},
        {"EMPTY", kSyntax},        {"EARLY", Unknown("LATE")},
        {"SELF", Unknown("SELF")}, {"OPEN", kBrackets},
        {"0*ZERO", kInfinity},     {"LATE", ""},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(ErrorOf<int64_t>(text, symbols), expected) << text;
    EXPECT_EQ(ErrorOf<double>("HALF", symbols), "");
}

}  // namespace
