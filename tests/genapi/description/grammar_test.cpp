// What may stand where in a description, with which attributes and texts: the same for both
// schemas.
#include <algorithm>
#include <sstream>

#include <Base/GCException.h>
#include <gtest/gtest.h>

#include "genapi/description/contentmodel.h"
#include "genapi/description/nodedata.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::GenericException;
using GENICAM_NAMESPACE::OutOfRangeException;
using GENICAM_NAMESPACE::PropertyException;
using GENICAM_NAMESPACE::RuntimeException;

constexpr const char* kFine = "nothing";
constexpr const char* kMissing = "expected element not encountered";
constexpr const char* kTooMuch = "unexpected element encountered";
constexpr const char* kNoAttribute = "expected attribute not encountered";
constexpr const char* kAttribute = "unexpected attribute encountered";
constexpr const char* kWord = "value is not in enumeration";
constexpr const char* kShort = "length is less than minimum allowed";
constexpr const char* kText = "unexpected characters encountered";
constexpr const char* kInteger = "invalid integer value";
constexpr const char* kDouble = "invalid double value";
constexpr const char* kBoolean = "invalid boolean value";

// What the nodes may refer to.
const std::string kOthers = kPort + integer("X") + named("Float", "XF", element("Value", "1.5")) +
                            named("Boolean", "XB", element("Value", "true")) +
                            named("Enumeration", "XE", entry("A", 1) + element("Value", 1)) +
                            named("String", "XS", element("Value", "s")) +
                            named("Category", "XC", "");

// Why a description is refused: the reason of a parse error, or else the whole text.
std::string reasonOf(const std::string& nodes, int minor) {
    const std::string text =
        textOf<GenericException>([&] { load(document(nodes + kOthers, minor)); });
    if (text.find("parsing XML stream") == std::string::npos) return text;
    const std::size_t quote = text.find('\'') + 1;
    return text.substr(quote, text.size() - quote - 1);
}

struct Case {
    std::string nodes;
    std::string reason;
};

void check(const std::vector<Case>& cases) {
    for (const Case& one : cases)
        for (const int minor : {0, 1})
            EXPECT_EQ(one.reason, reasonOf(one.nodes, minor)) << one.nodes << minor;
}

// "ok", or whether something was missing or too much, when the elements come one after the other.
std::string verdict(const ContentModel& model, const std::string& elements) {
    ContentModel::State state = model.begin();
    std::istringstream words(elements);
    for (std::string word; words >> word;) {
        const ContentModel::State next = model.after(state, findTag(word)->key);
        if (next == 0) return word + ((state & ContentModel::kEnd) != 0 ? " too much" : " early");
        state = next;
    }
    return (state & ContentModel::kEnd) != 0 ? "ok" : "missing";
}

TEST(ContentModels, FollowTheirExpression) {
    const ContentModel model("Unit? (Min | pMin (Max | pMax)+)* Value");
    EXPECT_EQ("missing", verdict(model, ""));
    EXPECT_EQ("ok", verdict(model, "Value"));
    EXPECT_EQ("ok", verdict(model, "Unit Min Min pMin Max pMax Min pMin Max Value"));
    EXPECT_EQ("Unit early", verdict(model, "Unit Unit"));
    EXPECT_EQ("Max early", verdict(model, "Min Max"));
    EXPECT_EQ("Value early", verdict(model, "pMin Value"));
    EXPECT_EQ("Value too much", verdict(model, "Value Value"));
    const ContentModel repeated("(Unit? Value)+");
    EXPECT_EQ("ok", verdict(repeated, "Value Unit Value Value"));
    EXPECT_EQ("missing", verdict(repeated, "Value Unit"));
    EXPECT_EQ("Min too much", verdict(ContentModel(""), "Min"));
}

