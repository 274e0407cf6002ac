#include "genapi/nodes/booleannode.h"

#include <cinttypes>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

BooleanNode::BooleanNode(NodeMap& map, NodeId id)
    : Node(map, id),
      data_(description().tables().booleans[record().data]),
      source_(*this, data_.value) {}

std::int64_t BooleanNode::getInt(ReadOptions options) {
    requireReadable();
    return readableInt(options);
}

std::int64_t BooleanNode::readableInt(ReadOptions options) {
    if (!isValueKnown(options)) {
        const Nesting nesting(*this);
        value_ = source_.read(options);
        if (source_.isNode()) valueWasRead(options);
    }
    const std::int64_t value = value_;
    if (options.verify && !isVerified()) {
        checkErrorNodes();
        valueWasVerified();
    }
    if (value != data_.onValue && value != data_.offValue)
        throw NODE_ERROR(LogicalErrorException, *this)(
            "Value '%" PRId64 "' is neither true (%" PRId64 ") nor false (%" PRId64 ")", value,
            data_.onValue, data_.offValue);
    return value == data_.onValue ? 1 : 0;
}

void BooleanNode::setInt(std::int64_t value, bool verify) {
    requireWritable(verify);
    const std::int64_t written = value != 0 ? data_.onValue : data_.offValue;
    {
        const Nesting nesting(*this);
        source_.write(written, verify);
    }
    value_ = written;
    if (source_.isNode()) valueWasWritten();
    if (verify) checkErrorNodes();
}

std::int64_t BooleanNode::minInt() {
    return kInt64Min;
}

std::int64_t BooleanNode::maxInt() {
    return kInt64Max;
}

gcstring BooleanNode::ToString(bool verify, bool ignoreCache) {
    return read("ToString", [&] {
        return gcstring(readableInt({verify, ignoreCache}) ? "1" : "0");
    });
}

void BooleanNode::FromString(const gcstring& text, bool verify) {
    modify("FromString", changedByWriteTo(description(), id()), [&] {
        const bool on = text == "1" || text == "true";
        if (!on && text != "0" && text != "false")
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert string '%s' to boolean", name().data(), text.c_str());
        setInt(on ? 1 : 0, verify);
    });
}

bool BooleanNode::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return !source_.isNode() || isValueCached();
}

void BooleanNode::SetValue(bool value, bool verify) {
    modify("SetValue", changedByWriteTo(description(), id()),
           [&] { setInt(value ? 1 : 0, verify); });
}

bool BooleanNode::GetValue(bool verify, bool ignoreCache) const {
    auto& self = const_cast<BooleanNode&>(*this);
    return self.read("GetValue", [&] { return self.readableInt({verify, ignoreCache}) != 0; });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
