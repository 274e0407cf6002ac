// Descriptions that several maps share: how long they live, and what makes two texts different.
#include "genapi/description/sharing.h"

#include <gtest/gtest.h>

#include "genapi/description/subtree.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

ContentKey keyOf(const std::string& text, std::uint64_t choice = 0) {
    ContentKey key;
    key.add(choice);
    key.add(text);
    return key;
}

TEST(SharedDescriptions, LiveAsLongAsTheyAreUsed) {
    const std::string text = document(integer("I"));
    auto first = share(keyOf(text), load(text));
    EXPECT_EQ(first, findShared(keyOf(text)));
    EXPECT_EQ(first, share(keyOf(text), load(text)));
    EXPECT_EQ(nullptr, findShared(keyOf(text, 1)));
    EXPECT_EQ(nullptr, findShared(keyOf(document(integer("J")))));
    first.reset();
    EXPECT_EQ(nullptr, findShared(keyOf(text)));
}

TEST(SharedDescriptions, KeysTellTextsApart) {
    ContentKey joined, split;
    joined.add("ab");
    split.add("a");
    split.add("b");
    EXPECT_FALSE(joined == split);
    // Any byte of a text counts, whatever its length.
    for (std::size_t size = 1; size < 70; ++size) {
        const std::string text(size, 'x');
        for (std::size_t i = 0; i < size; ++i) {
            std::string other = text;
            other[i] = 'y';
            EXPECT_FALSE(keyOf(text) == keyOf(other)) << size << ' ' << i;
        }
    }
}

TEST(Subtrees, HoldWhatTheirRootRefersTo) {
    const auto all = load(document(
        "<Category Name='Root'><pFeature>A</pFeature><pFeature>E</pFeature></Category>"
        "<Integer Name='A'><pValue>B</pValue></Integer>"
        "<Enumeration Name='E'><EnumEntry Name='x'><Value>1</Value></EnumEntry><pValue>B</pValue>"
        "</Enumeration>" +
        integer("B")));
    const auto part = extractSubtree(*all, all->find("E"), true);
    ASSERT_EQ(3u, part->nodeCount());
    EXPECT_EQ("Root", part->name(0));
    EXPECT_EQ("B", part->name(1));
    EXPECT_EQ("EnumEntry_E_x", part->name(2));
    EXPECT_EQ(1u, part->find(0, Element::pValue)->node());
    EXPECT_EQ("x", part->text(2, Element::Symbolic));
    EXPECT_EQ("M", part->info().modelName);
}

}  // namespace
}  // namespace test