TEST(Grammar, OrderOfElements) {
    const std::string place = "<Address>0</Address><Length>4</Length>";
    const std::string port = "<AccessMode>RW</AccessMode><pPort>Device</pPort>";
    const std::string invalidator = element("pInvalidator", "X");
    const std::string streamable = element("Streamable", "Yes");
    const std::string halves = "<FormulaTo>FROM</FormulaTo><FormulaFrom>TO</FormulaFrom>";
    const std::string value = element("pValue", "X");
    check({
        // the elements of every node; what is new in schema 1.1 also in 1.0
        {named("Node", "N",
               "<Extension/><ToolTip>t</ToolTip><Description>d</Description>"
               "<DisplayName>n</DisplayName><Visibility>Guru</Visibility><DocuURL>u</DocuURL>"
               "<IsDeprecated>No</IsDeprecated><EventID>1</EventID>"
               "<pIsImplemented>X</pIsImplemented><pIsAvailable>X</pIsAvailable>"
               "<pIsLocked>X</pIsLocked><pBlockPolling>X</pBlockPolling>"
               "<ImposedAccessMode>RO</ImposedAccessMode><pError>XE</pError><pError>XE</pError>"
               "<pAlias>X</pAlias><pCastAlias>X</pCastAlias>" +
                   invalidator + invalidator),
         kFine},
        {named("Node", "N", "<Description>d</Description><ToolTip>t</ToolTip>"), kTooMuch},
        {named("Node", "N", "<ToolTip>t</ToolTip><ToolTip>t</ToolTip>"), kTooMuch},
        {named("Node", "N", "<ToolTip>t</ToolTip><Extension/>"), kTooMuch},
        {named("Node", "N", "<Extension/><Extension/>"), kTooMuch},
        {named("Node", "N", "<Nope/>"), kTooMuch},
        // pInvalidator and Streamable: registers have them elsewhere
        {named("Integer", "I", invalidator + streamable + value), kFine},
        {named("Integer", "I", streamable + invalidator + value), kMissing},
        {named("Register", "R",
               streamable + place + port +
                   "<Cachable>NoCache</Cachable><PollingTime>1</PollingTime>" + invalidator),
         kFine},
        {named("Register", "R", invalidator + streamable + place + port), kMissing},
        {named("Register", "R", place + port + streamable), kTooMuch},
        {named("Register", "R", place + port + invalidator + element("PollingTime", 1)), kTooMuch},
        // the place of a register
        {named("Register", "R",
               "<pAddress>X</pAddress><Address>1</Address><pIndex Offset='4'>X</pIndex>"
               "<IntSwissKnife Name='K'><Formula>1</Formula></IntSwissKnife>"
               "<pLength>X</pLength>" +
                   port),
         kFine},
        {named("Register", "R", "<Length>4</Length><Address>0</Address>" + port), kMissing},
        {named("Register", "R", place + element("pLength", "X") + port), kMissing},
        {named("Register", "R", place + "<pPort>Device</pPort><AccessMode>RW</AccessMode>"),
         kMissing},
        // integers and floats
        {named("Integer", "I", "<pValueCopy>X</pValueCopy>" + value + "<pValueCopy>X</pValueCopy>"),
         kFine},
        {named("Integer", "I", "<pValueCopy>X</pValueCopy>"), kMissing},
        {named("Float", "F", "<pValueCopy>X</pValueCopy>" + value), kMissing},
        {named("Integer", "I",
               "<pIndex>X</pIndex><ValueIndexed Index='1'>1</ValueIndexed>"
               "<pValueIndexed Index='2'>X</pValueIndexed><ValueDefault>3</ValueDefault>"
               "<pMin>X</pMin><Max>1</Max><pInc>X</pInc><Unit>m</Unit>"
               "<Representation>Linear</Representation><ValidValueSet>1;2</ValidValueSet>"
               "<pSelected>XF</pSelected>"),
         kFine},
        {named("Integer", "I", "<pIndex>X</pIndex><ValueDefault>3</ValueDefault>"), kMissing},
        {named("Integer", "I", element("Value", 1) + value), kTooMuch},
        {literal("I", "1", "<Min>1</Min><pMin>X</pMin>"), kTooMuch},
        {literal("I", "1", "<Max>1</Max><Min>1</Min>"), kTooMuch},
        {literal("F", "1", "<pSelected>X</pSelected>", "Float"), kTooMuch},
        {literal("F", "1",
                 "<DisplayNotation>Fixed</DisplayNotation><DisplayPrecision>1</DisplayPrecision>",
                 "Float"),
         kFine},
        // bits
        {named("MaskedIntReg", "R", place + port + "<LSB>0</LSB><MSB>1</MSB>" + kLittle), kFine},
        {named("MaskedIntReg", "R", place + port + "<MSB>1</MSB><LSB>0</LSB>" + kLittle), kMissing},
        {named("MaskedIntReg", "R", place + port + "<LSB>0</LSB>" + kLittle), kMissing},
        {named("MaskedIntReg", "R", place + port + "<Bit>0</Bit><MSB>1</MSB>" + kLittle), kMissing},
        {named("MaskedIntReg", "R",
               "<Address>0</Address><pLength>X</pLength>" + port + "<Bit>0</Bit>" + kLittle),
         kMissing},
        {named("IntReg", "R", place + port + kLittle + element("Sign", "Signed")), kTooMuch},
        {"<StructReg Comment=''>" + place + port + kLittle +
             named("StructEntry", "E",
                   "<PollingTime>1</PollingTime>" + streamable + "<Bit>1</Bit><Unit>u</Unit>") +
             "</StructReg>",
         kFine},
        {"<StructReg Comment=''>" + place + port + kLittle + "</StructReg>", kMissing},
        {"<StructReg Comment=''>" + place + port + kLittle +
             named("StructEntry", "E", "<Bit>1</Bit>" + streamable) + "</StructReg>",
         kTooMuch},
        // other kinds
        {named("Boolean", "B", "<OnValue>1</OnValue><Value>true</Value>"), kMissing},
        {named("Command", "C",
               value + "<CommandValue>1</CommandValue>" + element("PollingTime", 1)),
         kFine},
        {named("Command", "C", streamable + value + "<CommandValue>1</CommandValue>"), kMissing},
        {named("Enumeration", "E", entry("A", 1) + value + "<PollingTime>1</PollingTime>"), kFine},
        {named("Enumeration", "E", value), kMissing},
        {named("Enumeration", "E", value + entry("A", 1)), kMissing},
        {named("Enumeration", "E", "<pEnumEntry>A</pEnumEntry>" + value), kMissing},
        {named("Enumeration", "E", named("EnumEntry", "A", entry("B", 1)) + value), kTooMuch},
        {named("Enumeration", "E",
               entry("A", 1, "",
                     "<NumericValue>1.5</NumericValue><Symbolic>s</Symbolic>"
                     "<IsSelfClearing>No</IsSelfClearing>") +
                   value),
         kFine},
        {named("Enumeration", "E", named("EnumEntry", "A", "<Symbolic>s</Symbolic>") + value),
         kMissing},
        {named("SwissKnife", "K",
               "<pVariable Name='A'>X</pVariable><Constant Name='C'>1.5</Constant>"
               "<Expression Name='E'>1</Expression><Formula>A</Formula>"),
         kFine},
        {named("SwissKnife", "K", "<Formula>A</Formula><pVariable Name='A'>X</pVariable>"),
         kTooMuch},
        {named("IntSwissKnife", "K",
               "<Constant Name='C'>1</Constant>"
               "<pVariable Name='A'>X</pVariable><Formula>A</Formula>"),
         kMissing},
        {named("Converter", "C", halves + value + "<Slope>Varying</Slope><IsLinear>No</IsLinear>"),
         kFine},
        {named("IntConverter", "C", halves + value + "<Slope>Varying</Slope>"), kFine},
        {named("IntConverter", "C", halves + value + "<IsLinear>No</IsLinear>"), kTooMuch},
        {named("Converter", "C", value + halves), kMissing},
        {named("Port", "P", "<ChunkID>1</ChunkID><SwapEndianess>No</SwapEndianess>"), kFine},
        {named("Port", "P", "<SwapEndianess>No</SwapEndianess><ChunkID>1</ChunkID>"), kTooMuch},
        {named("String", "S", "<Value>a</Value><pValue>XS</pValue>"), kTooMuch},
        {named("Category", "C", "<pFeature>X</pFeature>" + invalidator), kTooMuch},
        // top level
        {"<Group Comment='a'><Group Comment='b'>" + integer("I") + "</Group></Group>", kFine},
        {"<Nope/>", kTooMuch},
        {"<Extension/>", kTooMuch},
        {named("StructEntry", "E", "<Bit>1</Bit>"), kTooMuch},
        {named("Integer", "I", "<Value>1<b/></Value>"), kTooMuch},
    });
}

