#include "genapi/description/tags.h"

#include <array>
#include <utility>

#include "genapi/description/numbers.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr std::pair<const char*, ModelId> kNodes[] = {
    {"Node", modelOf(NodeKind::Node)},
    {"Category", modelOf(NodeKind::Category)},
    {"Integer", modelOf(NodeKind::Integer)},
    {"IntReg", modelOf(NodeKind::IntReg)},
    {"MaskedIntReg", modelOf(NodeKind::MaskedIntReg)},
    {"StructEntry", modelOf(NodeKind::StructEntry)},
    {"Boolean", modelOf(NodeKind::Boolean)},
    {"Command", modelOf(NodeKind::Command)},
    {"Float", modelOf(NodeKind::Float)},
    {"FloatReg", modelOf(NodeKind::FloatReg)},
    {"Enumeration", modelOf(NodeKind::Enumeration)},
    {"EnumEntry", modelOf(NodeKind::EnumEntry)},
    {"String", modelOf(NodeKind::String)},
    {"StringReg", modelOf(NodeKind::StringReg)},
    {"Register", modelOf(NodeKind::Register)},
    {"SwissKnife", modelOf(NodeKind::SwissKnife)},
    {"IntSwissKnife", modelOf(NodeKind::IntSwissKnife)},
    {"Converter", modelOf(NodeKind::Converter)},
    {"IntConverter", modelOf(NodeKind::IntConverter)},
    {"Port", modelOf(NodeKind::Port)},
    {"ConfRom", modelOf(NodeKind::ConfRom)},
    {"TextDesc", modelOf(NodeKind::TextDesc)},
    {"IntKey", modelOf(NodeKind::IntKey)},
    {"AdvFeatureLock", modelOf(NodeKind::AdvFeatureLock)},
    {"SmartFeature", modelOf(NodeKind::SmartFeature)},
    {"StructReg", kStructReg},
    {"Group", kGroup},
};

// A hash table of all names, large enough that most have a place of their own.
class TagTable {
  public:
    TagTable() {
        for (int i = 0; i <= static_cast<int>(Element::IntKey); ++i) {
            const auto element = static_cast<Element>(i);
            slotOf(nameOf(element)).key = keyOf(element);
        }
        for (const auto& [name, model] : kNodes)
            slotOf(name).model = model;
        slotOf("Extension").key = kExtension;
        slotOf("StructEntry").key = kStructEntry;
        slotOf("EnumEntry").key = kEnumEntry;
        slotOf("IntSwissKnife").key = kInlineFormula;
    }

    const Tag* find(std::string_view name) const {
        for (std::size_t i = place(name); !tags_[i].name.empty(); i = (i + 1) % tags_.size())
            if (tags_[i].name == name) return &tags_[i];
        return nullptr;
    }

  private:
    static constexpr std::size_t kSize = 1024;

    static std::size_t place(std::string_view name) {
        const auto at = [&](std::size_t i) {
            return std::size_t{static_cast<unsigned char>(name[i])};
        };
        const std::size_t size = name.size();
        if (size == 0) return 0;
        return (size * 7 + at(0) * 31u + at(size - 1) * 131u + at(size / 2) * 523u +
                at(size / 4) * 61u) %
               kSize;
    }

    Tag& slotOf(std::string_view name) {
        std::size_t i = place(name);
        while (!tags_[i].name.empty() && tags_[i].name != name)
            i = (i + 1) % kSize;
        tags_[i].name = name;
        return tags_[i];
    }

    std::array<Tag, kSize> tags_;
};

}  // namespace

const Tag* findTag(std::string_view name) {
    static const TagTable table;
    return table.find(name);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
