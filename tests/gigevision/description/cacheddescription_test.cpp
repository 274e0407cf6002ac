#include "producers/gigevision/description/cacheddescription.h"

#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "tests/support/temporaryfolder.h"

using ZelGev::CachedDescription;
using ZelGev::DescriptionCache;

namespace {

constexpr uint64_t kAddress = 0x10000;
constexpr size_t kSize = 100'001;
constexpr size_t kRounded = 100'008;

class CachedDescriptionTest : public ::testing::Test {
  protected:
    CachedDescriptionTest() {
        for (size_t i = 0; i < content_.size(); ++i)
            content_[i] = static_cast<char>(i % 251);
    }

    // A connection that is opened anew.
    std::unique_ptr<CachedDescription> Open(const std::string& version = "1.0") {
        auto description = std::make_unique<CachedDescription>(
            DescriptionCache(folder_.Path().string()),
            ZelGev::DescriptionIdentity{"Maker", "Model", version, {}},
            [this](uint64_t address, void* buffer, size_t size) {
                numRead_ += size;
                content_.copy(static_cast<char*>(buffer), size, address - kAddress);
            });
        description->AddFile("local:camera.xml;10000;186a1", kAddress, kSize);
        return description;
    }

    // Looks that it is the camera's, and returns how much was read from the camera.
    size_t Read(CachedDescription& description, uint64_t address = kAddress,
                size_t size = kRounded) {
        numRead_ = 0;
        std::string text(size, '?');
        description.Read(address, text.data(), text.size());
        EXPECT_EQ(text, content_.substr(address - kAddress, size));
        return numRead_;
    }

    const ZelTest::TemporaryFolder folder_;
    std::string content_ = std::string(200'000, '\0');
    size_t numRead_ = 0;
};

}  // namespace

TEST_F(CachedDescriptionTest, ComesFromTheCacheTheSecondTime) {
    EXPECT_EQ(Read(*Open()), kRounded);
    const auto again = Open();
    EXPECT_LT(Read(*again), 5000U);
    EXPECT_LT(Read(*again, kAddress, kSize), 5000U);
    // Reads of something else.
    EXPECT_EQ(Read(*again, kAddress, kSize - 1), kSize - 1);
    EXPECT_EQ(Read(*again, kAddress, kSize + 8), kSize + 8);
    EXPECT_EQ(Read(*again, kAddress + 4, kSize), kSize);
    EXPECT_EQ(Read(*again, kAddress, 4), 4U);
    EXPECT_EQ(Read(*Open("1.1")), kRounded) << "another camera";
}

TEST_F(CachedDescriptionTest, IsReadAnewWhenTheCameraHasAnotherOne) {
    for (const size_t place : {size_t{0}, size_t{511}, kSize / 7 + 100, kSize - 2}) {
        Read(*Open());
        content_[place] ^= 1;
        EXPECT_GT(Read(*Open()), kRounded) << place;
        EXPECT_LT(Read(*Open()), 5000U) << place;
    }
}

TEST_F(CachedDescriptionTest, CanBeSwitchedOff) {
    Read(*Open());
    const auto description = Open();
    description->Switch(false);
    EXPECT_FALSE(description->IsOn());
    EXPECT_EQ(Read(*description), kRounded);
    description->Switch(true);
    EXPECT_LT(Read(*description), 5000U);
}

// To compare it would cost as much as to read it.
TEST_F(CachedDescriptionTest, SmallFilesAreNotKept) {
    for (int i = 0; i < 2; ++i) {
        const auto description = Open();
        description->AddFile("local:small.xml;10000;1000", kAddress, 0x1000);
        EXPECT_EQ(Read(*description, kAddress, 0x1000), 0x1000U);
    }
}
