// Nodes that read themselves, and selectors that select themselves.
#include <Base/GCException.h>
#include <gtest/gtest.h>

#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::RuntimeException;

std::string errorOf(const std::string& nodes, int minor) {
    return textOf<RuntimeException>([&] { load(document(nodes, minor)); });
}

std::string reading(const std::string& name, const std::string& link, const std::string& other) {
    return named("Integer", name, element(link, other) + element("Value", 1));
}

std::string limitedBy(const std::string& name, const std::string& link, const std::string& other) {
    return literal(name, "1", element(link, other));
}

std::string formula(const std::string& name, const std::string& variable) {
    return named("IntSwissKnife", name,
                 "<pVariable Name='V'>" + variable + "</pVariable><Formula>1</Formula>");
}

std::string converter(const std::string& name, const std::string& variable) {
    return named("Converter", name,
                 "<pVariable Name='V'>" + variable +
                     "</pVariable><FormulaTo>V</FormulaTo><FormulaFrom>TO</FormulaFrom>"
                     "<pValue>I</pValue>");
}

std::string registerIn(const std::string& port, const std::string& where) {
    return named("IntReg", "R", registerAt(where, 4, "RW", port) + kLittle);
}

std::string passed(const std::string& name) {
    return "WARNING: PropagateTerminals cycle detected in node = '" + name + "'\n";
}
std::string read(const std::string& path) {
    return "ERROR : read cycle detected : " + path;
}
std::string selected(const std::string& path) {
    return "ERROR : pSelected cycle detected : " + path;
}

struct Circle {
    std::string nodes, error;
};

TEST(Circles, OfValuesAreAlwaysRefused) {
    const std::string indexed =
        "<pIndex>J</pIndex><pValueIndexed Index='1'>I</pValueIndexed>"
        "<ValueDefault>1</ValueDefault>";
    const Circle cases[] = {
        {over("I", "I"), passed("I")},
        {over("Top", "I") + over("I", "J") + over("J", "I"), passed("I")},
        {over("Top", "J") + over("I", "J") + over("J", "I"), passed("J")},
        {named("Integer", "I", "<pValueCopy>I</pValueCopy><pValue>J</pValue>") + integer("J"),
         passed("I")},
        {named("Integer", "I", indexed) + integer("J"), passed("I")},
        {formula("K", "K"), read("K -> K")},
        {formula("K", "I") + over("I", "J") + over("J", "K"), read("K -> I -> J -> K")},
        // (in schema 1.0 by way of its halves)
        {converter("C", "C") + integer("I"), read("C -> C")},
        {registerIn("Device", element("pAddress", "R")) + kPort, read("R -> R")},
        {registerIn("Device", "<pIndex pOffset='R'>I</pIndex>") + kPort + integer("I"),
         read("R -> R")},
    };
    for (const Circle& circle : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(circle.error, errorOf(circle.nodes, minor).substr(0, circle.error.size()))
                << circle.nodes << minor;
}

TEST(Circles, OfWhatElseIsReadAreRefusedFromSchema11On) {
    const std::string chunk =
        "<Port Name='P'><pChunkID>S</pChunkID></Port>"
        "<StringReg Name='S'>" +
        registerAt(0, 4, "RW", "P") + "</StringReg>";
    const Circle cases[] = {
        {limitedBy("I", "pMin", "I"), read("I -> I")},
        {limitedBy("I", "pInc", "I"), read("I -> I")},
        {limitedBy("I", "pMax", "K") + formula("K", "J") + limitedBy("J", "pMax", "L") +
             formula("L", "I"),
         read("I -> K -> J -> L -> I")},
        {converter("C", "I") + limitedBy("I", "pMax", "C"), read("C -> I -> C")},
        {reading("I", "pIsAvailable", "J") + reading("J", "pIsLocked", "I"), read("I -> J -> I")},
        {reading("I", "pIsImplemented", "I"), read("I -> I")},
        {reading("I", "pBlockPolling", "I"), read("I -> I")},
        {reading("I", "pError", "I"), read("I -> I")},
        {named("Port", "P", element("pIsAvailable", "R")) + registerIn("P", element("Address", 0)),
         read("P -> R -> P")},
        {chunk, read("P -> S -> P")},
        {named("Category", "Root", element("pFeature", "A")) +
             named("Category", "A", element("pFeature", "Root")),
         read("Root -> A -> Root")},
        // from the first node of the circle in the order of nodes, not the one that was met first
        {over("Top", "J") + limitedBy("I", "pMax", "J") + limitedBy("J", "pMax", "I"),
         read("J -> I -> J")},
    };
    for (const Circle& circle : cases) {
        EXPECT_EQ(circle.error, errorOf(circle.nodes, 1)) << circle.nodes;
        EXPECT_EQ("nothing", errorOf(circle.nodes, 0)) << circle.nodes;
    }
}

TEST(Circles, OfSelectorsAreAlwaysRefused) {
    const auto selecting = [](const std::string& name, const std::string& feature) {
        return literal(name, "1", element("pSelected", feature));
    };
    const std::string back = over("C", "B", element("pSelected", "A"));
    const Circle cases[] = {
        {selecting("I", "I"), selected("I -> I")},
        {selecting("A", "B") + selecting("B", "C") + selecting("C", "A"),
         selected("A -> B -> C -> A")},
        // A selector that reads what it selects
        {over("I", "J", element("pSelected", "J")) + integer("J"), selected("I -> I")},
        {named("Integer", "I",
               "<pIsAvailable>K</pIsAvailable><Value>1</Value>"
               "<pSelected>J</pSelected>") +
             formula("K", "J") + integer("J"),
         selected("I -> I")},
        // is another thing than one that is read by it, or one more that does.
        {selecting("I", "J") + over("J", "I"), "nothing"},
        {selecting("A", "B") + integer("B") + back, "nothing"},
    };
    for (const Circle& circle : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(circle.error, errorOf(circle.nodes, minor)) << circle.nodes << minor;
}

TEST(Circles, OfOtherLinksAreNone) {
    const std::string cases[] = {
        reading("I", "pInvalidator", "I"),
        reading("I", "pAlias", "J") + reading("J", "pAlias", "I"),
        reading("I", "pCastAlias", "I"),
        named("Enumeration", "E",
              entry("A", 1, element("pIsAvailable", "E")) + element("Value", 1)),
    };
    for (const std::string& nodes : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ("nothing", errorOf(nodes, minor)) << nodes << minor;
}

}  // namespace
}  // namespace test
