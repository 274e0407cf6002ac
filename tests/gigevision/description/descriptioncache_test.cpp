#include "producers/gigevision/description/descriptioncache.h"

#include <fstream>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/temporaryfolder.h"

namespace fs = std::filesystem;
using ZelGev::CacheFolderOfEnvironment;
using ZelGev::DescriptionCache;
using ZelGev::DescriptionIdentity;

namespace {

const DescriptionIdentity kLeft{"Maker", "Model", "1.0", "local:left.xml;1000;5"};
const DescriptionIdentity kRight{"Maker", "Model", "1.0", "local:right.xml;1000;5"};

class DescriptionCacheTest : public ::testing::Test {
  protected:
    void Store(const DescriptionIdentity& identity, const std::string& text) const {
        cache_.Store(identity, reinterpret_cast<const uint8_t*>(text.data()), text.size());
    }

    std::string Load(const DescriptionIdentity& identity, size_t size) const {
        std::string text(size, '?');
        return cache_.Load(identity, reinterpret_cast<uint8_t*>(text.data()), size) ? text
                                                                                    : "nothing";
    }

    std::vector<fs::path> Entries() const {
        std::vector<fs::path> entries;
        for (const auto& entry : fs::directory_iterator(descriptions_))
            entries.push_back(entry.path());
        return entries;
    }

    fs::path OnlyEntry() const {
        const auto entries = Entries();
        EXPECT_EQ(entries.size(), 1U);
        return entries.at(0);
    }

    // What spoils the entry of `kLeft` is healed by the next Store.
    template <typename Spoil>
    void ExpectDistrust(const char* how, const Spoil& spoil) {
        SCOPED_TRACE(how);
        Store(kLeft, "hello");
        ASSERT_EQ(Load(kLeft, 5), "hello");
        spoil(OnlyEntry());
        EXPECT_EQ(Load(kLeft, 5), "nothing");
        Store(kLeft, "HELLO");
        EXPECT_EQ(Load(kLeft, 5), "HELLO");
    }

    const ZelTest::TemporaryFolder folder_;
    const fs::path base_ = folder_.Path() / "cache";
    const fs::path descriptions_ = base_ / "zelcam" / "descriptions";
    const DescriptionCache cache_{base_.string()};
};

void Flip(const fs::path& file, std::streamoff at) {
    std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
    stream.seekg(at);
    const int byte = stream.get();
    stream.seekp(at);
    stream.put(static_cast<char>(byte ^ 1));
}

}  // namespace

