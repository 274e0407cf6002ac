// Locks, callbacks, texts of enumerators, and the rules that combine access modes.
#include <GenApi/EnumClasses.h>
#include <GenApi/NodeCallback.h>
#include <GenApi/Synch.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/otherthread.h"

using namespace GENAPI_NAMESPACE;
using test::OtherThreadGets;

namespace {

struct Guarded : LockableObject<Guarded> {
    CLock& Lock() const { return m_Lock; }
};

TEST(Lock, OfAnObjectIsHeldForTheScope) {
    const Guarded object;
    {
        const auto held = object.GetLock();
        EXPECT_FALSE(OtherThreadGets(object.Lock()));
    }
    EXPECT_TRUE(OtherThreadGets(object.Lock()));
}

struct Client {
    void Changed(INode*) { ++calls; }
    int calls = 0;
};

TEST(Callback, ActsOnItsOwnPhaseOnly) {
    int calls = 0;
    Client client;
    CNodeCallback* callbacks[] = {
        make_NodeCallback(
            nullptr, [&calls](INode*) { ++calls; }, cbPostInsideLock),
        make_NodeCallback(nullptr, client, &Client::Changed, cbPostOutsideLock)};
    for (CNodeCallback* callback : callbacks)
        (*callback)(cbPostInsideLock);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(client.calls, 0);
    for (CNodeCallback* callback : callbacks)
        (*callback)(cbPostOutsideLock);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(client.calls, 1);
    for (CNodeCallback* callback : callbacks)
        callback->Destroy();
}

TEST(EnumText, GoesBothWays) {
    EVisibility visibility = Beginner;
    EXPECT_TRUE(EVisibilityClass::FromString("Guru", &visibility));
    EXPECT_EQ(visibility, Guru);
    EXPECT_FALSE(EVisibilityClass::FromString("guru", &visibility));
    EXPECT_EQ(visibility, Guru);
    EXPECT_EQ(EVisibilityClass::ToString(_UndefinedVisibility), "_UndefinedVisibility");
    EXPECT_EQ(EYesNoClass::ToString(Yes), "Yes");
    EXPECT_EQ(EVisibilityClass::ToString(static_cast<EVisibility>(50)), "");
}

TEST(Combine, TakesTheStrongerRestriction) {
    const struct {
        EAccessMode first, second, both;
    } cases[] = {{RW, RW, RW}, {RW, RO, RO}, {RW, WO, WO}, {RO, WO, NA},
                 {RO, NA, NA}, {NA, NI, NI}, {WO, NI, NI}, {WO, WO, WO}};
    for (const auto& it : cases) {
        EXPECT_EQ(Combine(it.first, it.second), it.both) << it.first << " with " << it.second;
        EXPECT_EQ(Combine(it.second, it.first), it.both) << it.second << " with " << it.first;
    }
    EXPECT_EQ(Combine(Expert, Guru), Guru);
    EXPECT_EQ(Combine(WriteThrough, WriteAround), WriteAround);
    EXPECT_EQ(Combine(NoCache, WriteAround), NoCache);
}

// Modes that are not known for certain do not say that something is missing.
TEST(AccessMode, SaysWhatCanBeDone) {
    const struct {
        EAccessMode mode;
        bool available, readable, writable;
    } table[] = {{NI, false, false, false},
                 {NA, false, false, false},
                 {WO, true, false, true},
                 {RO, true, true, false},
                 {RW, true, true, true},
                 {_UndefinedAccesMode, true, false, false},
                 {_CycleDetectAccesMode, true, false, false}};
    for (const auto& it : table) {
        EXPECT_EQ(IsAvailable(it.mode), it.available) << it.mode;
        EXPECT_EQ(IsReadable(it.mode), it.readable) << it.mode;
        EXPECT_EQ(IsWritable(it.mode), it.writable) << it.mode;
    }
}

}  // namespace
