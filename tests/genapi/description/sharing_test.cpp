// Descriptions that several maps share: how long they live, and what makes two texts different.
#include "genapi/description/sharing.h"

#include <gtest/gtest.h>

#include "genapi/description/subtree.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

ContentKey KeyOf(const std::string& text, uint64_t choice = 0) {
    ContentKey key;
    key.Add(choice);
    key.Add(text);
    return key;
}

TEST(SharedDescriptions, LiveAsLongAsTheyAreUsed) {
    const std::string text = Document(Integer("I"));
    auto first = Share(KeyOf(text), Load(text));
    EXPECT_EQ(first, FindShared(KeyOf(text)));
    EXPECT_EQ(first, Share(KeyOf(text), Load(text)));
    EXPECT_EQ(nullptr, FindShared(KeyOf(text, 1)));
    EXPECT_EQ(nullptr, FindShared(KeyOf(Document(Integer("J")))));
    first.reset();
    EXPECT_EQ(nullptr, FindShared(KeyOf(text)));
}

TEST(SharedDescriptions, KeysTellTextsApart) {
    ContentKey joined, split;
    joined.Add("ab");
    split.Add("a");
    split.Add("b");
    EXPECT_FALSE(joined == split);
    // Any byte of a text counts, whatever its length.
    for (size_t size = 1; size < 70; ++size) {
        const std::string text(size, 'x');
        for (size_t i = 0; i < size; ++i) {
            std::string other = text;
            other[i] = 'y';
            EXPECT_FALSE(KeyOf(text) == KeyOf(other)) << size << ' ' << i;
        }
    }
}

TEST(Subtrees, HoldWhatTheirRootRefersTo) {
    const auto all = Load(Document(
        "<Category Name='Root'><pFeature>A</pFeature><pFeature>E</pFeature></Category>"
        "<Integer Name='A'><pValue>B</pValue></Integer>"
        "<Enumeration Name='E'><EnumEntry Name='x'><Value>1</Value></EnumEntry><pValue>B</pValue>"
        "</Enumeration>" +
        Integer("B")));
    const auto part = SubtreeOf(*all, all->Find("E"), true);
    ASSERT_EQ(3u, part->NodeCount());
    EXPECT_EQ("Root", part->Name(0));
    EXPECT_EQ("B", part->Name(1));
    EXPECT_EQ("EnumEntry_E_x", part->Name(2));
    EXPECT_EQ(1u, part->Find(0, Element::pValue)->Target());
    EXPECT_EQ("x", part->Text(2, Element::Symbolic));
    EXPECT_EQ("M", part->Info().modelName);
}

}  // namespace
}  // namespace test
