// The lists that nodes and maps fill.
#include <algorithm>

#include <Base/GCException.h>
#include <GenApi/Autovector.h>
#include <GenApi/Container.h>
#include <gmock/gmock.h>

using namespace GENAPI_NAMESPACE;
using testing::ElementsAre;

namespace {

// Elements are compared, never used.
INode* const kA = reinterpret_cast<INode*>(0x10);
INode* const kB = reinterpret_cast<INode*>(0x20);
INode* const kC = reinterpret_cast<INode*>(0x30);

NodeList_t listOf(std::initializer_list<INode*> nodes) {
    NodeList_t list;
    for (INode* node : nodes)
        list.push_back(node);
    return list;
}

TEST(NodeList, InsertsAndErasesByPlaceAndByIndex) {
    NodeList_t list;
    list.insert(list.begin(), kB);  // an empty list has no storage to point into
    list.insert(size_t{0}, kA);
    NodeList_t::iterator last = list.insert(list.end(), kC);
    EXPECT_EQ(*last, kC);
    EXPECT_THAT(list, ElementsAre(kA, kB, kC));

    NodeList_t::iterator next = list.erase(list.begin() + 1);
    EXPECT_EQ(*next, kC);
    list.erase(size_t{0});
    EXPECT_THAT(list, ElementsAre(kC));
}

TEST(NodeList, CopiesStandAlone) {
    NodeList_t original = listOf({kA, kB});
    NodeList_t copy(original);
    NodeList_t assigned;
    assigned = original;
    original.clear();
    EXPECT_TRUE(original.empty());
    EXPECT_THAT(copy, ElementsAre(kA, kB));
    EXPECT_THAT(assigned, ElementsAre(kA, kB));
}

TEST(NodeList, ChecksTheIndexOfAt) {
    NodeList_t list = listOf({kA});
    EXPECT_EQ(list.at(0), kA);
    EXPECT_THROW(list.at(1), GENICAM_NAMESPACE::OutOfRangeException);
}

TEST(NodeList, HasRandomAccessIterators) {
    NodeList_t list = listOf({kC, kA, kB});
    std::sort(list.begin(), list.end());
    EXPECT_THAT(list, ElementsAre(kA, kB, kC));
    const NodeList_t& view = list;
    NodeList_t::const_iterator found = std::find(view.begin(), view.end(), kB);
    EXPECT_EQ(found - view.begin(), 1);
    EXPECT_EQ(1 + found, view.end() - 1);
    EXPECT_EQ(found[1], kC);
    NodeList_t::iterator writable = list.begin();
    *writable++ = kC;
    EXPECT_EQ(list[0], kC);
    EXPECT_EQ(*writable, kB);
}

TEST(FeatureList, GrowsWithTheGivenElement) {
    IValue* const value = reinterpret_cast<IValue*>(0x40);
    FeatureList_t list(1);
    list.resize(2, value);
    EXPECT_THAT(list, ElementsAre(nullptr, value));
}

TEST(Autovector, SharesItsElements) {
    EXPECT_EQ(int64_autovector_t().size(), 0U);
    int64_autovector_t numbers(2);
    int64_autovector_t copy(numbers);
    numbers[1] = 7;
    EXPECT_EQ(copy[1], 7);
    copy = int64_autovector_t();
    EXPECT_EQ(copy.size(), 0U);
    EXPECT_EQ(numbers.size(), 2U);
}

}  // namespace
