#include "genapi/nodes/enumerationnode.h"

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::InvalidArgumentException;

EnumEntryNode::EnumEntryNode(NodeMap& map, NodeId id)
    : Node(map, id), data_(description().tables().entries[record().data]) {}

gcstring EnumEntryNode::GetSymbolic() const {
    return gcstring(description().text(data_.symbolic).data());
}

gcstring EnumEntryNode::ToString(bool, bool) {
    return read("ToString", [&] { return gcstring(std::to_string(data_.value).c_str()); });
}

void EnumEntryNode::FromString(const gcstring&, bool) {
    const Entry entry(*this, "FromString");
    throw NODE_ERROR(AccessException, *this)("Node is not writable");
}

EnumerationNode::EnumerationNode(NodeMap& map, NodeId id)
    : Node(map, id),
      data_(description().tables().enumerations[record().data]),
      source_(*this, data_.value) {}

Slice<NodeId> EnumerationNode::entries() const {
    return NodeTables::slice(description().tables().nodes, data_.entries);
}

EnumEntryNode& EnumerationNode::entry(NodeId id) const {
    return static_cast<EnumEntryNode&>(node(id));
}

template <typename Predicate>
EnumEntryNode* EnumerationNode::lastEntry(Predicate predicate) const {
    const Slice<NodeId> all = entries();
    for (const NodeId* id = all.end(); id != all.begin();)
        if (predicate(entry(*--id).data())) return &entry(*id);
    return nullptr;
}

EnumEntryNode* EnumerationNode::entryOf(std::int64_t value) const {
    return lastEntry([value](const EnumEntryData& data) { return data.value == value; });
}

EnumEntryNode* EnumerationNode::entryOf(std::string_view symbolic) const {
    return lastEntry(
        [&](const EnumEntryData& data) { return description().text(data.symbolic) == symbolic; });
}

void EnumerationNode::spendSearch() const {
    map().spend(data_.entries.count / kPropertiesPerWork, *this);
}

EAccessMode EnumerationNode::sourceAccessMode(bool relaxed) {
    return source_.accessMode(relaxed);
}

// An enumeration is as available as the best of its entries.
EAccessMode EnumerationNode::partsAccessMode() {
    EAccessMode best = NI;
    for (const NodeId id : entries()) {
        const EAccessMode found = entry(id).accessMode();
        if (found != NI) best = found;
        if (IsAvailable(found)) break;
    }
    return restriction(best, false);
}

// Applications know the value of 32 bits.
InvalidArgumentException EnumerationNode::noEntry(std::int64_t value) const {
    return noEntry(std::to_string(static_cast<std::int32_t>(value)));
}

InvalidArgumentException EnumerationNode::noEntry(const std::string& value) const {
    return NODE_ERROR(InvalidArgumentException, *this)(
        "Feature '%s' : cannot convert value '%s', the value is invalid.", name().data(),
        value.c_str());
}

std::int64_t EnumerationNode::readValue(ReadOptions options) {
    if (!isValueKnown(options)) {
        const Nesting nesting(*this);
        value_ = source_.read(options);
        if (source_.isNode()) valueWasRead(options);
    }
    std::uint8_t& flags = map().flagsOf(id());
    if (flags & NodeMap::kActive) {
        const EnumEntryNode* current = entryOf(value_);
        if (!current || !current->data().selfClearing)
            flags &= static_cast<std::uint8_t>(~NodeMap::kActive);
    }
    return value_;
}

std::int64_t EnumerationNode::getInt(ReadOptions options) {
    requireReadable();
    return readableInt(options);
}

std::int64_t EnumerationNode::readableInt(ReadOptions options) {
    const std::int64_t value = readValue(options);
    if (options.verify && !isVerified()) {
        EnumEntryNode* current = entryOf(value);
        if (!current)
            throw NODE_ERROR(OutOfRangeException,
                             *this)("Value of the enumeration is none of its entries");
        verifyEntry(*current);
        valueWasVerified();
    }
    return value;
}

void EnumerationNode::verifyEntry(EnumEntryNode& current) {
    if (!IsAvailable(current.accessMode()))
        throw NODE_ERROR(AccessException, *this)("Enum entry is not readable");
    checkErrorNodes();
}

