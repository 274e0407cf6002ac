// The text of a feature bag.
#include <sstream>
#include <string>

#include <GenApi/Persistence.h>
#include <gmock/gmock.h>

#include "tests/genapi/persistence/bag.h"
#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::RuntimeException;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const std::string kMagic = "# " GENAPI_PERSISTENCE_MAGIC "\n";
const std::string kHeader = kMagic + "# GenApi persistence file (version 3.0.2)\n";

CFeatureBag Read(const std::string& text) {
    std::istringstream stream(text);
    CFeatureBag bag;
    stream >> bag;
    return bag;
}

// What is written of the entries that were read.
std::string Again(const std::string& entries) {
    return test::TextOf(Read(kMagic + entries)).substr((kHeader + "# \n").size());
}

std::string ErrorOf(const std::string& text) {
    try {
        Read(text);
    } catch (const RuntimeException& error) {
        return error.GetDescription();
    }
    return "none";
}

constexpr const char* kIncomplete = "The stream holds incomplete key - value - set";

TEST(FeatureBagText, AnEmptyBagHasItsHeaderWithTheInfoInOneLine) {
    CFeatureBag bag;
    EXPECT_EQ(test::TextOf(bag), kHeader + "# \n");
    bag.SetInfo("one\ntwo");
    EXPECT_EQ(test::TextOf(bag), kHeader + "# one two\n");
}

TEST(FeatureBagText, EntriesKeepTheirOrderAndTheirValuesAsTheyAre) {
    EXPECT_EQ(Again("B\t2\nA\t1\n"), "B\t2\nA\t1\n");
    EXPECT_EQ(Again("  Width \t73 \nText\ta\tb\n"), "Width\t73 \nText\ta\tb\n");
    EXPECT_EQ(Again("Empty\t\nLast\t1"), "Empty\t\nLast\t1\n");
    EXPECT_EQ(Again("\n# comment\nA\t1\n \t \n # x\t1\n#\nA\t2\n\n"), "A\t1\nA\t2\n");
    EXPECT_EQ(Again("# " + std::string(5000, 'x') + "\nA\t1\n"), "A\t1\n");
}

TEST(FeatureBagText, WhatDoesNotFitIntoALineIsLeftOutWithAComment) {
    const char* const note = "\n# Left out: Name, which does not fit into a line\nRatio\t";
    for (const char* value : {"a\nWidth\t9", "\n", "a\rWidth\t9", "a\r", "{Width=9}\tb", "{\t"}) {
        SCOPED_TRACE(value);
        test::Camera camera;
        camera.Set("Width", "5");
        camera.Set("Name", value);
        GENICAM_NAMESPACE::gcstring_vector names;
        for (const char* name : {"Width", "Name", "Ratio"})
            names.push_back(name);
        CFeatureBag bag;
        bag.StoreToBag(camera.NodeMap(), -1, &names);
        EXPECT_THAT(test::TextOf(bag), HasSubstr(note));
        test::Camera other;
        EXPECT_THAT(test::Load(other, test::TextOf(bag)), IsEmpty());
        EXPECT_EQ(other.Get("Width"), "5");
        // the bag itself needs no lines
        EXPECT_THAT(test::Load(bag, other), IsEmpty());
        EXPECT_EQ(other.Get("Name"), value);
    }
    for (const char* value : {"a\tb", "\t", "{Width=9}", "# a", " a ", "]]>", ""})
        EXPECT_EQ(Again(std::string("A\t") + value + "\n"), std::string("A\t") + value + "\n");
    const std::string zero("A\t1\0B\t2\nC\t3\n", 12);
    EXPECT_EQ(Again(zero), "# Left out: A, which does not fit into a line\nC\t3\n");
}

TEST(FeatureBagText, ASelectorThatDoesNotFitIntoALineIsAnError) {
    test::Camera camera(
        test::Features({"Sel", "Value"}) +
        "<String Name='Sel'><Streamable>Yes</Streamable><Value>a</Value></String>"
        "<Integer Name='Index'><Value>0</Value><pSelected>Sel</pSelected>"
        "<pSelected>Value</pSelected></Integer>"
        "<Enumeration Name='Odd'><EnumEntry Name='A'><Value>0</Value>"
        "<Symbolic>a&#10;b</Symbolic></EnumEntry><Value>0</Value>"
        "<pSelected>Value</pSelected></Enumeration>"
        "<Integer Name='Value'><Streamable>Yes</Streamable><Value>1</Value></Integer>"
        "<Port Name='Device'/>");
    CFeatureBag bag;
    EXPECT_THROW(bag.StoreToBag(camera.NodeMap()), RuntimeException);
}

TEST(FeatureBagText, LinesMayEndInCarriageReturnsToo) {
    std::string text = kMagic + "# x\nWidth\t5\nName\tabc\nSel\tC\n";
    for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
        text.insert(at, "\r");
    CFeatureBag bag = Read(text);
    test::Camera camera;
    EXPECT_THAT(test::Load(bag, camera), IsEmpty());
    EXPECT_EQ(camera.Get("Name"), "abc");
    // otherwise it belongs to the value
    EXPECT_THAT(test::Load(camera, "Name\tabc\r\nWidth\t6\r\n"), IsEmpty());
    EXPECT_EQ(camera.Get("Name"), "abc\r");
}

