// Buffers, and locks that are shared by name.
#include <thread>

#include <Base/GCArray.h>
#include <Base/GCSynch.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/otherthread.h"

using namespace GENICAM_NAMESPACE;
using test::OtherThreadGets;

namespace {

TEST(Array, OwnsItsElements) {
    gcarray<int> array(2);
    EXPECT_EQ(array[1], 0);
    array[1] = 5;
    gcarray<int> copy(array), assigned;
    assigned = copy;
    copy[1] = 6;
    EXPECT_EQ(array.get()[1] * 100 + copy[1] * 10 + assigned[1], 565);
    EXPECT_EQ(assigned.length(), 2u);
}

TEST(BaseLock, IsRecursive) {
    CLock lock;
    {
        AutoLock outer(lock);
        AutoLock inner(lock);
        EXPECT_FALSE(OtherThreadGets(lock));
    }
    EXPECT_TRUE(OtherThreadGets(lock));
}

TEST(GlobalLock, IsOnePerName) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer does not know locks taken with a time limit";
#endif
    CGlobalLock first("one"), again("one"), other("two");
    ASSERT_TRUE(first.Lock(0));
    EXPECT_FALSE(OtherThreadGets(again));
    EXPECT_TRUE(OtherThreadGets(other));
    bool waited = true;
    std::thread([&] { waited = again.Lock(20); }).join();
    EXPECT_FALSE(waited);
    again.Unlock();
    EXPECT_TRUE(OtherThreadGets(first));
}

}  // namespace
