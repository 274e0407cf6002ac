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

const std::string kUncached = element("Cachable", "NoCache");

std::string uncachedReg(const std::string& name, const std::string& where) {
    return named("IntReg", name, registerAt(where, 4) + kUncached + kLittle);
}

std::string variable(const std::string& name, const std::string& node) {
    return "<pVariable Name='" + name + "'>" + node + "</pVariable>";
}

std::string formula(const std::string& name, const std::string& variables,
                    const std::string& text) {
    return named("IntSwissKnife", name, variables + element("Formula", text));
}

std::string converter(const std::string& kind, const std::string& name, const std::string& before,
                      const std::string& to, const std::string& from, const std::string& below) {
    return named(kind, name,
                 before + element("FormulaTo", to) + element("FormulaFrom", from) +
                     element("pValue", below));
}

// What one link of a chain looks like, as a function of its name and that of the next.
using Link = std::function<std::string(const std::string& name, const std::string& next)>;

struct Chain {
    std::string what;
    Link link;
    std::string end = uncachedReg("End", element("Address", 0));
};

std::string chainOf(const Chain& chain, int length) {
    std::string nodes = kPort + named("Category", "Root", element("pFeature", "N0")) + chain.end;
    for (int i = 0; i < length; ++i)
        nodes += chain.link("N" + std::to_string(i),
                            i + 1 < length ? "N" + std::to_string(i + 1) : "End");
    return nodes;
}

Link overNext(const std::string& kind, const std::string& more = "") {
    return [=](const std::string& name, const std::string& next) {
        return over(name, next, more, kind);
    };
}

Link conditionedBy(const std::string& condition) {
    return [=](const std::string& name, const std::string& next) {
        return named("Integer", name, element(condition, next) + element("Value", 1));
    };
}

// The formula nests as deeply as a formula may.
std::string deepFormula() {
    std::string text = "A";
    for (int i = 0; i < 190; ++i)
        text = "(" + text + ")";
    return text;
}

const std::vector<Chain> kChains = {
    {"values", overNext("Integer")},
    {"floats", overNext("Float")},
    {"booleans", overNext("Boolean")},
    {"enumerations",
     [](const std::string& name, const std::string& next) {
         return named("Enumeration", name,
                      entry("Off", 0) + entry("On", 3) + element("pValue", next));
     }},
    {"texts", overNext("String"), named("StringReg", "End", registerAt(0, 4))},
    {"limits",
     [](const std::string& name, const std::string& next) {
         return literal(name, "0", element("pMin", next) + element("pMax", next));
     }},
    {"copies",
     [](const std::string& name, const std::string& next) {
         return over(name, "Of" + name, element("pValueCopy", next)) + literal("Of" + name, "0");
     }},
    {"indices",
     [](const std::string& name, const std::string& next) {
         return named("Integer", name,
                      element("pIndex", next) + "<ValueIndexed Index='0'>0</ValueIndexed>" +
                          element("ValueDefault", 0));
     }},
    {"implemented", conditionedBy("pIsImplemented"), literal("End", "1")},
    {"available", conditionedBy("pIsAvailable"), literal("End", "1")},
    {"locked", conditionedBy("pIsLocked")},
    {"addresses",
     [](const std::string& name, const std::string& next) {
         return uncachedReg(name, element("pAddress", next));
     }},
    {"register indices",
     [](const std::string& name, const std::string& next) {
         return uncachedReg(name, element("Address", 0) + element("pIndex", next));
     }},
    {"formulas",
     [](const std::string& name, const std::string& next) {
         return formula(name, variable("A", next), deepFormula());
     }},
    {"limits in formulas",
     [](const std::string& name, const std::string& next) {
         return over(name, "Of" + name) + formula("Of" + name, variable("A.Min", next), "A.Min");
     }},
    {"converters",
     [](const std::string& name, const std::string& next) {
         return converter("Converter", name, "", "FROM", "TO", next);
     }},
    {"categories",
     [](const std::string& name, const std::string& next) {
         return named("Category", name, element("pFeature", next));
     }},
    {"entries",
     [](const std::string& name, const std::string& next) {
         return named("Enumeration", name,
                      entry("On", 1, element("pIsAvailable", next)) + element("Value", 1));
     },
     literal("End", "1")},
};

