#include "genapi/description/sharing.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include "genapi/description/texthash.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

// As long as the process, so that it outlives maps in static variables.
struct Registry {
    struct Item {
        ContentKey key;
        std::weak_ptr<const Description> description;
    };
    std::mutex mutex;
    std::vector<Item> items;

    static Registry& instance() {
        static Registry& registry = *new Registry;
        return registry;
    }

    std::shared_ptr<const Description> find(const ContentKey& key) const {
        for (const Item& item : items)
            if (item.key == key)
                if (auto description = item.description.lock()) return description;
        return nullptr;
    }
};

std::uint64_t chained(std::uint64_t hash, std::uint64_t next, std::uint64_t seed) {
    const std::uint64_t both[] = {hash, next};
    return hashOf({reinterpret_cast<const char*>(both), sizeof both}, seed);
}

}  // namespace

void ContentKey::add(std::string_view text) {
    add(std::uint64_t{text.size()});
    size_ += text.size();
    first_ = chained(first_, hashOf(text, 1), 1);
    second_ = chained(second_, hashOf(text, 2), 2);
}

void ContentKey::add(std::uint64_t choice) {
    first_ = chained(first_, choice, 1);
    second_ = chained(second_, choice, 2);
}

std::shared_ptr<const Description> findShared(const ContentKey& key) {
    Registry& registry = Registry::instance();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    return registry.find(key);
}

std::shared_ptr<const Description> share(const ContentKey& key,
                                         std::shared_ptr<const Description> made) {
    Registry& registry = Registry::instance();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    if (auto known = registry.find(key)) return known;
    auto& items = registry.items;
    items.erase(std::remove_if(items.begin(), items.end(),
                               [](const auto& item) { return item.description.expired(); }),
                items.end());
    items.push_back({key, made});
    return made;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
