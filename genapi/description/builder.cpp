#include "genapi/description/builder.h"

#include <cstring>

#include <Base/GCException.h>

#include "genapi/description/limits.h"
#include "genapi/description/links.h"
#include "genapi/description/nodedata.h"
#include "genapi/description/texthash.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

// The texts so far, by hash: open addressing; the size is a power of two, and at most half of it is
// used.
struct DescriptionBuilder::Interned {
    struct Slot {
        uint64_t hash = 0;
        TextRef text = 0;  // 0 in an empty slot: nobody looks up the empty text
        NodeId node = kNoNode;
    };
    std::vector<Slot> slots = std::vector<Slot>(1024);
    size_t used = 0;

    void Grow() {
        std::vector<Slot> old(2 * slots.size());
        old.swap(slots);
        for (const Slot& slot : old)
            if (slot.text != 0) slots[FreeFor(slot.hash)] = slot;
    }

    size_t FreeFor(uint64_t hash) const {
        size_t i = hash & (slots.size() - 1);
        while (slots[i].text != 0)
            i = (i + 1) & (slots.size() - 1);
        return i;
    }
};

DescriptionBuilder::DescriptionBuilder()
    : description_(new Description), interned_(std::make_unique<Interned>()) {
    description_->pool_.push_back('\0');
}

DescriptionBuilder::~DescriptionBuilder() = default;

// Whether the pool holds the text at that place, with a NUL after it.
bool DescriptionBuilder::Stands(std::string_view text, TextRef place) const {
    const std::vector<char>& pool = description_->pool_;
    return text.size() < pool.size() - place && pool[place + text.size()] == '\0' &&
           std::memcmp(pool.data() + place, text.data(), text.size()) == 0;
}

size_t DescriptionBuilder::SlotOf(std::string_view text) {
    if (2 * interned_->used >= interned_->slots.size()) interned_->Grow();
    const uint64_t hash = HashOf(text);
    auto& slots = interned_->slots;
    std::vector<char>& pool = description_->pool_;
    size_t i = hash & (slots.size() - 1);
    for (; slots[i].text != 0; i = (i + 1) & (slots.size() - 1))
        if (slots[i].hash == hash && description_->Text(slots[i].text) == text) return i;
    if (pool.size() + text.size() >= kMaxPoolSize)
        throw RUNTIME_EXCEPTION("The texts of the description are too long");
    slots[i].hash = hash;
    slots[i].text = static_cast<TextRef>(pool.size());
    ++interned_->used;
    pool.insert(pool.end(), text.begin(), text.end());
    pool.push_back('\0');
    return i;
}

TextRef DescriptionBuilder::Intern(std::string_view text) {
    return text.empty() ? 0 : interned_->slots[SlotOf(text)].text;
}

NodeId DescriptionBuilder::Mention(std::string_view name) {
    Interned::Slot unnamed;
    Interned::Slot& slot = name.empty() ? unnamed : interned_->slots[SlotOf(name)];
    if (slot.node == kNoNode) {
        std::vector<NodeRecord>& records = description_->records_;
        if (records.size() >= kMaxNodes)
            throw RUNTIME_EXCEPTION("The description has too many nodes");
        slot.node = static_cast<NodeId>(records.size());
        records.emplace_back().name = slot.text;
    }
    return slot.node;
}

bool DescriptionBuilder::IsDefined(NodeId id) const {
    return description_->records_[id].defined;
}

std::string_view DescriptionBuilder::Name(NodeId id) const {
    return description_->Name(id);
}

TextRef DescriptionBuilder::NameOf(NodeId id) const {
    return description_->records_[id].name;
}

std::string_view DescriptionBuilder::Text(TextRef ref) const {
    return description_->Text(ref);
}

void DescriptionBuilder::Define(NodeId id, NodeKind kind, ENameSpace nameSpace, bool exposeStatic,
                                Slice<Property> properties) {
    std::vector<Property>& all = description_->properties_;
    if (all.size() + properties.size() > kMaxProperties)
        throw RUNTIME_EXCEPTION("The nodes of the description have too many elements");
    NodeRecord& record = description_->records_[id];
    record.kind = kind;
    record.nameSpace = static_cast<uint8_t>(nameSpace);
    record.exposeStatic = exposeStatic;
    record.defined = true;
    record.firstProperty = static_cast<uint32_t>(all.size());
    record.propertyCount = static_cast<uint32_t>(properties.size());
    all.insert(all.end(), properties.begin(), properties.end());
}

DeviceInfo& DescriptionBuilder::Info() {
    return description_->info_;
}

void DescriptionBuilder::IndexNames() {
    size_t size = 16;
    while (size < 2 * description_->records_.size())
        size *= 2;
    std::vector<NodeId>& names = description_->names_;
    names.assign(size, kNoNode);
    for (const Interned::Slot& slot : interned_->slots) {
        if (slot.node == kNoNode) continue;
        size_t i = slot.hash & (size - 1);
        while (names[i] != kNoNode)
            i = (i + 1) & (size - 1);
        names[i] = slot.node;
    }
}

void DescriptionBuilder::CheckNames() const {
    for (const NodeRecord& record : description_->records_)
        if (!record.defined)
            throw RUNTIME_EXCEPTION("Error in XML stream : dangling node reference '%s'",
                                    description_->Text(record.name).data());
}

std::shared_ptr<const Description> DescriptionBuilder::Finish() {
    IndexNames();
    interned_.reset();
    Description& description = *description_;
    description.pool_.shrink_to_fit();
    description.records_.shrink_to_fit();
    description.properties_.shrink_to_fit();
    try {
        CompileNodes(description, *description.tables_, description.records_);
    } catch (const GENICAM_NAMESPACE::RuntimeException&) {
        // Undefined names and cycles of values are reported in preference to this fault.
        CheckNames();
        CheckValues(description);
        throw;
    }
    CheckNames();
    LinkNodes(description, *description.links_, description.records_);
    return std::shared_ptr<const Description>(description_.release());
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
