#include "genapi/nodes/enumerationnode.h"

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/values/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::InvalidArgumentException;

EnumEntryNode::EnumEntryNode(NodeMap& map, NodeId id)
    : Node(map, id), data_(CameraDescription().Tables().entries[Record().data]) {}

gcstring EnumEntryNode::GetSymbolic() const {
    return gcstring(CameraDescription().Text(data_.symbolic).data());
}

gcstring EnumEntryNode::ToString(bool, bool) {
    return RunRead("ToString", [&] { return gcstring(std::to_string(data_.value).c_str()); });
}

void EnumEntryNode::FromString(const gcstring&, bool) {
    const Entry entry(*this, "FromString");
    throw NODE_ERROR(AccessException, *this)("Node is not writable");
}

EnumerationNode::EnumerationNode(NodeMap& map, NodeId id)
    : Node(map, id),
      data_(CameraDescription().Tables().enumerations[Record().data]),
      source_(*this, data_.value) {}

Slice<NodeId> EnumerationNode::Entries() const {
    return NodeTables::SliceOf(CameraDescription().Tables().nodes, data_.entries);
}

EnumEntryNode& EnumerationNode::EntryAt(NodeId id) const {
    return static_cast<EnumEntryNode&>(NodeAt(id));
}

template <typename Predicate>
EnumEntryNode* EnumerationNode::LastEntry(Predicate predicate) const {
    const Slice<NodeId> all = Entries();
    for (const NodeId* id = all.end(); id != all.begin();)
        if (predicate(EntryAt(*--id).Data())) return &EntryAt(*id);
    return nullptr;
}

EnumEntryNode* EnumerationNode::EntryOf(int64_t value) const {
    return LastEntry([value](const EnumEntryData& data) { return data.value == value; });
}

EnumEntryNode* EnumerationNode::EntryOf(std::string_view symbolic) const {
    return LastEntry([&](const EnumEntryData& data) {
        return CameraDescription().Text(data.symbolic) == symbolic;
    });
}

void EnumerationNode::SpendSearch() const {
    Map().Spend(data_.entries.count / kPropertiesPerWork, *this);
}

EAccessMode EnumerationNode::SourceAccessMode(bool relaxed) {
    return source_.AccessMode(relaxed);
}

// The access mode of an enumeration is that of its most accessible entry.
EAccessMode EnumerationNode::PartsAccessMode() {
    EAccessMode best = NI;
    for (const NodeId id : Entries()) {
        const EAccessMode found = EntryAt(id).AccessMode();
        if (found != NI) best = found;
        if (IsAvailable(found)) break;
    }
    return Restriction(best, false);
}

// Applications expect the message to show 32 bits of the value.
InvalidArgumentException EnumerationNode::NoEntry(int64_t value) const {
    return NoEntry(std::to_string(static_cast<int32_t>(value)));
}

InvalidArgumentException EnumerationNode::NoEntry(const std::string& value) const {
    return NODE_ERROR(InvalidArgumentException, *this)(
        "Feature '%s' : cannot convert value '%s', the value is invalid.", Name().data(),
        value.c_str());
}

int64_t EnumerationNode::ReadValue(ReadOptions options) {
    if (!IsValueKnown(options)) {
        const Nesting nesting(*this);
        value_ = source_.Read(options);
        if (source_.IsNode()) NoteRead(options);
    }
    if (Map().Flags(Id()) & NodeMap::kActive) {
        const EnumEntryNode* current = EntryOf(value_);
        if (!current || !current->Data().selfClearing) Map().ClearFlags(Id(), NodeMap::kActive);
    }
    return value_;
}

int64_t EnumerationNode::GetInt(ReadOptions options) {
    RequireReadable();
    return ReadableInt(options);
}

int64_t EnumerationNode::ReadableInt(ReadOptions options) {
    const int64_t value = ReadValue(options);
    if (options.verify && !IsVerified()) {
        EnumEntryNode* current = EntryOf(value);
        if (!current)
            throw NODE_ERROR(OutOfRangeException,
                             *this)("Value of the enumeration is none of its entries");
        VerifyEntry(*current);
        NoteVerified();
    }
    return value;
}

void EnumerationNode::VerifyEntry(EnumEntryNode& current) {
    if (!IsAvailable(current.AccessMode()))
        throw NODE_ERROR(AccessException, *this)("Enum entry is not readable");
    CheckErrorNodes();
}