// Does to a feature whatever can be done to it, and tells what came of each step.
std::vector<std::string> outcomesOf(TestMap& map, const std::string& name) {
    std::vector<std::string> outcomes;
    const auto step = [&](auto operation) { outcomes.push_back(errorOf(operation)); };
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
    INode& node = map.node(name);
    step([&] { node.GetAccessMode(); });
    number(dynamic_cast<IInteger*>(&node));
    number(dynamic_cast<IFloat*>(&node));
    auto& value = map.as<IValue>(name);
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
    step([&] { map.nodeMap()->Poll(1000); });
    step([&] { CFeatureBag().StoreToBag(map.nodeMap()); });
    return outcomes;
}

// Access modes that are known shorten the way down to the values and limits. Those that may not be
// kept are too far away after a while.
void learnModes(TestMap& map, int length) {
    const auto learn = [&](int i) {
        return errorOf([&] { map.mode("N" + std::to_string(i)); }) == "nothing";
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
        onSmallStack([&] {
            TestMap map(chainOf(chain, kLong));
            outcomesOf(map, "Root");
            EXPECT_THAT(outcomesOf(map, "N0"), Contains(HasSubstr("too deeply")));
            learnModes(map, kLong);
            outcomesOf(map, "N0");
        });
        onSmallStack([&] {
            TestMap map(chainOf(chain, kAllowed));
            outcomesOf(map, "N0");
        });
    }
}

TEST(NodeLimits, ChainsHalfAsLongWork) {
    constexpr int kAllowed = static_cast<int>(Engine::kMaxDependencyDepth) / 2 - 2;
    for (const Chain& chain : kChains) {
        SCOPED_TRACE(chain.what);
        onSmallStack([&] {
            TestMap map(chainOf(chain, kAllowed));
            EXPECT_THAT(outcomesOf(map, "N0"), Each(Not(HasSubstr("too deeply"))));
        });
    }
}

// A limit is met by an operation, not by a node.
TEST(NodeLimits, AChainThatIsTooLongStaysUsableAtItsEnd) {
    constexpr int kLong = 900;
    for (const char* condition : {"pIsAvailable", "pIsLocked", "pIsImplemented"}) {
        SCOPED_TRACE(condition);
        TestMap map(chainOf({condition, conditionedBy(condition), literal("End", "1")}, kLong));
        for (int again = 0; again < 2; ++again)
            EXPECT_THAT(errorOf([&] { map.mode("N0"); }), HasSubstr("too deeply"));
        map.integer("End").SetValue(0);
        const EAccessMode last = map.mode("N899");
        EXPECT_EQ(last, std::string(condition) == "pIsAvailable"     ? NA
                        : std::string(condition) == "pIsImplemented" ? NI
                                                                     : RW);
        EXPECT_THAT(errorOf([&] { map.mode("N0"); }), HasSubstr("too deeply"));
    }
}

// Each link reaches the next in two or more ways.
const std::vector<Chain> kDoubling = {
    {"formulas",
     [](const std::string& name, const std::string& next) {
         return formula(name, variable("A", next) + variable("B", next), "A+B");
     }},
    {"limits",
     [](const std::string& name, const std::string& next) {
         return over(name, next,
                     element("pMin", next) + element("pMax", next) + element("pInc", next));
     }},
    {"conditions",
     [](const std::string& name, const std::string& next) {
         return named("Integer", name,
                      element("pIsImplemented", next) + element("pIsAvailable", next) +
                          element("pIsLocked", next) + element("pValue", next));
     }},
    {"copies",
     [](const std::string& name, const std::string& next) {
         return over(name, next, element("pValueCopy", next) + element("pValueCopy", next));
     }},
    {"addresses",
     [](const std::string& name, const std::string& next) {
         return uncachedReg(name, element("pAddress", next) + "<pIndex pOffset='" + next + "'>" +
                                      next + "</pIndex>");
     }},
    {"converters",
     [](const std::string& name, const std::string& next) {
         return converter("IntConverter", name, variable("A", next), "FROM+A", "TO+A", next);
     }},
    {"limits of converters",
     [](const std::string& name, const std::string& next) {
         return converter("IntConverter", name, variable("A.Min", next) + variable("B.Max", next),
                          "FROM+A.Min", "TO+B.Max", next);
     }},
};