TEST(Grammar, Extensions) {
    const auto extension = [](const std::string& text) {
        return named("Node", "N", text + "<ToolTip>t</ToolTip>");
    };
    check({
        {extension("<Extension><a x='1'>b<c xmlns='d'/></a>" + integer("X") + "</Extension>"),
         kFine},
        {extension("<Extension>text</Extension>"), kText},
        {extension("<Extension a='1'/>"), kAttribute},
        {extension("<Extension><q:a/></Extension>"), "unbound prefix"},
    });
}

TEST(Grammar, Attributes) {
    const std::string reg = "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>";
    check({
        {"<Node Name='N' NameSpace='Standard' MergePriority=' -1' ExposeStatic='Yes'/>", kFine},
        {"<Node Name='N' NameSpace=''/>", kFine},
        {"<Node Name='N' NameSpace='Std'/>", kWord},
        {"<Node Name='N' NameSpace=' Custom'/>", kWord},
        {"<Node Name='N' MergePriority='x'/>", kInteger},
        {"<Node Name='N' MergePriority=''/>", kInteger},
        {"<Node Name='N' ExposeStatic=''/>", kWord},
        {"<Node Name='N' Nope=''/>", kAttribute},
        {"<Node/>", kNoAttribute},
        {"<Node Name='N' xml:lang='en'/>", kAttribute},
        {"<Node Name='N' xmlns:s='http://www.w3.org/2001/XMLSchema-instance' s:nil='true'/>",
         kFine},
        {"<Node Name='N' xmlns:s='http://www.w3.org/2001/XMLSchema-instance' s:nope='true'/>",
         kAttribute},
        {"<Node Name='N' xmlns:s='other' s:nil='true'/>", kAttribute},
        {"<Node Name='N' s:nil='true'/>", "unbound prefix"},
        {"<a:Node xmlns:a='u' Name='N'/><a:Node Name='M'/>", "unbound prefix"},
        {"<Group Comment=''/>", kFine},
        {"<Group/>", kNoAttribute},
        {"<Group>" + integer("I") + "</Group>", kNoAttribute},
        {"<Group Comment='' Name=''/>", kAttribute},
        {"<StructReg Comment='' Name='S'/>", kAttribute},
        {named("Integer", "I", "<Value a=''>1</Value>"), kAttribute},
        {named("IntSwissKnife", "K", "<pVariable>X</pVariable><Formula>1</Formula>"), kNoAttribute},
        {named("IntSwissKnife", "K", "<pVariable Name=''>X</pVariable><Formula>1</Formula>"),
         kFine},
        {named("Integer", "I",
               "<pIndex>X</pIndex><ValueIndexed>1</ValueIndexed><ValueDefault>1</ValueDefault>"),
         kNoAttribute},
        {named("Integer", "I",
               "<pIndex Offset='4'>X</pIndex><ValueIndexed Index='1'>1</ValueIndexed>"
               "<ValueDefault>1</ValueDefault>"),
         kAttribute},
        {named("Register", "R", "<pIndex Offset='4' pOffset='X'>X</pIndex>" + reg), kFine},
        {named("Register", "R", "<pIndex Index='4'>X</pIndex>" + reg), kAttribute},
    });
    std::string root = document("");
    root.insert(root.find(" VendorName"), " Nope=''");
    EXPECT_NE(std::string::npos, textOf<RuntimeException>([&] { load(root); }).find(kAttribute));
    root = document("");
    root.replace(root.find("'GEV'"), 5, "'gev'");
    EXPECT_NE(std::string::npos, textOf<RuntimeException>([&] { load(root); }).find(kWord));
    root = document("");
    root.replace(root.find("MajorVersion='2'"), 16, "MajorVersion='x'");
    EXPECT_EQ("Error in property of type 'MajorVersion': cannot convert 'x' to int64_t",
              textOf<PropertyException>([&] { load(root); }));
}