TEST(FeatureBagText, SelectorsInBracesBecomeEntriesBeforeTheFeature) {
    EXPECT_EQ(Again("Gain\t{Sel=A}\t10\n"), "Sel\tA\nGain\t10\n");
    EXPECT_EQ(Again("Lut\t{Bank=0\tIndex=1}\t\n"), "Bank\t0\nIndex\t1\nLut\t\n");
    EXPECT_EQ(Again("A\t{}\ty\n"), "A\ty\n");
    EXPECT_EQ(ErrorOf(kMagic + "A\t{x=1\ty\n"), kIncomplete);
}

TEST(FeatureBagText, OtherBracesAreAPartOfTheValue) {
    for (const char* line : {"A\t{x}\n", "A\t{x=1}\n", "A\t{\n", "A\ta{x=1}\t2\n"})
        EXPECT_EQ(Again(line), line);
}

TEST(FeatureBagText, WhatIsNoSuchTextIsRefused) {
    const char* const noMagic =
        "The stream is not a GenApi feature stream since it is missing the magic GUID in the "
        "first line";
    EXPECT_EQ(ErrorOf(""), noMagic);
    EXPECT_EQ(ErrorOf("\n" + kMagic), noMagic);
    EXPECT_EQ(ErrorOf(std::string(100, '\0')), noMagic);
    EXPECT_EQ(ErrorOf("# " GENAPI_PERSISTENCE_MAGIC_FEATUREBAGGER "\n"),
              "The stream has been created using the CFeatureBagger class thus must be restored "
              "using the CFeatureBagger class as well");
    EXPECT_EQ(ErrorOf(kMagic + "Width\n"), kIncomplete);
    EXPECT_EQ(ErrorOf(kMagic + "\tWidth"), kIncomplete);
    EXPECT_EQ(ErrorOf(kMagic + "A\t1\n\n\x01\x02\xff"), kIncomplete);
}

TEST(FeatureBagText, ATextBeyondAnyCamerasIsRefused) {
    std::string lines = kMagic;
    lines.reserve(size_t(1) << 22);
    while (lines.size() < (size_t(1) << 21) + 100)
        lines += "A\t1\n";
    EXPECT_EQ(ErrorOf(lines), "The feature bag is full");

    struct Endless : std::streambuf {
        int_type underflow() override {
            setg(part, part, part + sizeof part);
            return traits_type::to_int_type(part[0]);
        }
        char part[4096] = {};
    } endless;
    std::istream stream(&endless);
    CFeatureBag bag;
    EXPECT_THROW(stream >> bag, RuntimeException);
}

TEST(FeatureBagText, ReadingReplacesTheEntriesAlsoWhenItFails) {
    CFeatureBag bag = Read(kMagic + "A\t1\n");
    std::istringstream other(kMagic + "B\t2\n");
    other >> bag;
    EXPECT_EQ(bag, Read(kMagic + "B\t2\n"));
    std::istringstream incomplete(kMagic + "B\t1\nC\n");
    EXPECT_THROW(incomplete >> bag, RuntimeException);
    EXPECT_EQ(bag, CFeatureBag());
}

TEST(FeatureBagText, AStreamIsReadToItsEndOnce) {
    std::istringstream stream(kMagic + "A\t1\n");
    CFeatureBag bag;
    EXPECT_TRUE(stream >> bag);
    try {
        stream >> bag;
        FAIL() << "read again";
    } catch (const RuntimeException& error) {
        EXPECT_STREQ(error.GetDescription(), "The stream is eof");
    }
}

TEST(FeatureBagText, CommentsAreEatenUpToTheirMaximum) {
    std::istringstream stream("# one\n#\ntwo");
    std::string word;
    EatComments(stream) >> word;
    EXPECT_EQ(word, "two");
    std::istringstream longComment("#" + std::string(1024, 'x') + "\n");
    EatComments(longComment) >> word;
    EXPECT_EQ(word, "x");
}

TEST(FeatureBag, BagsAreComparedByTheirEntries) {
    CFeatureBag bag = Read(kMagic + "A\t1\nB\t2\n");
    CFeatureBag copy(bag);
    copy.SetBagName("other");
    copy.SetInfo("other");
    EXPECT_EQ(copy, bag);
    EXPECT_STREQ(copy.GetBagName(), "other");
    EXPECT_NE(bag, Read(kMagic + "B\t2\nA\t1\n"));
    EXPECT_NE(bag, Read(kMagic + "A\t1\n"));
    EXPECT_NE(bag, Read(kMagic + "A\t1\nB\t3\n"));
    copy.Destroy();
    EXPECT_EQ(test::TextOf(copy), test::TextOf(CFeatureBag()));
}

}  // namespace