TEST(NodeLimits, WaysThatDoubleEndAndLeaveTheMapUsable) {
    for (const Chain& chain : kDoubling) {
        SCOPED_TRACE(chain.what);
        TestMap map(chainOf(chain, 45) + intReg("Other", 64));
        int fired = 0;
        Register(&map.node("Other"), [&](INode*) { ++fired; });
        for (int again = 0; again < 2; ++again)
            outcomesOf(map, "N0");
        EXPECT_EQ(map.mode("N0"), map.mode("N44"));
        EXPECT_TRUE(map.nodeMap()->GetLock().TryLock());
        map.nodeMap()->GetLock().Unlock();
        map.set("Other", "5");
        EXPECT_EQ(fired, 1);
        map.port.memory[64] = 6;
        map.nodeMap()->InvalidateNodes();
        EXPECT_EQ(map.get("Other"), "6");
    }
}

TEST(NodeLimits, TooMuchWorkNamesTheFeature) {
    TestMap map(chainOf(kDoubling[3], 45));
    EXPECT_EQ(errorOf([&] { map.integer("N0").GetMin(); }),
              "RuntimeException: 'N0' takes too many evaluations of other nodes");
    try {
        map.set("N1", "3");
        FAIL();
    } catch (const GENICAM_NAMESPACE::RuntimeException& error) {
        EXPECT_STREQ(error.GetDescription(), "'N1' takes too many evaluations of other nodes");
        EXPECT_THAT(error.what(), HasSubstr("N1.FromString()"));
    }
    map.port.memory[0] = 7;
    EXPECT_EQ(map.get("End"), "7") << "what was written is not known";
    EXPECT_EQ(map.get("N0"), "7");
}

// The work of one operation does not count for the next, nor that of a callback for its cause.
TEST(NodeLimits, EachOperationStartsAnew) {
    constexpr std::size_t kCalls = Engine::kMaxWork / 2;
    TestMap map(kPort + formula("F", variable("A", "R") + variable("B", "S"), "A+B") +
                uncachedReg("R", element("Address", 0)) + uncachedReg("S", element("Address", 4)) +
                literal("I", "1"));
    const auto readOften = [&] {
        for (std::size_t i = 0; i < kCalls; ++i)
            map.integer("F").GetValue();
        map.port.trace.clear();
    };
    const auto inside = Register(
        &map.node("I"), [&](INode*) { readOften(); }, cbPostInsideLock);
    EXPECT_NO_THROW(map.set("I", "2"));
    Deregister(inside);
}

TEST(OneOperation, ReadsARegisterThatMayNotBeCachedOnce) {
    TestMap map(chainOf(kDoubling[0], 30));
    map.port.memory[0] = 1;
    EXPECT_EQ(map.integer("N0").GetValue(), 1 << 30);
    EXPECT_EQ(map.port.takeTrace(), "R0 ");
    EXPECT_EQ(map.integer("N0").GetValue(true, true), 1 << 30);
    EXPECT_EQ(map.port.takeTrace(), "R0 ");
    map.port.memory[0] = 2;
    EXPECT_EQ(map.integer("N29").GetValue(), 4) << "the next operation reads again";
    EXPECT_EQ(map.port.takeTrace(), "R0 ");
}

TEST(OneOperation, ReadsAgainWhatItWrote) {
    // The limit reads the register before it is written, the formula of the copy after that.
    TestMap map(kPort + uncachedReg("R", element("Address", 0)) +
                uncachedReg("C", element("Address", 4)) +
                formula("Limit", variable("A", "R"), "A+100") +
                converter("IntConverter", "Copy", variable("A", "R"), "FROM+A", "TO-A", "C") +
                over("W", "R", element("pValueCopy", "Copy") + element("pMax", "Limit")));
    map.port.memory[0] = 1;
    map.integer("W").SetValue(5);
    EXPECT_THAT(map.port.takeTrace(), HasSubstr("W0=5 R0 W4=10"));
}

TEST(OneOperation, IsNotThatOfItsCallbacks) {
    TestMap map(kPort + uncachedReg("R", element("Address", 0)) +
                named("Integer", "W",
                      element("pIsAvailable", "R") + element("Value", 0) + element("pMax", "R")));
    std::vector<std::string> seen;
    map.port.memory[0] = 9;
    const auto inside = Register(
        &map.node("W"),
        [&](INode*) {
            map.port.memory[0] = 8;
            seen.push_back(map.get("R"));
            map.port.memory[0] = 0;
            seen.push_back(map.mode("W") == NA ? "not available" : "available");
        },
        cbPostInsideLock);
    map.set("W", "3");
    EXPECT_THAT(seen, testing::ElementsAre("8", "not available"));
    Deregister(inside);
    EXPECT_EQ(map.mode("W"), NA);
    map.port.memory[0] = 1;
    EXPECT_EQ(map.mode("W"), RW) << "a mode that rests on such a register is computed each time";
}

}  // namespace
