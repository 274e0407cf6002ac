// What is refused, with which text.
#include <Base/GCException.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "genapi/description/limits.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::RuntimeException;

std::string ErrorOf(const std::string& xml) {
    return TextOf<RuntimeException>([&] { Load(xml); });
}

// The reason in the text of a parse error, and where it was found.
std::string ParseError(int line, int column, const std::string& reason) {
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
            EXPECT_EQ(ParseError(2, refused.column, refused.reason),
                      ErrorOf(Document(refused.nodes, minor)))
                << refused.nodes;
    // Where something is too much, a description of schema 1.1 is refused for its root.
    const std::string nodes = Integer("I") + "\n<Nope/>";
    const std::string text = Document(nodes);
    EXPECT_EQ(ParseError(3, 7, "unexpected element encountered"), ErrorOf(Document(nodes, 0)));
    EXPECT_EQ(ParseError(1, static_cast<int>(text.find('\n')), "unexpected element encountered"),
              ErrorOf(text));
}

TEST(DescriptionErrors, DocumentsThatAreNone) {
    EXPECT_EQ(ParseError(1, 0, "syntax error"), ErrorOf("hello"));
    EXPECT_THAT(ErrorOf(" "), testing::HasSubstr("no element found"));
    EXPECT_THAT(ErrorOf(Document("") + "x"), testing::HasSubstr("junk after document element"));
    EXPECT_EQ(ParseError(1, 1, "XML or text declaration not at start of entity"),
              ErrorOf(" <?xml version='1.0'?>" + Document("")));
    EXPECT_EQ("nothing", ErrorOf("\xEF\xBB\xBF" + Document("")));
    EXPECT_EQ(ParseError(1, 9, "unexpected element encountered"), ErrorOf("<Camera/>"));
    EXPECT_THAT(ErrorOf(Document("", 2)), testing::HasSubstr("unexpected element encountered"));
    std::string nameless = Document("");
    nameless.erase(nameless.find("ModelName"), 13);
    EXPECT_EQ(ParseError(2, 22, "expected attribute not encountered"), ErrorOf(nameless));
    const std::string early = Document("").replace(100, 1, 1, '\0');
    EXPECT_EQ(ParseError(1, 100, "not well-formed (invalid token)"), ErrorOf(early));
    EXPECT_THAT(ErrorOf("<!DOCTYPE a [<!ENTITY b 'c'>]>" + Document("")),
                testing::HasSubstr("entity declarations are not accepted"));
}

TEST(DescriptionErrors, Duplicates) {
    const std::string constant = "<IntSwissKnife Name='K'><Constant Name='C'>1</Constant>";
    EXPECT_EQ("XML Parse error at line 3 and column 34, Found a duplicate node'I'.",
              ErrorOf(Document(Integer("I") + "\n" + Integer("I"))));
    EXPECT_THAT(ErrorOf(Document(constant + "<Constant Name='C'>2</Constant><Formula>C</Formula>"
                                            "</IntSwissKnife>")),
                testing::HasSubstr("duplicate node'_K_C'"));
    EXPECT_THAT(ErrorOf(Document(Integer("EnumEntry_E_A") +
                                 "<Enumeration Name='E'><EnumEntry Name='A'><Value>1</Value>"
                                 "</EnumEntry><Value>1</Value></Enumeration>")),
                testing::HasSubstr("duplicate node'EnumEntry_E_A'"));
}

// Of several faults the first one in this order is told, wherever they are.
TEST(DescriptionErrors, Order) {
    const std::string kind =
        "<Command Name='C'><pValue>C</pValue><CommandValue>1</CommandValue>"
        "</Command>";
    const std::string dangling = Over("D", "Nope");
    const std::string number = Literal("N", "x");
    const std::string order = "<Integer Name='O'><Max>1</Max><Value>1</Value></Integer>";
    EXPECT_THAT(ErrorOf(Document(kind)), testing::HasSubstr("PropagateTerminals cycle"));
    EXPECT_EQ("Error in XML stream : dangling node reference 'Nope'",
              ErrorOf(Document(kind + dangling)));
    EXPECT_THROW(Load(Document(dangling + number)), GENICAM_NAMESPACE::PropertyException);
    EXPECT_THAT(ErrorOf(Document(number + order)), testing::HasSubstr("expected element"));
}

std::string Repeated(size_t count, const std::string& text) {
    std::string result;
    for (size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(DescriptionErrors, Limits) {
    EXPECT_THAT(ErrorOf(Document(Repeated(kMaxNesting, "<Group Comment=''>"))),
                testing::HasSubstr("nested too deeply"));
    EXPECT_THAT(ErrorOf(Document("<Node Name='N'><Extension>" + Repeated(kMaxNesting, "<x>"))),
                testing::HasSubstr("nested too deeply"));
    EXPECT_EQ("nothing",
              ErrorOf(Document(Repeated(200, "<Group Comment=''>") + Repeated(200, "</Group>"))));
    std::string spaces;
    for (size_t i = 0; i <= kMaxPrefixes; ++i)
        spaces += " xmlns:p" + std::to_string(i) + "='u'";
    EXPECT_THAT(ErrorOf(Document("<Node Name='N'" + spaces + "/>")),
                testing::HasSubstr("too many name spaces"));
    EXPECT_THAT(ErrorOf(Document("<Node Name='N'><ToolTip>" + std::string(kMaxTextSize + 1, 't') +
                                 "</ToolTip></Node>")),
                testing::HasSubstr("text is too long"));
    EXPECT_EQ("The description is too large", ErrorOf(std::string(kMaxXmlSize + 1, ' ')));

    // Each entry inherits all of the addresses: a product that is larger than the text.
    std::string entries;
    for (int i = 0; i < 2000; ++i)
        entries += "<StructEntry Name='E" + std::to_string(i) + "'><Bit>0</Bit></StructEntry>";
    EXPECT_EQ("The nodes of the description have too many elements",
              ErrorOf(Document("<StructReg Comment=''>" + Repeated(2000, "<Address>0</Address>") +
                               kRegister + "<Endianess>BigEndian</Endianess>" + entries +
                               "</StructReg>")));
}

}  // namespace
}  // namespace test