void EnumerationNode::setInt(std::int64_t value, bool verify) {
    requireWritable(verify);
    EnumEntryNode* target = entryOf(value);
    if (!target) throw noEntry(value);
    write(*target, verify);
}

void EnumerationNode::write(EnumEntryNode& target, bool verify) {
    const EAccessMode mode = target.accessMode();
    if (verify ? !IsAvailable(mode) : !IsImplemented(mode))
        throw NODE_ERROR(AccessException,
                         *this)("Failed to write enumeration value. Enum entry is not writable");
    {
        const Nesting nesting(*this);
        source_.write(target.data().value, verify);
    }
    value_ = target.data().value;
    if (target.data().selfClearing) map().flagsOf(id()) |= NodeMap::kActive;
    if (source_.isNode()) valueWasWritten();
    if (verify) checkErrorNodes();
}

std::int64_t EnumerationNode::minInt() {
    return kInt64Min;
}

std::int64_t EnumerationNode::maxInt() {
    return kInt64Max;
}

double EnumerationNode::getFloat(ReadOptions options) {
    const std::int64_t value = getInt(options);
    spendSearch();
    const EnumEntryNode* current = entryOf(value);
    return current ? current->data().numeric : static_cast<double>(value);
}

void EnumerationNode::setFloat(double value, bool verify) {
    for (const NodeId id : entries())
        if (entry(id).data().numeric == value) return setInt(entry(id).data().value, verify);
    setInt(roundToInt(value), verify);
}

double EnumerationNode::minFloat() {
    return -kDoubleMax;
}

double EnumerationNode::maxFloat() {
    return kDoubleMax;
}

bool EnumerationNode::isPolled() const {
    return (map().flagsOf(id()) & NodeMap::kActive) != 0;
}

gcstring EnumerationNode::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] {
        const std::int64_t value = readValue({verify, ignoreCache});
        EnumEntryNode* current = entryOf(value);
        if (!current) throw noEntry(value);
        if (verify) verifyEntry(*current);
        const gcstring symbolic = current->GetSymbolic();
        return symbolic.empty() ? current->GetName() : symbolic;
    });
}

void EnumerationNode::FromString(const gcstring& text, bool verify) {
    modify("FromString", changedByWriteTo(description(), id()), [&] {
        requireWritable(verify);
        EnumEntryNode* target = entryOf(std::string_view(text.c_str(), text.length()));
        if (!target) throw noEntry(text.c_str());
        write(*target, verify);
    });
}

bool EnumerationNode::IsValueCacheValid() const {
    const Entry scope(*this, "IsValueCacheValid");
    return !source_.isNode() || isValueCached();
}

void EnumerationNode::GetSymbolics(StringList_t& symbolics) {
    const Entry scope(*this, "GetSymbolics");
    symbolics.clear();
    for (const NodeId id : entries())
        if (IsAvailable(entry(id).accessMode())) symbolics.push_back(entry(id).GetSymbolic());
}

void EnumerationNode::GetEntries(NodeList_t& list) {
    const Entry scope(*this, "GetEntries");
    list.clear();
    for (const NodeId id : entries())
        list.push_back(&node(id));
}

IEnumeration& EnumerationNode::operator=(const gcstring& symbolic) {
    FromString(symbolic);
    return *this;
}

void EnumerationNode::SetIntValue(int64_t value, bool verify) {
    modify("SetIntValue", changedByWriteTo(description(), id()), [&] { setInt(value, verify); });
}

int64_t EnumerationNode::GetIntValue(bool verify, bool ignoreCache) {
    return read("GetIntValue", [&] { return readableInt({verify, ignoreCache}); });
}

IEnumEntry* EnumerationNode::GetEntryByName(const gcstring& symbolic) {
    return entryOf(std::string_view(symbolic.c_str(), symbolic.length()));
}

IEnumEntry* EnumerationNode::GetEntry(const int64_t value) {
    return entryOf(value);
}

IEnumEntry* EnumerationNode::GetCurrentEntry(bool verify, bool ignoreCache) {
    return read("GetCurrentEntry", [&] { return entryOf(readableInt({verify, ignoreCache})); });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
