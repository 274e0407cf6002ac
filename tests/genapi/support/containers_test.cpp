// The lists of texts and of nodes have the contract of std::vector; lists of numbers are shared.
#include <algorithm>
#include <array>
#include <type_traits>

#include <Base/GCException.h>
#include <Base/GCStringVector.h>
#include <GenApi/Autovector.h>
#include <GenApi/Container.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <class List>
class ListTest : public testing::Test {};
using Lists = testing::Types<gcstring_vector, NodeList_t>;
TYPED_TEST_SUITE(ListTest, Lists, );

// Three elements in ascending order; nodes are compared, never used.
template <class List>
auto ThreeElements() {
    if constexpr (std::is_same_v<List, gcstring_vector>) {
        return std::array<gcstring, 3>{"a", "b", "c"};
    } else {
        const auto node = [](uintptr_t address) { return reinterpret_cast<INode*>(address); };
        return std::array<INode*, 3>{node(0x10), node(0x20), node(0x30)};
    }
}

template <class List>
auto ElementsOf(const List& list) {
    using Element = typename List::const_iterator::value_type;
    return std::vector<Element>(list.begin(), list.end());
}

TYPED_TEST(ListTest, InsertsAndErasesByPlaceAndByIndex) {
    const auto [a, b, c] = ThreeElements<TypeParam>();
    TypeParam list;
    list.insert(list.begin(), b);  // an empty list has no storage to point into
    list.insert(size_t{0}, a);
    EXPECT_EQ(*list.insert(list.end(), c), c);
    EXPECT_THAT(ElementsOf(list), ElementsAre(a, b, c));
    EXPECT_EQ(*list.erase(list.begin() + 1), c);
    list.erase(size_t{0});
    EXPECT_THAT(ElementsOf(list), ElementsAre(c));
    list.resize(3, b);
    EXPECT_THAT(ElementsOf(list), ElementsAre(c, b, b));
    list.pop_back();
    EXPECT_EQ(list.back(), b);
    list.assign(2, a);
    EXPECT_THAT(ElementsOf(list), ElementsAre(a, a));
}

TYPED_TEST(ListTest, CopiesStandAlone) {
    const auto a = ThreeElements<TypeParam>()[0];
    TypeParam original;
    original.push_back(a);
    const TypeParam copy(original);
    TypeParam assigned;
    assigned = original;
    const TypeParam& same = assigned;
    assigned = same;
    original.clear();
    EXPECT_THAT(ElementsOf(original), IsEmpty());
    EXPECT_THAT(ElementsOf(copy), ElementsAre(a));
    EXPECT_THAT(ElementsOf(assigned), ElementsAre(a));
}

TYPED_TEST(ListTest, ChecksTheIndexOfAtOnly) {
    const auto a = ThreeElements<TypeParam>()[0];
    TypeParam list;
    list.push_back(a);
    EXPECT_EQ(list.at(0), a);
    EXPECT_EQ(test::ErrorOf([&] { list.at(1); }), "OutOfRangeException: vector::_M_range_check");
}

TYPED_TEST(ListTest, HasRandomAccessIterators) {
    const auto [a, b, c] = ThreeElements<TypeParam>();
    TypeParam list;
    for (const auto& each : {c, a, b})
        list.push_back(each);
    std::sort(list.begin(), list.end());
    EXPECT_THAT(ElementsOf(list), ElementsAre(a, b, c));
    const TypeParam& view = list;
    auto at = view.begin();
    EXPECT_EQ(*at++, a);
    EXPECT_EQ(at[1], c);
    EXPECT_EQ(*(1 + at), c);
    at += 2;
    EXPECT_TRUE(at == view.end() && at > view.begin());
    EXPECT_EQ(at - view.begin(), 3);
    EXPECT_EQ(*--at, c);
    auto writable = list.begin();
    *writable++ = c;
    EXPECT_EQ(list[0], c);
    EXPECT_EQ(*writable, b);
}

TEST(StringVector, KnowsItsTexts) {
    gcstring_vector list(1, "a");
    EXPECT_TRUE(list.contains("a"));
    EXPECT_FALSE(list.contains("b"));
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
