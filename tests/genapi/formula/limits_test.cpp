// Formulas that are long, deep, or made to grow.
#include <cstdint>
#include <deque>
#include <string>

#include <gtest/gtest.h>

#include "tests/genapi/formula/calculate.h"

using namespace GENAPI_NAMESPACE::Engine;

namespace {

std::string Repeated(const std::string& text, size_t count) {
    std::string result;
    for (size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string Nested(const std::string& open, size_t depth, const std::string& close) {
    return Repeated(open, depth) + "A" + Repeated(close, depth);
}

TEST(FormulaLimits, ofNesting) {
    const size_t depth = kMaxFormulaNesting;
    EXPECT_EQ(Calculate<int64_t>(Nested("(", depth, ")")), 7);
    EXPECT_EQ(Calculate<int64_t>(Nested("(B-", depth, ")")), 7);
    for (const char* open : {"(", "SGN(", "-("})
        EXPECT_EQ(ErrorOf<int64_t>(Nested(open, 100000, ")")), kInvalid);
    EXPECT_EQ(ErrorOf<int64_t>(Nested("~", 100000, "")), kInvalid);
}

// A look-up table written as a chain is common, and longer than anybody nests brackets.
TEST(FormulaLimits, leaveRoomForChains) {
    std::string chain;
    for (int i = 0; i < 500; ++i)
        chain += "(V.Max=" + std::to_string(i) + ")?" + std::to_string(i * 3) + ":";
    EXPECT_EQ(Calculate<int64_t>(chain + "-1"), 300);
    EXPECT_EQ(ErrorOf<int64_t>(Repeated("(A=1)?A-B:", 100000) + "0"), kInvalid);
}

TEST(FormulaLimits, ofOperations) {
    EXPECT_EQ(Calculate<int64_t>("A" + Repeated("+1", kMaxFormulaOperations)), 7 + 65536);
    EXPECT_EQ(ErrorOf<int64_t>("A" + Repeated("+1", kMaxFormulaOperations + 1)), kInvalid);
}

// Written out, the last of these would have 2^60 operations.
TEST(FormulaLimits, keepExpressionsFromMultiplying) {
    std::deque<std::string> texts = {"A"};
    FormulaSymbols symbols;
    symbols.variables = {"A"};
    for (size_t i = 0; i < kMaxKeptValues; ++i) {
        texts.push_back("X" + std::to_string(i));
        const std::string& name = texts.back();
        texts.push_back(i == 0 ? "A" : "X" + std::to_string(i - 1));
        texts.back() += "+" + texts.back();
        symbols.expressions.emplace_back(name, texts.back());
    }
    EXPECT_EQ(Calculate<int64_t>("X59", symbols), static_cast<int64_t>(7ULL << 60));
    EXPECT_EQ(Calculate<int64_t>("X63+1", symbols), 1);
    symbols.expressions.emplace_back("LAST", "X63*2");
    EXPECT_EQ(ErrorOf<int64_t>("LAST", symbols), kInvalid);
}

}  // namespace