TEST_F(DescriptionCacheTest, KeepsDescriptionsForTheirCamerasOnly) {
    EXPECT_EQ(Load(kLeft, 5), "nothing");
    Store(kLeft, "hello");
    EXPECT_EQ(Load(kLeft, 5), "hello");
    EXPECT_EQ(Load(kLeft, 4), "nothing");
    EXPECT_EQ(Load(kRight, 5), "nothing");
    EXPECT_EQ(Load({"MakerM", "odel", "1.0", kLeft.url}, 5), "nothing");
    Store(kLeft, "other");
    EXPECT_EQ(Load(kLeft, 5), "other");
    EXPECT_EQ(Entries().size(), 1U);

    struct stat status {};
    ASSERT_EQ(stat(OnlyEntry().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFREG | 0600);
    for (const fs::path& made : {base_, base_ / "zelcam", descriptions_}) {
        ASSERT_EQ(stat(made.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, S_IFDIR | 0700) << made;
    }
}

TEST_F(DescriptionCacheTest, EntriesThatAreDamagedOrNotOursAreReplaced) {
    for (const std::streamoff place : {0, 8, 15, 16, 47, 48, 52})
        ExpectDistrust("a bit is another one", [&](const fs::path& entry) { Flip(entry, place); });
    ExpectDistrust("cut", [](const fs::path& entry) { fs::resize_file(entry, 40); });
    ExpectDistrust("longer", [](const fs::path& entry) { fs::resize_file(entry, 54); });
    ExpectDistrust("written by others", [](const fs::path& entry) { chmod(entry.c_str(), 0620); });
    ExpectDistrust("a link", [this](const fs::path& entry) {
        fs::rename(entry, base_ / "elsewhere");
        fs::create_symlink(base_ / "elsewhere", entry);
    });
    ExpectDistrust("a pipe", [](const fs::path& entry) {
        fs::remove(entry);
        ASSERT_EQ(mkfifo(entry.c_str(), 0600), 0);
    });
    if (geteuid() == 0) {
        ExpectDistrust("of another user",
                       [](const fs::path& entry) { ASSERT_EQ(chown(entry.c_str(), 1, 1), 0); });
    }
    // The entry of another camera under this name: a hash alone would be right.
    Store(kLeft, "hello");
    const fs::path left = OnlyEntry();
    fs::rename(left, base_ / "left");
    Store(kRight, "right");
    fs::rename(OnlyEntry(), left);
    EXPECT_EQ(Load(kLeft, 5), "nothing");
}

TEST_F(DescriptionCacheTest, FoldersThatOthersMayWriteAreNotUsed) {
    Store(kLeft, "hello");
    for (const fs::path& folder : {base_, base_ / "zelcam", descriptions_}) {
        SCOPED_TRACE(folder);
        chmod(folder.c_str(), 0777);
        EXPECT_EQ(Load(kLeft, 5), "nothing");
        Store(kRight, "right");
        chmod(folder.c_str(), 0700);
        EXPECT_EQ(Load(kLeft, 5), "hello");
        EXPECT_EQ(Load(kRight, 5), "nothing");
    }
    fs::rename(descriptions_, base_ / "elsewhere");
    fs::create_directory_symlink(base_ / "elsewhere", descriptions_);
    EXPECT_EQ(Load(kLeft, 5), "nothing");
    // The user's own link to where there is place.
    fs::remove(descriptions_);
    fs::rename(base_ / "elsewhere", descriptions_);
    fs::create_directory_symlink(base_, folder_.Path() / "link");
    const DescriptionCache linked((folder_.Path() / "link").string());
    uint8_t text[5];
    EXPECT_TRUE(linked.Load(kLeft, text, 5));
}

TEST_F(DescriptionCacheTest, TheOldestEntriesGoWhenThereAreTooMany) {
    const std::string large(DescriptionCache::kMaxDescription / 2, 'x');
    const auto identity = [](size_t i) {
        return DescriptionIdentity{"Maker", "Model " + std::to_string(i), "1.0", "local:"};
    };
    constexpr size_t kFit = DescriptionCache::kMaxFolder / (DescriptionCache::kMaxDescription / 2);
    for (size_t i = 0; i + 1 < kFit; ++i) {
        Store(identity(i), large);
        for (const fs::path& entry : Entries())  // all get older
            fs::last_write_time(entry, fs::last_write_time(entry) - std::chrono::hours(1));
    }
    EXPECT_EQ(Load(identity(0), large.size()), large) << "which makes it new";
    Store(identity(kFit), large);
    EXPECT_EQ(Load(identity(1), large.size()), "nothing");
    EXPECT_EQ(Load(identity(0), large.size()), large);
    EXPECT_EQ(Load(identity(2), large.size()), large);
    EXPECT_EQ(Entries().size(), kFit - 1);

    Store(kLeft, std::string(DescriptionCache::kMaxDescription + 1, 'x'));
    EXPECT_EQ(Entries().size(), kFit - 1) << "it is too large";
}

TEST_F(DescriptionCacheTest, WithoutAFolderThereIsNoCacheAndNoError) {
    const std::string file = (folder_.Path() / "file").string();
    std::ofstream(file) << "text";
    for (const std::string& base : {std::string(), file, file + "/below", std::string("/proc/x")}) {
        const DescriptionCache cache(base);
        uint8_t bytes[5] = {};
        cache.Store(kLeft, bytes, sizeof bytes);
        EXPECT_FALSE(cache.Load(kLeft, bytes, sizeof bytes)) << base;
    }
}

TEST(CacheFolderTest, IsThatOfTheUsersEnvironment) {
    const auto folder = [](const char* home, const char* caches, const char* isOn) {
        const auto set = [](const char* name, const char* value) {
            value != nullptr ? setenv(name, value, 1) : unsetenv(name);
        };
        set("HOME", home);
        set("XDG_CACHE_HOME", caches);
        set("ZELGEV_CACHE", isOn);
        return CacheFolderOfEnvironment();
    };
    EXPECT_EQ(folder("/home/me", nullptr, nullptr), "/home/me/.cache");
    EXPECT_EQ(folder("/home/me", "/fast", "1"), "/fast");
    EXPECT_EQ(folder("/home/me", "relative", nullptr), "/home/me/.cache");
    EXPECT_EQ(folder("", "", nullptr), "");
    EXPECT_EQ(folder(nullptr, nullptr, nullptr), "");
    EXPECT_EQ(folder("/home/me", "/fast", "0"), "");
}
