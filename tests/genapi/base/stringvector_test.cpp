// Lists of texts and their iterators.
#include <algorithm>
#include <string>

#include <Base/GCException.h>
#include <Base/GCStringVector.h>
#include <gmock/gmock.h>

using namespace GENICAM_NAMESPACE;

namespace {

gcstring_vector letters(const char* text) {
    gcstring_vector result;
    for (; *text; ++text)
        result.push_back(gcstring(1, *text));
    return result;
}

std::string joined(const gcstring_vector& list) {
    std::string result;
    for (const gcstring& s : list)
        result += s.c_str();
    return result;
}

TEST(StringVector, InsertsAndErases) {
    gcstring_vector list = letters("bd");
    EXPECT_STREQ(*list.insert(list.begin() + 1, "c"), "c");
    list.insert(size_t(0), "a");
    EXPECT_EQ(joined(list), "abcd");
    EXPECT_STREQ(*list.erase(list.begin() + 1), "c");
    list.erase(size_t(0));
    EXPECT_EQ(joined(list), "cd");
    const gcstring_vector::iterator behind = list.erase(list.end() - 1);
    EXPECT_TRUE(behind == list.end());
    list.pop_back();
    EXPECT_TRUE(list.empty());
}

TEST(StringVector, CopiesAreIndependent) {
    gcstring_vector list = letters("ab");
    gcstring_vector copy(list), assigned;
    assigned = list;
    list[0] = "x";
    const gcstring_vector& same = list;
    list = same;
    EXPECT_EQ(joined(list) + joined(copy) + joined(assigned), "xbabab");
    EXPECT_TRUE(copy.contains("a"));
    EXPECT_FALSE(list.contains("a"));
    copy.resize(3, "z");
    EXPECT_STREQ(copy.back(), "z");
    copy.assign(2, "q");
    EXPECT_EQ(joined(copy), "qq");
}

TEST(StringVector, ChecksTheIndexOfAtOnly) {
    gcstring_vector list = letters("a");
    EXPECT_STREQ(list.at(0), "a");
    try {
        list.at(1);
        FAIL();
    } catch (const OutOfRangeException& e) {
        EXPECT_STREQ(e.GetDescription(), "vector::_M_range_check");
    }
}

TEST(StringVector, HasRandomAccessIterators) {
    gcstring_vector list = letters("cab");
    std::sort(list.begin(), list.end());
    EXPECT_EQ(joined(list), "abc");
    const gcstring_vector& fixed = list;
    gcstring_vector::const_iterator it = fixed.begin();
    EXPECT_STREQ(*it++, "a");
    EXPECT_STREQ(it[1], "c");
    EXPECT_STREQ(*(1 + it), "c");
    it += 2;
    EXPECT_TRUE(it == fixed.end() && it > fixed.begin());
    EXPECT_EQ(it - fixed.begin(), 3);
    EXPECT_STREQ((--it)->c_str(), "c");
}

}  // namespace
