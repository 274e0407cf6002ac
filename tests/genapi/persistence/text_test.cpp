// The text of a feature bag.
#include <sstream>
#include <string>

#include <GenApi/Persistence.h>
#include <gmock/gmock.h>

#include "tests/genapi/persistence/camera.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::RuntimeException;

namespace {

const std::string kMagic = "# " GENAPI_PERSISTENCE_MAGIC "\n";
const std::string kHeader = kMagic + "# GenApi persistence file (version 3.0.2)\n";

CFeatureBag read(const std::string& text) {
    std::istringstream stream(text);
    CFeatureBag bag;
    stream >> bag;
    return bag;
}

std::string write(const CFeatureBag& bag) {
    std::ostringstream stream;
    stream << bag;
    return stream.str();
}

// What is written of the entries that were read.
std::string again(const std::string& entries) {
    return write(read(kMagic + entries)).substr((kHeader + "# \n").size());
}

std::string errorOf(const std::string& text) {
    try {
        read(text);
    } catch (const RuntimeException& error) {
        return error.GetDescription();
    }
    return "none";
}

constexpr const char* kIncomplete = "The stream holds incomplete key - value - set";

TEST(FeatureBagText, AnEmptyBagHasItsHeaderWithTheInfoInOneLine) {
    CFeatureBag bag;
    EXPECT_EQ(write(bag), kHeader + "# \n");
    bag.SetInfo("one\ntwo");
    EXPECT_EQ(write(bag), kHeader + "# one two\n");
}

TEST(FeatureBagText, EntriesKeepTheirOrderAndTheirValuesAsTheyAre) {
    EXPECT_EQ(again("B\t2\nA\t1\n"), "B\t2\nA\t1\n");
    EXPECT_EQ(again("  Width \t73 \r\nText\ta\tb\n"), "Width\t73 \r\nText\ta\tb\n");
    EXPECT_EQ(again("Empty\t\nLast\t1"), "Empty\t\nLast\t1\n");
    EXPECT_EQ(again("\n# comment\nA\t1\n \t \n # x\t1\n#\nA\t2\n\n"), "A\t1\nA\t2\n");
    EXPECT_EQ(again("# " + std::string(5000, 'x') + "\nA\t1\n"), "A\t1\n");
    const std::string zero("A\t1\0002\n", 6);
    EXPECT_EQ(again(zero), zero);
}

TEST(FeatureBagText, SelectorsInBracesBecomeEntriesBeforeTheFeature) {
    EXPECT_EQ(again("Gain\t{Sel=A}\t10\n"), "Sel\tA\nGain\t10\n");
    EXPECT_EQ(again("Lut\t{Bank=0\tIndex=1}\t\n"), "Bank\t0\nIndex\t1\nLut\t\n");
}

TEST(FeatureBagText, OtherBracesAreAPartOfTheValue) {
    for (const char* line :
         {"A\t{x}\n", "A\t{x=1}\n", "A\t{x}\ty\n", "A\t{}\ty\n", "A\t{=1}\ty\n", "A\ta{x=1}\t2\n"})
        EXPECT_EQ(again(line), line);
}

TEST(FeatureBagText, WhatIsNoSuchTextIsRefused) {
    const char* const noMagic =
        "The stream is not a GenApi feature stream since it is missing the magic GUID in the "
        "first line";
    EXPECT_EQ(errorOf(""), noMagic);
    EXPECT_EQ(errorOf("\n" + kMagic), noMagic);
    EXPECT_EQ(errorOf(std::string(100, '\0')), noMagic);
    EXPECT_EQ(errorOf("# " GENAPI_PERSISTENCE_MAGIC_FEATUREBAGGER "\n"),
              "The stream has been created using the CFeatureBagger class thus must be restored "
              "using the CFeatureBagger class as well");
    EXPECT_EQ(errorOf(kMagic + "Width\n"), kIncomplete);
    EXPECT_EQ(errorOf(kMagic + "\tWidth"), kIncomplete);
    EXPECT_EQ(errorOf(kMagic + "A\t1\n\n\x01\x02\xff"), kIncomplete);
}

TEST(FeatureBagText, ATextBeyondAnyCamerasIsRefused) {
    std::string lines = kMagic;
    lines.reserve(size_t(1) << 22);
    while (lines.size() < (size_t(1) << 21) + 100)
        lines += "A\t1\n";
    EXPECT_EQ(errorOf(lines), "The feature bag is full");

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
    CFeatureBag bag = read(kMagic + "A\t1\n");
    std::istringstream other(kMagic + "B\t2\n");
    other >> bag;
    EXPECT_EQ(bag, read(kMagic + "B\t2\n"));
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
    CFeatureBag bag = read(kMagic + "A\t1\nB\t2\n");
    CFeatureBag copy(bag);
    copy.SetBagName("other");
    copy.SetInfo("other");
    EXPECT_EQ(copy, bag);
    EXPECT_STREQ(copy.GetBagName(), "other");
    EXPECT_NE(bag, read(kMagic + "B\t2\nA\t1\n"));
    EXPECT_NE(bag, read(kMagic + "A\t1\n"));
    EXPECT_NE(bag, read(kMagic + "A\t1\nB\t3\n"));
    copy.Destroy();
    EXPECT_EQ(write(copy), write(CFeatureBag()));
}

}  // namespace
