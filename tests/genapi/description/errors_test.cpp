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

struct Refused {
    const char* nodes;
    int column;
    const char* reason;
};

TEST(DescriptionErrors, NodesThatTheSchemaForbids) {
    constexpr const char* kUnexpected = "unexpected element encountered";
    constexpr const char* kMissing = "expected element not encountered";
    constexpr const char* kAttribute = "expected attribute not encountered";
    constexpr const char* kWord = "value is not in enumeration";
    const Refused cases[] = {
        {"<Integer Name='I'><Nope/></Integer>", 18, kUnexpected},
        {"<Nope/>", 0, kUnexpected},
        {"<Node Name='N'><Formula>1</Formula></Node>", 15, kUnexpected},
        {"<StructEntry Name='N'/>", 0, kUnexpected},
        {"<Integer Name='I'><Value>1</Value><pValue>J</pValue></Integer>", 34, kUnexpected},
        {"<Integer Name='I'><Value>1<b/></Value></Integer>", 26, kUnexpected},
        {"<Node Name='N'><Integer Name='I'/></Node>", 15, kUnexpected},
        {"<Integer Name='I'></Integer>", 18, kMissing},
        {"<Float Name='F'><pIndex>I</pIndex></Float>", 34, kMissing},
        {"<Category><pFeature>F</pFeature></Category>", 0, kAttribute},
        {"<IntSwissKnife Name='K'><pVariable>A</pVariable></IntSwissKnife>", 24, kAttribute},
        {"<Node Name='N' NameSpace='Mine'/>", 0, kWord},
        {"<Node Name='N'><Visibility>All</Visibility></Node>", 30, kWord},
        {"<Float Name='F'><Value>1</Value><Representation>HexNumber</Representation></Float>", 57,
         kWord},
        {"<Node Name='N'></Value>", 17, "mismatched tag"},
    };
    for (const Refused& refused : cases)
        EXPECT_EQ(parseError(2, refused.column, refused.reason), errorOf(document(refused.nodes)))
            << refused.nodes;
}

TEST(DescriptionErrors, BitsAreOneBitOrARange) {
    const std::string start = std::string(kPort) + "<MaskedIntReg Name='R'>" + kRegister +
                              "<Endianess>LittleEndian</Endianess>";
    const auto error = [&](const char* bits) {
        return errorOf(document(start + bits + "</MaskedIntReg>"));
    };
    EXPECT_EQ("nothing", error("<Bit>3</Bit>"));
    EXPECT_EQ("nothing", error("<LSB>3</LSB><MSB>4</MSB>"));
    EXPECT_THAT(error("<LSB>3</LSB>"), testing::HasSubstr("expected element not encountered"));
    EXPECT_THAT(error("<Bit>3</Bit><MSB>4</MSB>"), testing::HasSubstr("unexpected element"));
}

TEST(DescriptionErrors, DocumentsThatAreNone) {
    EXPECT_EQ(parseError(1, 0, "syntax error"), errorOf("hello"));
    EXPECT_THAT(errorOf(" "), testing::HasSubstr("no element found"));
    EXPECT_THAT(errorOf(document("") + "x"), testing::HasSubstr("junk after document element"));
    EXPECT_EQ(parseError(1, 1, "XML or text declaration not at start of entity"),
              errorOf(" <?xml version='1.0'?>" + document("")));
    EXPECT_EQ("nothing", errorOf("\xEF\xBB\xBF" + document("")));
    EXPECT_EQ(parseError(1, 0, "unexpected element encountered"), errorOf("<Camera/>"));
    EXPECT_EQ(parseError(1, 0, "unexpected element encountered"), errorOf(document("", 2)));
    std::string nameless = document("");
    nameless.replace(nameless.find("ModelName"), 9, "modelName");
    EXPECT_EQ(parseError(1, 0, "expected attribute not encountered"), errorOf(nameless));
    EXPECT_THAT(errorOf("<!DOCTYPE a [<!ENTITY b 'c'>]>" + document("")),
                testing::HasSubstr("entity declarations are not accepted"));
}

TEST(DescriptionErrors, NamesThatDoNotFit) {
    EXPECT_EQ("Fatal error : Dangling node reference 'Nope'",
              errorOf(document("<Integer Name='I'><pValue>Nope</pValue></Integer>")));
    EXPECT_EQ("XML Parse error at line 3 and column 34, Found a duplicate node'I'.",
              errorOf(document(integer("I") + "\n" + integer("I"))));
    EXPECT_THAT(errorOf(document(integer("_K_C") + "<IntSwissKnife Name='K'><Constant Name='C'>1"
                                                   "</Constant><Formula>C</Formula>"
                                                   "</IntSwissKnife>")),
                testing::HasSubstr("duplicate node'_K_C'"));
}

TEST(DescriptionErrors, LaterElementsInOldDescriptions) {
    const std::string nodes = "<Node Name='N'><DocuURL>u</DocuURL></Node>";
    EXPECT_EQ("nothing", errorOf(document(nodes, 1)));
    EXPECT_THAT(errorOf(document(nodes, 0)), testing::HasSubstr("unexpected element"));
    EXPECT_THAT(errorOf(document("<String Name='S'><Value>a</Value></String>", 0)),
                testing::HasSubstr("unexpected element"));
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
