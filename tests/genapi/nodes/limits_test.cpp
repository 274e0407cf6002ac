// Descriptions made to exhaust the stack or to take for ever: chains of nodes, and nodes that reach
// the next one in several ways, so that the number of ways doubles with each.
#include "genapi/description/limits.h"

#include <functional>
#include <string>
#include <vector>

#include <GenApi/NodeCallback.h>
#include <GenApi/Persistence.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/smallstack.h"
#include "tests/genapi/support/testmap.h"

using namespace test;
using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

namespace {

const std::string kUncached = Element("Cachable", "NoCache");

std::string UncachedReg(const std::string& name, const std::string& where) {
    return Named("IntReg", name, RegisterAt(where, 4) + kUncached + kLittle);
}

std::string Variable(const std::string& name, const std::string& node) {
    return "<pVariable Name='" + name + "'>" + node + "</pVariable>";
}

std::string Formula(const std::string& name, const std::string& variables,
                    const std::string& text) {
    return Named("IntSwissKnife", name, variables + Element("Formula", text));
}

std::string Converter(const std::string& kind, const std::string& name, const std::string& before,
                      const std::string& to, const std::string& from, const std::string& below) {
    return Named(kind, name,
                 before + Element("FormulaTo", to) + Element("FormulaFrom", from) +
                     Element("pValue", below));
}

// What one link of a chain looks like, as a function of its name and that of the next.
using Link = std::function<std::string(const std::string& name, const std::string& next)>;

struct Chain {
    std::string what;
    Link link;
    std::string end = UncachedReg("End", Element("Address", 0));
};

std::string ChainOf(const Chain& chain, int length) {
    std::string nodes = kPort + Named("Category", "Root", Element("pFeature", "N0")) + chain.end;
    for (int i = 0; i < length; ++i)
        nodes += chain.link("N" + std::to_string(i),
                            i + 1 < length ? "N" + std::to_string(i + 1) : "End");
    return nodes;
}

Link OverNext(const std::string& kind, const std::string& more = "") {
    return [=](const std::string& name, const std::string& next) {
        return Over(name, next, more, kind);
    };
}

Link ConditionedBy(const std::string& condition) {
    return [=](const std::string& name, const std::string& next) {
        return Named("Integer", name, Element(condition, next) + Element("Value", 1));
    };
}

// The formula nests as deeply as a formula may.
std::string DeepFormula() {
    std::string text = "A";
    for (int i = 0; i < 190; ++i)
        text = "(" + text + ")";
    return text;
}

const std::vector<Chain> kChains = {
    {"values", OverNext("Integer")},
    {"floats", OverNext("Float")},
    {"booleans", OverNext("Boolean")},
    {"enumerations",
     [](const std::string& name, const std::string& next) {
         return Named("Enumeration", name,
                      Entry("Off", 0) + Entry("On", 3) + Element("pValue", next));
     }},
    {"texts", OverNext("String"), Named("StringReg", "End", RegisterAt(0, 4))},
    {"limits",
     [](const std::string& name, const std::string& next) {
         return Literal(name, "0", Element("pMin", next) + Element("pMax", next));
     }},
    {"copies",
     [](const std::string& name, const std::string& next) {
         return Over(name, "Of" + name, Element("pValueCopy", next)) + Literal("Of" + name, "0");
     }},
    {"indices",
     [](const std::string& name, const std::string& next) {
         return Named("Integer", name,
                      Element("pIndex", next) + "<ValueIndexed Index='0'>0</ValueIndexed>" +
                          Element("ValueDefault", 0));
     }},
    {"implemented", ConditionedBy("pIsImplemented"), Literal("End", "1")},
    {"available", ConditionedBy("pIsAvailable"), Literal("End", "1")},
    {"locked", ConditionedBy("pIsLocked")},
    {"addresses",
     [](const std::string& name, const std::string& next) {
         return UncachedReg(name, Element("pAddress", next));
     }},
    {"register indices",
     [](const std::string& name, const std::string& next) {
         return UncachedReg(name, Element("Address", 0) + Element("pIndex", next));
     }},
    {"formulas",
     [](const std::string& name, const std::string& next) {
         return Formula(name, Variable("A", next), DeepFormula());
     }},
    {"limits in formulas",
     [](const std::string& name, const std::string& next) {
         return Over(name, "Of" + name) + Formula("Of" + name, Variable("A.Min", next), "A.Min");
     }},
    {"converters",
     [](const std::string& name, const std::string& next) {
         return Converter("Converter", name, "", "FROM", "TO", next);
     }},
    {"categories",
     [](const std::string& name, const std::string& next) {
         return Named("Category", name, Element("pFeature", next));
     }},
    {"entries",
     [](const std::string& name, const std::string& next) {
         return Named("Enumeration", name,
                      Entry("On", 1, Element("pIsAvailable", next)) + Element("Value", 1));
     },
     Literal("End", "1")},
};

// Does to a feature whatever can be done to it, and tells what came of each step.
std::vector<std::string> OutcomesOf(TestMap& map, const std::string& name) {
    std::vector<std::string> outcomes;
    const auto step = [&](auto operation) { outcomes.push_back(ErrorOf(operation)); };
    const auto number = [&](auto* feature) {
        if (!feature) return;
        for (const bool verify : {false, true}) {
            step([&] { feature->GetValue(verify, false); });
            step([&] { feature->GetValue(verify, true); });
            step([&] { feature->SetValue(0, verify); });
        }
        step([&] { feature->GetMin(); });
        step([&] { feature->GetMax(); });
        step([&] { feature->GetInc(); });
        step([&] { feature->GetIncMode(); });
        step([&] { feature->GetListOfValidValues(); });
        step([&] { feature->GetUnit(); });
    };
    INode& node = map.Node(name);
    step([&] { node.GetAccessMode(); });
    number(dynamic_cast<IInteger*>(&node));
    number(dynamic_cast<IFloat*>(&node));
    auto& value = map.As<IValue>(name);
    for (const bool verify : {false, true}) {
        step([&] { value.ToString(verify, false); });
        step([&] { value.ToString(verify, true); });
        step([&] { value.FromString("0", verify); });
    }
    step([&] { value.IsValueCacheValid(); });
    if (auto* text = dynamic_cast<IString*>(&node)) step([&] { text->GetMaxLength(); });
    if (auto* enumeration = dynamic_cast<IEnumeration*>(&node)) {
        step([&] { enumeration->GetCurrentEntry(true, true); });
        StringList_t symbolics;
        step([&] { enumeration->GetSymbolics(symbolics); });
    }
    if (auto* command = dynamic_cast<ICommand*>(&node)) {
        step([&] { command->Execute(); });
        step([&] { command->IsDone(); });
    }
    if (auto* bytes = dynamic_cast<IRegister*>(&node)) {
        uint8_t content[4] = {};
        step([&] { bytes->GetAddress(); });
        step([&] { bytes->Get(content, 4); });
        step([&] { bytes->Set(content, 4); });
    }
    GENICAM_NAMESPACE::gcstring property, attribute;
    step([&] { node.GetProperty("pTerminal", property, attribute); });
    NodeList_t children;
    step([&] { node.GetChildren(children, ctDependingNodes); });
    step([&] { node.InvalidateNode(); });
    step([&] { node.ImposeAccessMode(RW); });
    step([&] { map.NodeMap()->Poll(1000); });
    step([&] { CFeatureBag().StoreToBag(map.NodeMap()); });
    return outcomes;
}

// Access modes that are known shorten the way down to the values and limits. Those that may not be
// kept are too far away after a while.
void LearnModes(TestMap& map, int length) {
    const auto learn = [&](int i) {
        return ErrorOf([&] { map.Mode("N" + std::to_string(i)); }) == "nothing";
    };
    while (length > 0 && learn(--length)) {
    }
}

TEST(NodeLimits, ChainsDoNotExhaustASmallStack) {
    constexpr int kLong = 600;
    // Just short enough for the formulas at their ends to be parsed, which takes stack as well.
    constexpr int kAllowed = static_cast<int>(Engine::kMaxDependencyDepth) - 2;
    for (const Chain& chain : kChains) {
        SCOPED_TRACE(chain.what);
        OnSmallStack([&] {
            TestMap map(ChainOf(chain, kLong));
            OutcomesOf(map, "Root");
            EXPECT_THAT(OutcomesOf(map, "N0"), Contains(HasSubstr("too deeply")));
            LearnModes(map, kLong);
            OutcomesOf(map, "N0");
        });
        OnSmallStack([&] {
            TestMap map(ChainOf(chain, kAllowed));
            OutcomesOf(map, "N0");
        });
    }
}

TEST(NodeLimits, ChainsHalfAsLongWork) {
    constexpr int kAllowed = static_cast<int>(Engine::kMaxDependencyDepth) / 2 - 2;
    for (const Chain& chain : kChains) {
        SCOPED_TRACE(chain.what);
        OnSmallStack([&] {
            TestMap map(ChainOf(chain, kAllowed));
            EXPECT_THAT(OutcomesOf(map, "N0"), Each(Not(HasSubstr("too deeply"))));
        });
    }
}

// A limit is met by an operation, not by a node.
TEST(NodeLimits, AChainThatIsTooLongStaysUsableAtItsEnd) {
    constexpr int kLong = 900;
    for (const char* condition : {"pIsAvailable", "pIsLocked", "pIsImplemented"}) {
        SCOPED_TRACE(condition);
        TestMap map(ChainOf({condition, ConditionedBy(condition), Literal("End", "1")}, kLong));
        for (int again = 0; again < 2; ++again)
            EXPECT_THAT(ErrorOf([&] { map.Mode("N0"); }), HasSubstr("too deeply"));
        map.Integer("End").SetValue(0);
        const EAccessMode last = map.Mode("N899");
        EXPECT_EQ(last, std::string(condition) == "pIsAvailable"     ? NA
                        : std::string(condition) == "pIsImplemented" ? NI
                                                                     : RW);
        EXPECT_THAT(ErrorOf([&] { map.Mode("N0"); }), HasSubstr("too deeply"));
    }
}

// Each link reaches the next in two or more ways.
const std::vector<Chain> kDoubling = {
    {"formulas",
     [](const std::string& name, const std::string& next) {
         return Formula(name, Variable("A", next) + Variable("B", next), "A+B");
     }},
    {"limits",
     [](const std::string& name, const std::string& next) {
         return Over(name, next,
                     Element("pMin", next) + Element("pMax", next) + Element("pInc", next));
     }},
    {"conditions",
     [](const std::string& name, const std::string& next) {
         return Named("Integer", name,
                      Element("pIsImplemented", next) + Element("pIsAvailable", next) +
                          Element("pIsLocked", next) + Element("pValue", next));
     }},
    {"copies",
     [](const std::string& name, const std::string& next) {
         return Over(name, next, Element("pValueCopy", next) + Element("pValueCopy", next));
     }},
    {"addresses",
     [](const std::string& name, const std::string& next) {
         return UncachedReg(name, Element("pAddress", next) + "<pIndex pOffset='" + next + "'>" +
                                      next + "</pIndex>");
     }},
    {"converters",
     [](const std::string& name, const std::string& next) {
         return Converter("IntConverter", name, Variable("A", next), "FROM+A", "TO+A", next);
     }},
    {"limits of converters",
     [](const std::string& name, const std::string& next) {
         return Converter("IntConverter", name, Variable("A.Min", next) + Variable("B.Max", next),
                          "FROM+A.Min", "TO+B.Max", next);
     }},
};

TEST(NodeLimits, WaysThatDoubleEndAndLeaveTheMapUsable) {
    for (const Chain& chain : kDoubling) {
        SCOPED_TRACE(chain.what);
        TestMap map(ChainOf(chain, 45) + IntReg("Other", 64));
        int fired = 0;
        Register(&map.Node("Other"), [&](INode*) { ++fired; });
        for (int again = 0; again < 2; ++again)
            OutcomesOf(map, "N0");
        EXPECT_EQ(map.Mode("N0"), map.Mode("N44"));
        EXPECT_TRUE(map.NodeMap()->GetLock().TryLock());
        map.NodeMap()->GetLock().Unlock();
        map.Set("Other", "5");
        EXPECT_EQ(fired, 1);
        map.port.memory[64] = 6;
        map.NodeMap()->InvalidateNodes();
        EXPECT_EQ(map.Get("Other"), "6");
    }
}

TEST(NodeLimits, TooMuchWorkNamesTheFeature) {
    TestMap map(ChainOf(kDoubling[3], 45));
    EXPECT_EQ(ErrorOf([&] { map.Integer("N0").GetMin(); }),
              "RuntimeException: 'N0' takes too many evaluations of other nodes");
    try {
        map.Set("N1", "3");
        FAIL();
    } catch (const GENICAM_NAMESPACE::RuntimeException& error) {
        EXPECT_STREQ(error.GetDescription(), "'N1' takes too many evaluations of other nodes");
        EXPECT_THAT(error.what(), HasSubstr("N1.FromString()"));
    }
    map.port.memory[0] = 7;
    EXPECT_EQ(map.Get("End"), "7") << "what was written is not known";
    EXPECT_EQ(map.Get("N0"), "7");
}

// The work of one operation does not count for the next, nor that of a callback for its cause.
TEST(NodeLimits, EachOperationStartsAnew) {
    constexpr size_t kCalls = Engine::kMaxWork / 2;
    TestMap map(kPort + Formula("F", Variable("A", "R") + Variable("B", "S"), "A+B") +
                UncachedReg("R", Element("Address", 0)) + UncachedReg("S", Element("Address", 4)) +
                Literal("I", "1"));
    const auto readOften = [&] {
        for (size_t i = 0; i < kCalls; ++i)
            map.Integer("F").GetValue();
        map.port.trace.clear();
    };
    const auto inside = Register(
        &map.Node("I"), [&](INode*) { readOften(); }, cbPostInsideLock);
    EXPECT_NO_THROW(map.Set("I", "2"));
    Deregister(inside);
}

TEST(OneOperation, ReadsARegisterThatMayNotBeCachedOnce) {
    TestMap map(ChainOf(kDoubling[0], 30));
    map.port.memory[0] = 1;
    EXPECT_EQ(map.Integer("N0").GetValue(), 1 << 30);
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");
    EXPECT_EQ(map.Integer("N0").GetValue(true, true), 1 << 30);
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");
    map.port.memory[0] = 2;
    EXPECT_EQ(map.Integer("N29").GetValue(), 4) << "the next operation reads again";
    EXPECT_EQ(map.port.TakeTrace(), "R0 ");
}

TEST(OneOperation, ReadsAgainWhatItWrote) {
    // The limit reads the register before it is written, the formula of the copy after that.
    TestMap map(kPort + UncachedReg("R", Element("Address", 0)) +
                UncachedReg("C", Element("Address", 4)) +
                Formula("Limit", Variable("A", "R"), "A+100") +
                Converter("IntConverter", "Copy", Variable("A", "R"), "FROM+A", "TO-A", "C") +
                Over("W", "R", Element("pValueCopy", "Copy") + Element("pMax", "Limit")));
    map.port.memory[0] = 1;
    map.Integer("W").SetValue(5);
    EXPECT_THAT(map.port.TakeTrace(), HasSubstr("W0=5 R0 W4=10"));
}

TEST(OneOperation, IsNotThatOfItsCallbacks) {
    TestMap map(kPort + UncachedReg("R", Element("Address", 0)) +
                Named("Integer", "W",
                      Element("pIsAvailable", "R") + Element("Value", 0) + Element("pMax", "R")));
    std::vector<std::string> seen;
    map.port.memory[0] = 9;
    const auto inside = Register(
        &map.Node("W"),
        [&](INode*) {
            map.port.memory[0] = 8;
            seen.push_back(map.Get("R"));
            map.port.memory[0] = 0;
            seen.push_back(map.Mode("W") == NA ? "not available" : "available");
        },
        cbPostInsideLock);
    map.Set("W", "3");
    EXPECT_THAT(seen, testing::ElementsAre("8", "not available"));
    Deregister(inside);
    EXPECT_EQ(map.Mode("W"), NA);
    map.port.memory[0] = 1;
    EXPECT_EQ(map.Mode("W"), RW) << "a mode that rests on such a register is computed each time";
}

}  // namespace
