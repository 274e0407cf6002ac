// Texts of exceptions, and the macros that make and check.
#include <cstdint>
#include <exception>
#include <sstream>
#include <string>
#include <type_traits>

#include <Base/GCException.h>
#include <gmock/gmock.h>

using namespace GENICAM_NAMESPACE;
using testing::EndsWith;
using testing::StartsWith;

namespace {

// What the check throws, with its type; empty if nothing.
template <typename Check>
std::string Thrown(Check check) {
    try {
        check();
    } catch (const OutOfRangeException& e) {
        return std::string("range: ") + e.GetDescription();
    } catch (const LogicalErrorException& e) {
        return std::string("logic: ") + e.GetDescription();
    }
    return "";
}

std::string CheckedInteger(int64_t value, int64_t min, int64_t max, int64_t inc) {
    return Thrown([&] { CHECK_RANGE_I64(value, min, max, inc); });
}

TEST(Exception, TellsWhatItKnows) {
    EXPECT_STREQ(RuntimeException("d", "f.cpp", 12).what(), "d (file 'f.cpp', line 12)");
    EXPECT_STREQ(AccessException("", "/a/b\\x.cpp", 16, "AccessException").what(),
                 " : AccessException thrown (file 'x.cpp', line 16)");
    EXPECT_STREQ(AccessException("Node is not readable.", "IntegerT.h", 152, "I.GetValue()", "I",
                                 "AccessException")
                     .what(),
                 "Node is not readable. : AccessException thrown in node 'I' while calling "
                 "'I.GetValue()' (file 'IntegerT.h', line 152)");
    EXPECT_STREQ(GenericException(nullptr, nullptr, 1, "", "", nullptr).what(),
                 " (file '', line 1)");
}

TEST(Exception, KeepsItsParts) {
    const TimeoutException original("late", "/a/b.cpp", 3);
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const GenericException copy(original);
    EXPECT_STREQ(copy.GetDescription(), "late");
    EXPECT_STREQ(copy.GetSourceFileName(), "/a/b.cpp");
    EXPECT_EQ(copy.GetSourceLine(), 3u);
    static_assert(!std::is_base_of<std::exception, GenericException>::value,
                  "programs tell the two apart");
}

TEST(Reporter, SuppliesTypeAndPlace) {
    const RuntimeException e = RUNTIME_EXCEPTION("hello %d", 5);
    const int line = __LINE__ - 1;
    EXPECT_STREQ(e.GetDescription(), "hello 5");
    EXPECT_EQ(e.what(), "hello 5 : RuntimeException thrown (file 'exception_test.cpp', line " +
                            std::to_string(line) + ")");
    EXPECT_THAT(GENERIC_EXCEPTION("gen").what(), StartsWith("gen (file 'exception_test.cpp', "));
    EXPECT_THROW(throw DYNAMICCAST_EXCEPTION("x"), DynamicCastException);
}

TEST(Reporter, TakesTextsOfSeveralKinds) {
    EXPECT_STREQ(ACCESS_EXCEPTION().GetDescription(), "");
    EXPECT_STREQ(ACCESS_EXCEPTION(std::string("100%d")).GetDescription(), "100%d");
    std::stringstream stream;
    stream << "value " << 3;
    EXPECT_STREQ(ACCESS_EXCEPTION(stream).GetDescription(), "value 3");
    const std::string large(5000, 'x');
    EXPECT_EQ(ACCESS_EXCEPTION("%s", large.c_str()).GetDescription(), large.substr(0, 2047));
}

TEST(Check, IntegersAgainstLimitsAndIncrement) {
    EXPECT_EQ(CheckedInteger(7, 1, 9, 3), "");
    EXPECT_EQ(CheckedInteger(0, 1, 9, 3), "range: Value = 0 must be equal or greater than Min = 1");
    EXPECT_EQ(CheckedInteger(10, 1, 9, 3),
              "range: Value = 10 must be equal or smaller than Max = 9");
    EXPECT_EQ(CheckedInteger(8, 1, 9, 3),
              "range: The difference between Value = 8 and Min = 1 must be dividable without rest "
              "by Inc = 3");
    EXPECT_EQ(CheckedInteger(1, 1, 9, 0), "logic: Increment must not equal 0!");
    EXPECT_EQ(CheckedInteger(GC_INT64_MAX, GC_INT64_MIN, GC_INT64_MAX, 5), "");
    EXPECT_THAT(CheckedInteger(GC_INT64_MAX, GC_INT64_MIN, GC_INT64_MAX, 2), EndsWith("Inc = 2"));
}

TEST(Check, FloatsAndPointers) {
    EXPECT_EQ(Thrown([] { CHECK_RANGE_FLT(1.0, 1.0, 2.0); }), "");
    EXPECT_EQ(Thrown([] { CHECK_RANGE_FLT(0.5, 1.0, 2.0); }),
              "range: Value 0.500000 must be greater than or equal 1.000000");
    EXPECT_EQ(Thrown([] { CHECK_RANGE_FLT(2.5, 1.0, 2.0); }),
              "range: Value 2.500000 must be smaller than or equal 2.000000");
    const int* pointer = nullptr;
    EXPECT_EQ(Thrown([&] { CHECK_DYNAMIC_CAST_POINTER(pointer); }),
              "logic: Unexpected type in dynamic cast");
}

}  // namespace
