#include "producers/gigevision/description/descriptioncache.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

#include "producers/gigevision/description/privatefolder.h"
#include "producers/gigevision/description/sha256.h"
#include "producers/wire/byteview.h"

namespace ZelGev {

using ZelCti::ByteSpan;

namespace {

// With the version of the form of an entry.
constexpr std::string_view kMark = "ZelDesc1";

constexpr size_t kHashOffset = 16;
constexpr size_t kHeaderSize = kHashOffset + std::tuple_size_v<Sha256::Digest>;

void AddIdentity(Sha256& hash, const DescriptionIdentity& identity) {
    for (const std::string* text :
         {&identity.vendor, &identity.model, &identity.version, &identity.url})
        hash.AddText(*text);
}

std::string NameOf(const DescriptionIdentity& identity) {
    Sha256 hash;
    AddIdentity(hash, identity);
    std::string name;
    for (const uint8_t byte : hash.Finish()) {
        name += "0123456789abcdef"[byte >> 4U];
        name += "0123456789abcdef"[byte & 15U];
    }
    return name;
}

std::array<uint8_t, kHeaderSize> HeaderOf(const DescriptionIdentity& identity,
                                          const uint8_t* content, size_t size) {
    Sha256 hash;
    AddIdentity(hash, identity);
    hash.Add(content, size);
    const Sha256::Digest digest = hash.Finish();
    std::array<uint8_t, kHeaderSize> header{};
    std::copy(kMark.begin(), kMark.end(), header.begin());
    ByteSpan{header.data(), header.size()}.PutU64(kMark.size(), size);
    std::copy(digest.begin(), digest.end(), header.begin() + kHashOffset);
    return header;
}

const char* Variable(const char* name) {
    const char* const value = secure_getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace

bool DescriptionCache::Load(const DescriptionIdentity& identity, uint8_t* content,
                            size_t size) const noexcept try {
    if (!IsOn() || size > kMaxDescription) return false;
    const PrivateFolder folder(base_, PrivateFolder::Use::Read);
    std::vector<uint8_t> entry(kHeaderSize + size);
    if (!folder.Read(NameOf(identity), entry.data(), entry.size())) return false;
    const uint8_t* const found = entry.data() + kHeaderSize;
    const auto header = HeaderOf(identity, found, size);
    if (!std::equal(header.begin(), header.end(), entry.begin())) return false;
    std::copy_n(found, size, content);
    return true;
} catch (const std::exception&) {
    return false;
}

void DescriptionCache::Store(const DescriptionIdentity& identity, const uint8_t* content,
                             size_t size) const noexcept try {
    if (!IsOn() || size > kMaxDescription) return;
    const PrivateFolder folder(base_, PrivateFolder::Use::Write);
    const auto header = HeaderOf(identity, content, size);
    std::vector<uint8_t> entry(header.begin(), header.end());
    entry.insert(entry.end(), content, content + size);
    folder.Trim(kMaxFolder - entry.size());
    folder.Write(NameOf(identity), entry.data(), entry.size());
} catch (const std::exception&) {
    // Without an entry the camera is read the next time, too.
}

std::string CacheFolderOfEnvironment() {
    if (std::string_view(Variable("ZELGEV_CACHE")) == "0") return {};
    // A relative path is invalid by the rules of the desktops.
    const std::string_view caches = Variable("XDG_CACHE_HOME");
    if (!caches.empty() && caches.front() == '/') return std::string(caches);
    const std::string_view home = Variable("HOME");
    return home.empty() || home.front() != '/' ? std::string() : std::string(home) + "/.cache";
}

}  // namespace ZelGev