void EnumerationNode::SetInt(int64_t value, bool verify) {
    RequireWritable(verify);
    EnumEntryNode* target = EntryOf(value);
    if (!target) throw NoEntry(value);
    Write(*target, verify);
}

void EnumerationNode::Write(EnumEntryNode& target, bool verify) {
    const EAccessMode mode = target.AccessMode();
    if (verify ? !IsAvailable(mode) : !IsImplemented(mode))
        throw NODE_ERROR(AccessException,
                         *this)("Failed to write enumeration value. Enum entry is not writable");
    {
        const Nesting nesting(*this);
        source_.Write(target.Data().value, verify);
    }
    value_ = target.Data().value;
    if (target.Data().selfClearing) Map().SetFlags(Id(), NodeMap::kActive);
    if (source_.IsNode()) NoteWritten();
    if (verify) CheckErrorNodes();
}

int64_t EnumerationNode::MinInt() {
    return kInt64Min;
}

int64_t EnumerationNode::MaxInt() {
    return kInt64Max;
}

double EnumerationNode::GetFloat(ReadOptions options) {
    const int64_t value = GetInt(options);
    SpendSearch();
    const EnumEntryNode* current = EntryOf(value);
    return current ? current->Data().numeric : static_cast<double>(value);
}

void EnumerationNode::SetFloat(double value, bool verify) {
    for (const NodeId id : Entries())
        if (EntryAt(id).Data().numeric == value) return SetInt(EntryAt(id).Data().value, verify);
    SetInt(RoundToInt(value), verify);
}

double EnumerationNode::MinFloat() {
    return -kDoubleMax;
}

double EnumerationNode::MaxFloat() {
    return kDoubleMax;
}

bool EnumerationNode::IsPolled() const {
    return (Map().Flags(Id()) & NodeMap::kActive) != 0;
}

gcstring EnumerationNode::ToString(bool verify, bool ignoreCache) {
    return RunRead("ToString", [&] {
        const int64_t value = ReadValue({verify, ignoreCache});
        EnumEntryNode* current = EntryOf(value);
        if (!current) throw NoEntry(value);
        if (verify) VerifyEntry(*current);
        const gcstring symbolic = current->GetSymbolic();
        return symbolic.empty() ? current->GetName() : symbolic;
    });
}

void EnumerationNode::FromString(const gcstring& text, bool verify) {
    RunChange("FromString", ChangedByWriteTo(CameraDescription(), Id()), [&] {
        RequireWritable(verify);
        EnumEntryNode* target = EntryOf(std::string_view(text.c_str(), text.length()));
        if (!target) throw NoEntry(text.c_str());
        Write(*target, verify);
    });
}

bool EnumerationNode::IsValueCacheValid() const {
    const Entry scope(*this, "IsValueCacheValid");
    return !source_.IsNode() || IsValueCached();
}

void EnumerationNode::GetSymbolics(StringList_t& symbolics) {
    const Entry scope(*this, "GetSymbolics");
    symbolics.clear();
    for (const NodeId id : Entries())
        if (IsAvailable(EntryAt(id).AccessMode())) symbolics.push_back(EntryAt(id).GetSymbolic());
}

void EnumerationNode::GetEntries(NodeList_t& list) {
    const Entry scope(*this, "GetEntries");
    list.clear();
    for (const NodeId id : Entries())
        list.push_back(&NodeAt(id));
}

IEnumeration& EnumerationNode::operator=(const gcstring& symbolic) {
    FromString(symbolic);
    return *this;
}

void EnumerationNode::SetIntValue(int64_t value, bool verify) {
    RunChange("SetIntValue", ChangedByWriteTo(CameraDescription(), Id()),
              [&] { SetInt(value, verify); });
}

int64_t EnumerationNode::GetIntValue(bool verify, bool ignoreCache) {
    return RunRead("GetIntValue", [&] { return ReadableInt({verify, ignoreCache}); });
}

IEnumEntry* EnumerationNode::GetEntryByName(const gcstring& symbolic) {
    return EntryOf(std::string_view(symbolic.c_str(), symbolic.length()));
}

IEnumEntry* EnumerationNode::GetEntry(const int64_t value) {
    return EntryOf(value);
}

IEnumEntry* EnumerationNode::GetCurrentEntry(bool verify, bool ignoreCache) {
    return RunRead("GetCurrentEntry", [&] { return EntryOf(ReadableInt({verify, ignoreCache})); });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
