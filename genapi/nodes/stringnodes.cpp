#include "genapi/nodes/stringnodes.h"

#include <cinttypes>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

namespace {

// Longest text that a String without a register takes.
constexpr std::int64_t kMaxConstantLength = 0x3FFFFFFC;

}  // namespace

std::string StringBase::getText(ReadOptions options) {
    requireReadable();
    return readableText(options);
}

std::string StringBase::readableText(ReadOptions options) {
    const Nesting nesting(*this);
    std::string value = readValue(options);
    if (options.ignoreCache || cachingMode() == NoCache) map().retryAccess(id());
    if (options.verify) checkErrorNodes();
    return value;
}

void StringBase::setText(const std::string& value, bool verify) {
    if (!isWritable(verify)) throw NODE_ERROR(AccessException, *this)("Node is not writable");
    const std::int64_t max = maxLength();
    if (max >= 0 && value.size() > static_cast<std::uint64_t>(max))
        throw NODE_ERROR(OutOfRangeException, *this)(
            "String exceeds maximum length. Max length is %" PRId64, max);
    {
        const Nesting nesting(*this);
        writeValue(value, verify);
    }
    if (verify) checkErrorNodes();
}

gcstring StringBase::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] { return toText(readableText({verify, ignoreCache})); });
}

void StringBase::FromString(const gcstring& text, bool verify) {
    SetValue(text, verify);
}

void StringBase::SetValue(const gcstring& value, bool verify) {
    modify("SetValue", changedByWriteTo(description(), id()),
           [&] { setText(std::string(value.c_str(), value.length()), verify); });
}

IString& StringBase::operator=(const gcstring& value) {
    SetValue(value);
    return *this;
}

gcstring StringBase::GetValue(bool verify, bool ignoreCache) {
    return read("GetValue", [&] { return toText(readableText({verify, ignoreCache})); });
}

int64_t StringBase::GetMaxLength(bool) {
    const Entry entry(*this, "GetMaxLength");
    // What cannot be written does not get longer than it is.
    if (!IsWritable(accessMode())) return static_cast<std::int64_t>(presentText().size());
    return maxLength();
}

StringNode::StringNode(NodeMap& map, NodeId id)
    : StringBase(map, id), data_(description().tables().strings[record().data]) {}

std::string StringNode::readValue(ReadOptions options) {
    if (data_.value.isNode()) return node(data_.value.node).getText(options);
    return constant_ ? *constant_ : std::string(description().text(data_.value.constant));
}

void StringNode::writeValue(const std::string& value, bool verify) {
    if (data_.value.isNode()) {
        node(data_.value.node).setText(value, verify);
    } else {
        map().beginWrite(id());
        constant_ = std::make_unique<std::string>(value);
    }
}

std::int64_t StringNode::maxLength() {
    if (data_.value.isNode()) {
        const Nesting nesting(*this);
        return node(data_.value.node).maxTextLength();
    }
    return kMaxConstantLength;
}

EAccessMode StringNode::sourceAccessMode(bool relaxed) {
    return data_.value.isNode() ? node(data_.value.node).accessMode(relaxed) : RW;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
