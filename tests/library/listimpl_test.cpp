#include "ZelCameraApi/listimpl.h"

#include <gtest/gtest.h>

using namespace ZelCameraApi::Internal;

namespace {

struct Owner {
    using List = ListImpl<int, Owner>;
    void RemoveList(List* list) { removed = list; }
    List* removed = nullptr;
};

}  // namespace

TEST(ListImpl, CursorWalksAndStaysAtTheEnd) {
    Owner owner;
    int a = 1;
    int b = 2;
    Owner::List list(&owner, {&a, &b});
    EXPECT_EQ(list.GetCount(), 2U);
    EXPECT_EQ(list.GetNext(), nullptr);  // the cursor starts at the end
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(list.GetFirst(), &a);
        EXPECT_EQ(list.GetNext(), &b);
        EXPECT_EQ(list.GetNext(), nullptr);
        EXPECT_EQ(list.GetNext(), nullptr);
    }
    EXPECT_EQ(owner.removed, nullptr);
    list.Release();
    EXPECT_EQ(owner.removed, &list);
}

TEST(ListImpl, EmptyListGivesNull) {
    Owner owner;
    Owner::List list(&owner, {});
    EXPECT_EQ(list.GetFirst(), nullptr);
    EXPECT_EQ(list.GetNext(), nullptr);
}
