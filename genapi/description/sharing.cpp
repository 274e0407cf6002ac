#include "genapi/description/sharing.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "genapi/description/texthash.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// Lives as long as the process, so that it outlives maps in static variables.
struct Registry {
    struct Item {
        ContentKey key;
        std::weak_ptr<const Description> description;
    };
    std::mutex mutex;
    std::vector<Item> items;

    static Registry& Instance() {
        static Registry& registry = *new Registry;
        return registry;
    }

    std::shared_ptr<const Description> Find(const ContentKey& key) const {
        for (const Item& item : items)
            if (item.key == key)
                if (auto description = item.description.lock()) return description;
        return nullptr;
    }
};

uint64_t Chained(uint64_t hash, uint64_t next, uint64_t seed) {
    const uint64_t both[] = {hash, next};
    return HashOf({reinterpret_cast<const char*>(both), sizeof both}, seed);
}

}  // namespace

void ContentKey::Add(std::string_view text) {
    Add(uint64_t{text.size()});
    size_ += text.size();
    first_ = Chained(first_, HashOf(text, 1), 1);
    second_ = Chained(second_, HashOf(text, 2), 2);
}

void ContentKey::Add(uint64_t choice) {
    first_ = Chained(first_, choice, 1);
    second_ = Chained(second_, choice, 2);
}

std::shared_ptr<const Description> FindShared(const ContentKey& key) {
    Registry& registry = Registry::Instance();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    return registry.Find(key);
}

std::shared_ptr<const Description> Share(const ContentKey& key,
                                         std::shared_ptr<const Description> made) {
    Registry& registry = Registry::Instance();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    if (auto known = registry.Find(key)) return known;
    auto& items = registry.items;
    items.erase(std::remove_if(items.begin(), items.end(),
                               [](const auto& item) { return item.description.expired(); }),
                items.end());
    items.push_back({key, made});
    return made;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
