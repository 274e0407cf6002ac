#include "genapi/description/tags.h"

#include <array>
#include <utility>

#include "genapi/description/numbers.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr std::pair<const char*, ModelId> kNodes[] = {
#define GENAPI_NODE_KIND(name) {#name, ModelOf(NodeKind::name)},
    GENAPI_NODE_KINDS(GENAPI_NODE_KIND)
#undef GENAPI_NODE_KIND
        {"StructReg", kStructReg},
    {"Group", kGroup},
};

// A hash table of all names, large enough that most names do not share a slot.
class TagTable {
  public:
    TagTable() {
        for (int i = 0; i <= static_cast<int>(Element::IntKey); ++i) {
            const auto element = static_cast<Element>(i);
            SlotOf(NameOf(element)).key = KeyOf(element);
        }
        for (const auto& [name, model] : kNodes)
            SlotOf(name).model = model;
        SlotOf("Extension").key = kExtension;
        SlotOf("StructEntry").key = kStructEntry;
        SlotOf("EnumEntry").key = kEnumEntry;
        SlotOf("IntSwissKnife").key = kInlineFormula;
    }

    const Tag* Find(std::string_view name) const {
        for (size_t i = Place(name); !tags_[i].name.empty(); i = (i + 1) % tags_.size())
            if (tags_[i].name == name) return &tags_[i];
        return nullptr;
    }

  private:
    static constexpr size_t kSize = 1024;

    static size_t Place(std::string_view name) {
        const auto at = [&](size_t i) { return size_t{static_cast<unsigned char>(name[i])}; };
        const size_t size = name.size();
        if (size == 0) return 0;
        return (size * 7 + at(0) * 31u + at(size - 1) * 131u + at(size / 2) * 523u +
                at(size / 4) * 61u) %
               kSize;
    }

    Tag& SlotOf(std::string_view name) {
        size_t i = Place(name);
        while (!tags_[i].name.empty() && tags_[i].name != name)
            i = (i + 1) % kSize;
        tags_[i].name = name;
        return tags_[i];
    }

    std::array<Tag, kSize> tags_;
};

}  // namespace

const Tag* FindTag(std::string_view name) {
    static const TagTable kTable;
    return kTable.Find(name);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