TEST(Grammar, Words) {
    const auto node = [](const std::string& name, const std::string& text) {
        return named("Integer", "I", element(name, text) + element("Value", 1));
    };
    const auto reg = [](const std::string& access, const std::string& after = "") {
        return named("IntReg", "R", registerAt(0, 4, access) + after);
    };
    check({
        {node("Visibility", ""), kFine},
        {node("Visibility", "guru"), kWord},
        {node("Streamable", ""), kFine},
        {node("Streamable", "Yes "), kWord},
        {node("ImposedAccessMode", ""), kFine},
        {node("ImposedAccessMode", "NA"), kWord},
        {reg("", element("Cachable", "") + element("Sign", "") + element("Endianess", "")), kFine},
        {reg("rw", kLittle), kWord},
        {reg("RW", element("Cachable", "Yes") + kLittle), kWord},
        {reg("RW", element("Sign", "signed") + kLittle), kWord},
        {reg("RW", element("Endianess", "Little")), kWord},
        {literal("I", "1", element("Representation", "MACAddress")), kFine},
        {literal("I", "1", element("Representation", "")), kWord},
        {literal("F", "1", element("Representation", "PureNumber"), "Float"), kFine},
        {literal("F", "1", element("Representation", "HexNumber"), "Float"), kWord},
        {literal("F", "1", element("DisplayNotation", ""), "Float"), kWord},
        {node("ToolTip", " "), kFine},
        {node("ToolTip", ""), kShort},
        {node("DisplayName", ""), kShort},
        {node("DocuURL", ""), kFine},
        {node("EventID", ""), kFine},
        {literal("I", "1", element("Unit", "")), kShort},
        {literal("I", "1", element("ValidValueSet", "")), kShort},
        {literal("S", "", "", "String"), kFine},
        {named("Node", "N", "text"), kText},
        {"text", kText},
        {named("Integer", "I", "<Value>1<!-- a -->2<![CDATA[3]]></Value>"), kFine},
        {named("SmartFeature", "F",
               "<FeatureID>1</FeatureID><Address>0</Address><pPort>Device</pPort>"),
         "Error while parsing XML file : 1 is not a valid GUID "},
        {named("SmartFeature", "F",
               "<FeatureID>11111111-2222-3333-4444-55555555555a</FeatureID><Address>0</Address>"
               "<pPort>Device</pPort>"),
         kFine},
    });
}

