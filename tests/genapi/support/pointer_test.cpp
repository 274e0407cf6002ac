// Smart pointers over an object that is both a register space and a chunk.
#include <GenApi/Pointer.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::LogicalErrorException;

namespace {

struct Chunk : IChunkPort {
    EAccessMode GetAccessMode() const override { return mode; }
    void Read(void*, int64_t, int64_t) override {}
    void Write(const void*, int64_t, int64_t) override {}
    GENICAM_NAMESPACE::gcstring GetChunkID() const override { return "C0"; }
    EYesNo CacheChunkData() const override { return No; }

    EAccessMode mode = RO;
};

TEST(Pointer, FindsTheInterfacesOfAnObject) {
    Chunk chunk;
    IBase* base = &chunk;
    CChunkPortPtr found(base);
    EXPECT_EQ(found->GetChunkID(), "C0");
    EXPECT_EQ(static_cast<IChunkPort*>(found), &chunk);
    CPortPtr other;
    other = found;
    EXPECT_TRUE(other.IsValid());
    CIntegerPtr missing(base);
    EXPECT_FALSE(missing.IsValid());
    missing = nullptr;
    EXPECT_FALSE(missing);
}

TEST(Pointer, ComparesWithPointersAndWithNull) {
    Chunk chunk;
    CChunkPortPtr first(&chunk);
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const CChunkPortPtr second(first);
    CChunkPortPtr none;
    EXPECT_TRUE(first == second);
    EXPECT_TRUE(first == static_cast<IChunkPort*>(&chunk));
    EXPECT_FALSE(first == none);
    EXPECT_TRUE(none == 0);
    EXPECT_TRUE(none == NULL);
    EXPECT_TRUE(none == nullptr);
    EXPECT_FALSE(first == NULL);
    EXPECT_THROW(static_cast<void>(first == 1), LogicalErrorException);
}

TEST(Pointer, RefusesToBeUsedWhenNull) {
    const CChunkPortPtr none;
    EXPECT_THROW(*none, LogicalErrorException);
    EXPECT_THROW(none(), LogicalErrorException);
    EXPECT_THROW(static_cast<void>(static_cast<IChunkPort*>(none)), LogicalErrorException);
    EXPECT_EQ(test::ErrorOf([&] { none->GetChunkID(); }),
              "LogicalErrorException: NULL pointer dereferenced");
}

TEST(Pointer, AccessModeOfNothingAllowsNothing) {
    Chunk chunk;
    const CPortPtr port(&chunk);
    const CPortPtr none;
    EXPECT_TRUE(IsReadable(port));
    EXPECT_FALSE(IsWritable(port));
    EXPECT_FALSE(IsReadable(none));
    EXPECT_FALSE(IsImplemented(none));
    chunk.mode = NA;
    EXPECT_FALSE(IsAvailable(port));
    EXPECT_TRUE(IsImplemented(port));
}

TEST(Pointer, WhatIsNoNodeHasNoPrincipalInterface) {
    Chunk chunk;
    EXPECT_EQ(GetInterfaceName(&chunk), "IBase");
    EXPECT_EQ(GetInterfaceName(nullptr), "IBase");
}

}  // namespace
