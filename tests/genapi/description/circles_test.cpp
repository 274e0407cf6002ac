// Nodes that read themselves, and selectors that select themselves.
#include <Base/GCException.h>
#include <gtest/gtest.h>

#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::RuntimeException;

std::string ErrorOf(const std::string& nodes, int minor) {
    return TextOf<RuntimeException>([&] { Load(Document(nodes, minor)); });
}

std::string Reading(const std::string& name, const std::string& link, const std::string& other) {
    return Named("Integer", name, Element(link, other) + Element("Value", 1));
}

std::string LimitedBy(const std::string& name, const std::string& link, const std::string& other) {
    return Literal(name, "1", Element(link, other));
}

std::string Formula(const std::string& name, const std::string& variable) {
    return Named("IntSwissKnife", name,
                 "<pVariable Name='V'>" + variable + "</pVariable><Formula>1</Formula>");
}

std::string Converter(const std::string& name, const std::string& variable) {
    return Named("Converter", name,
                 "<pVariable Name='V'>" + variable +
                     "</pVariable><FormulaTo>V</FormulaTo><FormulaFrom>TO</FormulaFrom>"
                     "<pValue>I</pValue>");
}

std::string RegisterIn(const std::string& port, const std::string& where) {
    return Named("IntReg", "R", RegisterAt(where, 4, "RW", port) + kLittle);
}

std::string Passed(const std::string& name) {
    return "WARNING: PropagateTerminals cycle detected in node = '" + name + "'\n";
}
std::string Read(const std::string& path) {
    return "ERROR : read cycle detected : " + path;
}
std::string Selected(const std::string& path) {
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
        {Over("I", "I"), Passed("I")},
        {Over("Top", "I") + Over("I", "J") + Over("J", "I"), Passed("I")},
        {Over("Top", "J") + Over("I", "J") + Over("J", "I"), Passed("J")},
        {Named("Integer", "I", "<pValueCopy>I</pValueCopy><pValue>J</pValue>") + Integer("J"),
         Passed("I")},
        {Named("Integer", "I", indexed) + Integer("J"), Passed("I")},
        {Formula("K", "K"), Read("K -> K")},
        {Formula("K", "I") + Over("I", "J") + Over("J", "K"), Read("K -> I -> J -> K")},
        // (in schema 1.0 by way of its halves)
        {Converter("C", "C") + Integer("I"), Read("C -> C")},
        {RegisterIn("Device", Element("pAddress", "R")) + kPort, Read("R -> R")},
        {RegisterIn("Device", "<pIndex pOffset='R'>I</pIndex>") + kPort + Integer("I"),
         Read("R -> R")},
    };
    for (const Circle& circle : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(circle.error, ErrorOf(circle.nodes, minor).substr(0, circle.error.size()))
                << circle.nodes << minor;
}

TEST(Circles, OfWhatElseIsReadAreRefusedFromSchema11On) {
    const std::string chunk =
        "<Port Name='P'><pChunkID>S</pChunkID></Port>"
        "<StringReg Name='S'>" +
        RegisterAt(0, 4, "RW", "P") + "</StringReg>";
    const Circle cases[] = {
        {LimitedBy("I", "pMin", "I"), Read("I -> I")},
        {LimitedBy("I", "pInc", "I"), Read("I -> I")},
        {LimitedBy("I", "pMax", "K") + Formula("K", "J") + LimitedBy("J", "pMax", "L") +
             Formula("L", "I"),
         Read("I -> K -> J -> L -> I")},
        {Converter("C", "I") + LimitedBy("I", "pMax", "C"), Read("C -> I -> C")},
        {Reading("I", "pIsAvailable", "J") + Reading("J", "pIsLocked", "I"), Read("I -> J -> I")},
        {Reading("I", "pIsImplemented", "I"), Read("I -> I")},
        {Reading("I", "pBlockPolling", "I"), Read("I -> I")},
        {Reading("I", "pError", "I"), Read("I -> I")},
        {Named("Port", "P", Element("pIsAvailable", "R")) + RegisterIn("P", Element("Address", 0)),
         Read("P -> R -> P")},
        {chunk, Read("P -> S -> P")},
        {Named("Category", "Root", Element("pFeature", "A")) +
             Named("Category", "A", Element("pFeature", "Root")),
         Read("Root -> A -> Root")},
        // from the first node of the circle in the order of nodes, not the one that was met first
        {Over("Top", "J") + LimitedBy("I", "pMax", "J") + LimitedBy("J", "pMax", "I"),
         Read("J -> I -> J")},
    };
    for (const Circle& circle : cases) {
        EXPECT_EQ(circle.error, ErrorOf(circle.nodes, 1)) << circle.nodes;
        EXPECT_EQ("nothing", ErrorOf(circle.nodes, 0)) << circle.nodes;
    }
}

TEST(Circles, OfSelectorsAreAlwaysRefused) {
    const auto selecting = [](const std::string& name, const std::string& feature) {
        return Literal(name, "1", Element("pSelected", feature));
    };
    const std::string back = Over("C", "B", Element("pSelected", "A"));
    const Circle cases[] = {
        {selecting("I", "I"), Selected("I -> I")},
        {selecting("A", "B") + selecting("B", "C") + selecting("C", "A"),
         Selected("A -> B -> C -> A")},
        // A selector that reads what it selects
        {Over("I", "J", Element("pSelected", "J")) + Integer("J"), Selected("I -> I")},
        {Named("Integer", "I",
               "<pIsAvailable>K</pIsAvailable><Value>1</Value>"
               "<pSelected>J</pSelected>") +
             Formula("K", "J") + Integer("J"),
         Selected("I -> I")},
        // is another thing than one that is read by it, or one more that does.
        {selecting("I", "J") + Over("J", "I"), "nothing"},
        {selecting("A", "B") + Integer("B") + back, "nothing"},
    };
    for (const Circle& circle : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(circle.error, ErrorOf(circle.nodes, minor)) << circle.nodes << minor;
}

TEST(Circles, OfOtherLinksAreNone) {
    const std::string cases[] = {
        Reading("I", "pInvalidator", "I"),
        Reading("I", "pAlias", "J") + Reading("J", "pAlias", "I"),
        Reading("I", "pCastAlias", "I"),
        Named("Enumeration", "E",
              Entry("A", 1, Element("pIsAvailable", "E")) + Element("Value", 1)),
    };
    for (const std::string& nodes : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ("nothing", ErrorOf(nodes, minor)) << nodes << minor;
}

}  // namespace
}  // namespace test