// An empty element is the default, not nothing.
TEST(Grammar, EmptyWordsAreDefaults) {
    const auto description = load(document(kPort + named("IntReg", "R",
                                                         "<Streamable/>" + registerAt(0, 4, "") +
                                                             "<Cachable/><Sign/>"
                                                             "<Endianess/>")));
    const NodeId id = description->find("R");
    EXPECT_EQ("No", description->text(id, Element::Streamable));
    EXPECT_EQ("RO", description->text(id, Element::AccessMode));
    EXPECT_EQ("WriteThrough", description->text(id, Element::Cachable));
    EXPECT_EQ("Unsigned", description->text(id, Element::Sign));
    EXPECT_EQ("LittleEndian", description->text(id, Element::Endianess));
}

TEST(Grammar, Integers) {
    for (const char* text : {"12", " \n12", "+12", "-12", "012", "0x1F", "0X1f",
                             "9223372036854775807", "-9223372036854775808", "0x7FFFFFFFFFFFFFFF"})
        EXPECT_NO_THROW(load(document(literal("I", text)))) << text;
    for (const char* text :
         {"", "12 ", "-0x10", "0x", "0x-1", "1.0", "1e3", "+-1", "1 2", "9223372036854775808",
          "-9223372036854775809", "0x8000000000000000", "0xFFFFFFFFFFFFFFFF"})
        EXPECT_EQ(std::string("Error in property of type 'Value': cannot convert '") + text +
                      "' to int64_t",
                  textOf<PropertyException>([&] { load(document(literal("I", text))); }));
    const auto error = [](const std::string& nodes) {
        return textOf<PropertyException>([&] { load(document(nodes + kOthers)); });
    };
    const auto wrong = [](const char* type) {
        return std::string("Error in property of type '") + type +
               "': cannot convert 'x' to int64_t";
    };
    EXPECT_EQ(wrong("Inc"), error(literal("I", "1", element("Inc", "x"))));
    EXPECT_EQ(wrong("ValueIndexed"),
              error(named("Integer", "I",
                          "<pIndex>X</pIndex><ValueIndexed Index='x'>1</ValueIndexed>"
                          "<ValueDefault>1</ValueDefault>")));
    EXPECT_EQ(wrong("Offset"),
              error(named("Register", "R", registerAt("<pIndex Offset='x'>X</pIndex>", 4))));
    EXPECT_EQ(wrong("Invalid PropertyID 114"), error(named("IntSwissKnife", "K",
                                                           "<Constant Name='C'>x</Constant>"
                                                           "<Formula>C</Formula>")));
    EXPECT_EQ(wrong("Invalid PropertyID 113"),
              error(named("MaskedIntReg", "R", registerAt(0, 4) + "<Bit>x</Bit>" + kLittle)));
}

