// Texts: the contract of std::string, short ones in the object and long ones on the heap.
#include <sstream>
#include <stdexcept>
#include <string>

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <gmock/gmock.h>

using namespace GENICAM_NAMESPACE;

namespace {

std::string Text(const gcstring& s) {
    return {s.c_str(), s.length()};
}

TEST(String, TreatsANullTextAsEmpty) {
    const char* const null = nullptr;
    gcstring s(null);
    EXPECT_EQ(Text(s), "");
    EXPECT_TRUE(s == null);
    s = "x";
    EXPECT_EQ(Text(s.assign(null)), "");
    s += null;
    EXPECT_EQ(Text(s + null), "");
    EXPECT_EQ(Text(gcstring(null, 3)), "");
}

TEST(String, CountsItsCharacters) {
    const gcstring s("a\0b", 3);
    EXPECT_EQ(s.length(), 3u);
    EXPECT_EQ(Text(s + s), std::string("a\0ba\0b", 6));
    EXPECT_FALSE(s == "a");
    gcstring grown("ab");
    grown.resize(4);
    EXPECT_EQ(Text(grown), std::string("ab\0\0", 4));
    grown.resize(1);
    EXPECT_EQ(Text(grown), "a");
    EXPECT_EQ(grown[0], 'a');
}

// Lengths on both sides of what fits into the object.
TEST(String, KeepsTextsOfAllLengths) {
    std::string expected;
    gcstring appended;
    for (size_t n = 0; n < 200; ++n) {
        const gcstring made(expected.data(), n);
        const gcstring copy(made);  // NOLINT(performance-unnecessary-copy-initialization)
        ASSERT_EQ(Text(copy), expected);
        ASSERT_EQ(Text(appended), expected);
        gcstring assigned("previous text");
        assigned = copy;
        ASSERT_EQ(Text(assigned), expected);
        const char c = static_cast<char>('a' + n % 26);
        expected += c;
        appended += c;
    }
}

TEST(String, MayBeMadeOfItself) {
    for (const size_t n : {3u, 40u, 100u}) {
        const std::string once(n, 'x');
        gcstring s(once.c_str());
        s += s;
        EXPECT_EQ(Text(s), once + once);
        s.append(s);
        EXPECT_EQ(s.length(), 4 * n);
        s.assign(s.c_str() + n, n);
        EXPECT_EQ(Text(s), once);
        const gcstring& same = s;
        s = same;
        EXPECT_EQ(Text(s), once);
    }
    gcstring longText(100, 'l'), shortText("s");
    longText.swap(shortText);
    EXPECT_EQ(Text(longText), "s");
    EXPECT_EQ(shortText.length(), 100u);
}

TEST(String, RefusesLengthsBeyondMemory) {
    gcstring s("abc");
    EXPECT_THROW(s.append(GCSTRING_NPOS - 1, 'x'), BadAllocException);
    EXPECT_THROW(s.resize(GCSTRING_NPOS), BadAllocException);
    EXPECT_THROW(s.reserve(s.max_size() + 1), BadAllocException);
    EXPECT_EQ(Text(s), "abc");
}

TEST(String, ConstAppendingLeavesTheText) {
    const gcstring s("ab");
    EXPECT_EQ(Text(s += gcstring("cd")), "abcd");
    EXPECT_EQ(Text(s += 'c'), "abc");
    EXPECT_EQ(Text("x" + s + "y"), "xaby");
    EXPECT_EQ(Text(s), "ab");
}

TEST(String, Compares) {
    EXPECT_EQ(gcstring("a").compare("c"), -1);
    EXPECT_EQ(gcstring("c").compare("a"), 1);
    EXPECT_EQ(gcstring("a").compare("a"), 0);
    EXPECT_TRUE(gcstring("a") < gcstring("\xE4"));  // bytes, whatever the sign of char
    EXPECT_TRUE(gcstring("ab") > gcstring("a"));
    EXPECT_TRUE(gcstring("a") != gcstring("A"));
    EXPECT_TRUE(gcstring("a") != "A");
}

TEST(String, Searches) {
    const gcstring s("abcabc");
    EXPECT_EQ(s.find('c', 3), 5u);
    EXPECT_EQ(s.find("bc", 2), 4u);
    EXPECT_EQ(s.find("bx", 0, 1), 1u);
    EXPECT_EQ(s.find(gcstring("cx"), 3, 1), 5u);
    EXPECT_EQ(s.find("x"), gcstring::npos);
    EXPECT_EQ(s.find_first_of("cb"), 1u);
    EXPECT_EQ(s.find_first_not_of("ab"), 2u);
    EXPECT_EQ(s.find_last_of("ab"), 4u);
    EXPECT_EQ(s.find_last_of('a', 2), 0u);
    EXPECT_EQ(s.find_last_not_of("c"), 4u);
    EXPECT_EQ(s.find_last_not_of('c'), 4u);
}

TEST(String, TakesParts) {
    gcstring s("abcdef");
    EXPECT_EQ(Text(s.substr(2, 3)), "cde");
    EXPECT_EQ(Text(s.substr(6)), "");
    EXPECT_THROW(s.substr(7), std::out_of_range);
    EXPECT_EQ(Text(s.erase(1, 2)), "adef");
    EXPECT_EQ(Text(s.erase(2)), "ad");
    EXPECT_THROW(s.erase(3), std::out_of_range);
}

TEST(String, GoesThroughStreams) {
    std::stringstream stream("two words\nnext,last");
    gcstring s;
    stream >> s;
    EXPECT_EQ(Text(s), "two");
    getline(stream, s);
    EXPECT_EQ(Text(s), " words");
    getline(stream, s, ',');
    EXPECT_EQ(Text(s), "next");
    std::ostringstream out;
    out << gcstring("a\0b", 3);
    EXPECT_EQ(out.str(), std::string("a\0b", 3));
}

}  // namespace
