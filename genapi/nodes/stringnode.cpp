#include "genapi/nodes/stringnode.h"

#include <cinttypes>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

// The longest text of a String without a register.
constexpr int64_t kMaxConstantLength = 0x3FFFFFFC;

}  // namespace

std::string StringBase::GetText(ReadOptions options) {
    RequireReadable();
    return ReadableText(options);
}

std::string StringBase::ReadableText(ReadOptions options) {
    const Nesting nesting(*this);
    std::string value = ReadValue(options);
    if (options.ignoreCache || CachingMode() == NoCache) Map().RetryAccess(Id());
    if (options.verify) CheckErrorNodes();
    return value;
}

void StringBase::SetText(const std::string& value, bool verify) {
    if (!CanWrite(verify)) throw NODE_ERROR(AccessException, *this)("Node is not writable");
    const int64_t max = MaxLength();
    if (max >= 0 && value.size() > static_cast<uint64_t>(max))
        throw NODE_ERROR(OutOfRangeException, *this)(
            "String exceeds maximum length. Max length is %" PRId64, max);
    {
        const Nesting nesting(*this);
        WriteValue(value, verify);
    }
    if (verify) CheckErrorNodes();
}

gcstring StringBase::ToString(bool verify, bool ignoreCache) {
    return RunRead("ToString", [&] { return ToText(ReadableText({verify, ignoreCache})); });
}

void StringBase::FromString(const gcstring& text, bool verify) {
    SetValue(text, verify);
}

void StringBase::SetValue(const gcstring& value, bool verify) {
    RunChange("SetValue", ChangedByWriteTo(CameraDescription(), Id()),
              [&] { SetText(std::string(value.c_str(), value.length()), verify); });
}

IString& StringBase::operator=(const gcstring& value) {
    SetValue(value);
    return *this;
}

gcstring StringBase::GetValue(bool verify, bool ignoreCache) {
    return RunRead("GetValue", [&] { return ToText(ReadableText({verify, ignoreCache})); });
}

int64_t StringBase::GetMaxLength(bool) {
    const Entry entry(*this, "GetMaxLength");
    // A text that cannot be written is at most as long as it is now.
    if (!IsWritable(AccessMode())) return static_cast<int64_t>(PresentText().size());
    return MaxLength();
}

StringNode::StringNode(NodeMap& map, NodeId id)
    : StringBase(map, id), data_(CameraDescription().Tables().strings[Record().data]) {}

std::string StringNode::ReadValue(ReadOptions options) {
    if (data_.value.IsNode()) return NodeAt(data_.value.node).GetText(options);
    return constant_ ? *constant_ : std::string(CameraDescription().Text(data_.value.constant));
}

void StringNode::WriteValue(const std::string& value, bool verify) {
    if (data_.value.IsNode()) {
        NodeAt(data_.value.node).SetText(value, verify);
    } else {
        Map().BeginWrite(Id());
        constant_ = std::make_unique<std::string>(value);
    }
}

int64_t StringNode::MaxLength() {
    if (data_.value.IsNode()) {
        const Nesting nesting(*this);
        return NodeAt(data_.value.node).MaxTextLength();
    }
    return kMaxConstantLength;
}

EAccessMode StringNode::SourceAccessMode(bool relaxed) {
    return data_.value.IsNode() ? NodeAt(data_.value.node).AccessMode(relaxed) : RW;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