TEST(Grammar, FloatsAndBooleans) {
    const auto value = [](const char* kind, const std::string& text) {
        return Case{named(kind, "N", element("Value", text)), kFine};
    };
    std::vector<Case> cases;
    for (const char* text : {"1.5", " 1.5\n", "+1.5", ".5", "5.", "1e5", "0x10",
                             "0xFFFFFFFFFFFFFFFF", "INF", "inf", "-INF", "NaN", "nan", "-0"})
        cases.push_back(value("Float", text));
    for (const char* text : {"", " ", "1,5", "1.5f", "1e400", "1e-400", "abc", "0x", "0x-1"}) {
        cases.push_back(value("Float", text));
        cases.back().reason = kDouble;
    }
    for (const char* text : {"true", " false ", "1", "0"})
        cases.push_back(value("Boolean", text));
    for (const char* text : {"", "True", "yes", "2"}) {
        cases.push_back(value("Boolean", text));
        cases.back().reason = kBoolean;
    }
    cases.push_back({literal("F", "1", element("Max", ""), "Float"), kDouble});
    cases.push_back(
        {named("SwissKnife", "K", "<Constant Name='C'>x</Constant><Formula>C</Formula>"), kDouble});
    cases.push_back({named("Enumeration", "E",
                           entry("A", 1, "", element("NumericValue", "x")) + element("Value", 1)),
                     kDouble});
    cases.push_back({literal("B", "true", element("OnValue", 0), "Boolean"),
                     "Boolean node 'B' has identical on and off value"});
    check(cases);
}

TEST(Grammar, Names) {
    const auto invalid = [](const std::string& name, int column = 0) {
        return "XML Parse error at line 2 and column " + std::to_string(column) +
               ", Invalid node name '" + name + "'";
    };
    const std::string reg =
        "<IntSwissKnife Name='_K'><Formula>1</Formula></IntSwissKnife>" + registerAt(0, 4);
    check({
        {integer("9"), kFine},
        {integer("A.B::C d-\xC3\xA4"), kFine},
        {integer("A\n"), kFine},
        {integer(""), invalid("")},
        {integer(" I"), invalid(" I")},
        {integer("_I"), invalid("_I")},
        {integer("\xC3\xA4"), invalid("\xC3\xA4")},
        {named("Enumeration", "E", entry("_1.5/a", 1) + entry("", 2) + element("Value", 1)), kFine},
        // Formulas in registers are named after these, but for those of strings.
        {named("Register", "R", reg), kFine},
        {named("StringReg", "R", reg), invalid("_K", 20)},
    });
}

