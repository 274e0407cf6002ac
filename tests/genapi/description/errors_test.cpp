// What is refused, with which text.
#include <Base/GCException.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "genapi/description/limits.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::RuntimeException;

std::string errorOf(const std::string& xml) {
    return textOf<RuntimeException>([&] { load(xml); });
}

// The reason in the text of a parse error, and where it was found.
std::string parseError(int line, int column, const std::string& reason) {
    return "Error while parsing XML stream at line " + std::to_string(line) + " and column " +
           std::to_string(column) + " : '" + reason + "'";
}

TEST(DescriptionErrors, Places) {
    const struct {
        const char* nodes;
        int column;
        const char* reason;
    } cases[] = {
        {"<Integer Name='I'></Integer>", 28, "expected element not encountered"},
        {"<Integer Name='I'><Nope/>", 25, "expected element not encountered"},
        {"<Node Nope=''/>", 15, "unexpected attribute encountered"},
        {"<Integer><Value>1</Value></Integer>", 35, "expected attribute not encountered"},
        {"<Node Name='N' NameSpace='Mine'/>", 33, "value is not in enumeration"},
        {"<Node Name='N'><Visibility>All</Visibility>", 43, "value is not in enumeration"},
        {"<Node Name='N'>text<", 19, "unexpected characters encountered"},
        {"<Node Name='N'><q:Value>", 15, "unbound prefix"},
        {"<Node Name='N'></Value>", 17, "mismatched tag"},
    };
    for (const auto& refused : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(parseError(2, refused.column, refused.reason),
                      errorOf(document(refused.nodes, minor)))
                << refused.nodes;
    // Where something is too much, a description of schema 1.1 is refused for its root.
    const std::string nodes = integer("I") + "\n<Nope/>";
    const std::string text = document(nodes);
    EXPECT_EQ(parseError(3, 7, "unexpected element encountered"), errorOf(document(nodes, 0)));
    EXPECT_EQ(parseError(1, static_cast<int>(text.find('\n')), "unexpected element encountered"),
              errorOf(text));
}

TEST(DescriptionErrors, DocumentsThatAreNone) {
    EXPECT_EQ(parseError(1, 0, "syntax error"), errorOf("hello"));
    EXPECT_THAT(errorOf(" "), testing::HasSubstr("no element found"));
    EXPECT_THAT(errorOf(document("") + "x"), testing::HasSubstr("junk after document element"));
    EXPECT_EQ(parseError(1, 1, "XML or text declaration not at start of entity"),
              errorOf(" <?xml version='1.0'?>" + document("")));
    EXPECT_EQ("nothing", errorOf("\xEF\xBB\xBF" + document("")));
    EXPECT_EQ(parseError(1, 9, "unexpected element encountered"), errorOf("<Camera/>"));
    EXPECT_THAT(errorOf(document("", 2)), testing::HasSubstr("unexpected element encountered"));
    std::string nameless = document("");
    nameless.erase(nameless.find("ModelName"), 13);
    EXPECT_EQ(parseError(2, 22, "expected attribute not encountered"), errorOf(nameless));
    const std::string early = document("").replace(100, 1, 1, '\0');
    EXPECT_EQ(parseError(1, 100, "not well-formed (invalid token)"), errorOf(early));
    EXPECT_THAT(errorOf("<!DOCTYPE a [<!ENTITY b 'c'>]>" + document("")),
                testing::HasSubstr("entity declarations are not accepted"));
}

TEST(DescriptionErrors, Duplicates) {
    const std::string constant = "<IntSwissKnife Name='K'><Constant Name='C'>1</Constant>";
    EXPECT_EQ("XML Parse error at line 3 and column 34, Found a duplicate node'I'.",
              errorOf(document(integer("I") + "\n" + integer("I"))));
    EXPECT_THAT(errorOf(document(constant + "<Constant Name='C'>2</Constant><Formula>C</Formula>"
                                            "</IntSwissKnife>")),
                testing::HasSubstr("duplicate node'_K_C'"));
    EXPECT_THAT(errorOf(document(integer("EnumEntry_E_A") +
                                 "<Enumeration Name='E'><EnumEntry Name='A'><Value>1</Value>"
                                 "</EnumEntry><Value>1</Value></Enumeration>")),
                testing::HasSubstr("duplicate node'EnumEntry_E_A'"));
}

// Of several faults the first one in this order is told, wherever they are.
TEST(DescriptionErrors, Order) {
    const std::string kind =
        "<Command Name='C'><pValue>C</pValue><CommandValue>1</CommandValue>"
        "</Command>";
    const std::string dangling = over("D", "Nope");
    const std::string number = literal("N", "x");
    const std::string order = "<Integer Name='O'><Max>1</Max><Value>1</Value></Integer>";
    EXPECT_THAT(errorOf(document(kind)), testing::HasSubstr("PropagateTerminals cycle"));
    EXPECT_EQ("Error in XML stream : dangling node reference 'Nope'",
              errorOf(document(kind + dangling)));
    EXPECT_THROW(load(document(dangling + number)), GENICAM_NAMESPACE::PropertyException);
    EXPECT_THAT(errorOf(document(number + order)), testing::HasSubstr("expected element"));
}

std::string repeated(std::size_t count, const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(DescriptionErrors, Limits) {
    EXPECT_THAT(errorOf(document(repeated(kMaxNesting, "<Group Comment=''>"))),
                testing::HasSubstr("nested too deeply"));
    EXPECT_THAT(errorOf(document("<Node Name='N'><Extension>" + repeated(kMaxNesting, "<x>"))),
                testing::HasSubstr("nested too deeply"));
    EXPECT_EQ("nothing",
              errorOf(document(repeated(200, "<Group Comment=''>") + repeated(200, "</Group>"))));
    std::string spaces;
    for (std::size_t i = 0; i <= kMaxPrefixes; ++i)
        spaces += " xmlns:p" + std::to_string(i) + "='u'";
    EXPECT_THAT(errorOf(document("<Node Name='N'" + spaces + "/>")),
                testing::HasSubstr("too many name spaces"));
    EXPECT_THAT(errorOf(document("<Node Name='N'><ToolTip>" + std::string(kMaxTextSize + 1, 't') +
                                 "</ToolTip></Node>")),
                testing::HasSubstr("text is too long"));
    EXPECT_EQ("The description is too large", errorOf(std::string(kMaxXmlSize + 1, ' ')));

    // Each entry inherits all of the addresses: a product that is larger than the text.
    std::string entries;
    for (int i = 0; i < 2000; ++i)
        entries += "<StructEntry Name='E" + std::to_string(i) + "'><Bit>0</Bit></StructEntry>";
    EXPECT_EQ("The nodes of the description have too many elements",
              errorOf(document("<StructReg Comment=''>" + repeated(2000, "<Address>0</Address>") +
                               kRegister + "<Endianess>BigEndian</Endianess>" + entries +
                               "</StructReg>")));
}

}  // namespace
}  // namespace test