TEST(Grammar, KindsOfReferences) {
    const std::string integerText =
        "CIntegerPolyRef::operator(IBase*) : pointer is neither "
        "IInteger*, nor IEnumeration*, nor IBoolean*, nor IFloat*";
    const std::string conditionText =
        "CIntegerPolyRef::operator(IBase*) : pointer is neither "
        "IInteger*, IEnumeration*, nor IBoolean*";
    const std::string floatText =
        "CFloatPolyRef::operator(IBase*) : pointer is neither IFloat*, "
        "IInteger*, nor IEnumeration*";
    const std::string stringText = "CStringPolyRef::operator(IBase*) : pointer is not IString*";
    const auto condition = [](const std::string& link, const std::string& node) {
        return named("Integer", "I", element(link, node) + element("Value", 1));
    };
    const auto dangling = [](const std::string& name) {
        return "Error in XML stream : dangling node reference '" + name + "'";
    };
    std::vector<Case> cases = {
        {over("I", "XS"), integerText},
        {over("I", "XC"), integerText},
        {literal("I", "1", element("pMax", "XS")), integerText},
        {over("F", "XB", "", "Float"), floatText},
        {over("F", "XS", "", "Float"), floatText},
        {over("S", "X", "", "String"), stringText},
        {named("Port", "P", element("pChunkID", "X")), stringText},
        {named("Port", "P", element("pChunkID", "XS")), kFine},
        {condition("pBlockPolling", "XF"), kFine},
        {over("I", " X"), dangling(" X")},
        {over("I", "Cust::X"), dangling("Cust::X")},
        {over("I", ""), dangling("")},
        {condition("pAlias", "Nope"), dangling("Nope")},
    };
    for (const char* target : {"X", "XF", "XB", "XE"})
        cases.push_back({over("I", target), kFine});
    for (const char* target : {"X", "XF", "XE"})
        cases.push_back({over("F", target, "", "Float"), kFine});
    for (const char* link : {"pIsImplemented", "pIsAvailable", "pIsLocked"}) {
        cases.push_back({condition(link, "XF"), conditionText});
        cases.push_back({condition(link, "XB"), kFine});
    }
    for (const char* target : {"X", "XS", "XC", "Device"})
        cases.push_back({condition("pInvalidator", target), kFine});
    check(cases);
}

TEST(Grammar, Masks) {
    const auto masked = [](int lsb, int msb, const std::string& order) {
        return named("MaskedIntReg", "R",
                     registerAt(0, 4) + element("LSB", lsb) + element("MSB", msb) + order);
    };
    const std::string node = "Node 'R' : For a ";
    const std::string littleWide =
        node + "little endian integer MSB must be smaller than 8 * Length";
    const std::string littleOrder =
        node + "little endian integer MSB must be greater or equal than LSB";
    const std::string bigWide = node + "big endian integer LSB must be smaller than 8 * Length";
    const std::string bigOrder = node + "big endian integer LSB must be greater or equal than MSB";
    check({
        {masked(0, 31, kLittle), kFine},
        {masked(5, 5, kLittle), kFine},
        {masked(31, 0, kLittle), littleOrder},
        {masked(33, 32, kLittle), littleWide},
        {masked(-1, 3, kLittle), littleOrder},
        {masked(3, -1, kLittle), littleWide},
        {masked(31, 0, kBig), kFine},
        {masked(0, 31, kBig), bigOrder},
        {masked(32, 33, kBig), bigOrder},
        {masked(33, 32, kBig), bigWide},
        {masked(-1, 3, kBig), bigWide},
    });
    const auto ofLength = [](int length) {
        return document(
            named("MaskedIntReg", "R", registerAt(0, length) + "<Bit>0</Bit>" + kLittle) + kPort);
    };
    EXPECT_NO_THROW(load(ofLength(8)));
    EXPECT_EQ("Value = 9 must be equal or smaller than Max = 8",
              textOf<OutOfRangeException>([&] { load(ofLength(9)); }));
    EXPECT_EQ("Value = 0 must be equal or greater than Min = 1",
              textOf<OutOfRangeException>([&] { load(ofLength(0)); }));
}

TEST(Grammar, ValidValues) {
    const auto valuesOf = [](const std::string& text) {
        const auto description = load(document(literal("I", "1", element("ValidValueSet", text))));
        return description->tables().validValues;
    };
    using Values = std::vector<std::int64_t>;
    EXPECT_EQ(valuesOf("0x10; 5 ;;3;5"), (Values{3, 5, 5, 16}));
    EXPECT_EQ(valuesOf("1,2;x"), (Values{1}));
    EXPECT_EQ(valuesOf("a;b"), (Values{}));
}

}  // namespace
}  // namespace test
