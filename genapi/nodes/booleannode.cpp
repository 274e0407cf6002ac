#include "genapi/nodes/booleannode.h"

#include <cinttypes>

#include "genapi/description/links.h"
#include "genapi/nodes/nodemap.h"
#include "genapi/values/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

using GENICAM_NAMESPACE::gcstring;

BooleanNode::BooleanNode(NodeMap& map, NodeId id)
    : Node(map, id),
      data_(CameraDescription().Tables().booleans[Record().data]),
      source_(*this, data_.value) {}

int64_t BooleanNode::GetInt(ReadOptions options) {
    RequireReadable();
    return ReadableInt(options);
}

int64_t BooleanNode::ReadableInt(ReadOptions options) {
    if (!IsValueKnown(options)) {
        const Nesting nesting(*this);
        value_ = source_.Read(options);
        if (source_.IsNode()) NoteRead(options);
    }
    const int64_t value = value_;
    if (options.verify && !IsVerified()) {
        CheckErrorNodes();
        NoteVerified();
    }
    if (value != data_.onValue && value != data_.offValue)
        throw NODE_ERROR(LogicalErrorException, *this)(
            "Value '%" PRId64 "' is neither true (%" PRId64 ") nor false (%" PRId64 ")", value,
            data_.onValue, data_.offValue);
    return value == data_.onValue ? 1 : 0;
}

void BooleanNode::SetInt(int64_t value, bool verify) {
    RequireWritable(verify);
    const int64_t written = value != 0 ? data_.onValue : data_.offValue;
    {
        const Nesting nesting(*this);
        source_.Write(written, verify);
    }
    value_ = written;
    if (source_.IsNode()) NoteWritten();
    if (verify) CheckErrorNodes();
}

int64_t BooleanNode::MinInt() {
    return kInt64Min;
}

int64_t BooleanNode::MaxInt() {
    return kInt64Max;
}

gcstring BooleanNode::ToString(bool verify, bool ignoreCache) {
    return RunRead("ToString", [&] {
        return gcstring(ReadableInt({verify, ignoreCache}) ? "1" : "0");
    });
}

void BooleanNode::FromString(const gcstring& text, bool verify) {
    RunChange("FromString", ChangedByWriteTo(CameraDescription(), Id()), [&] {
        const bool on = text == "1" || text == "true";
        if (!on && text != "0" && text != "false")
            throw NODE_ERROR(InvalidArgumentException, *this)(
                "Node '%s' : cannot convert string '%s' to boolean", Name().data(), text.c_str());
        SetInt(on ? 1 : 0, verify);
    });
}

bool BooleanNode::IsValueCacheValid() const {
    const Entry entry(*this, "IsValueCacheValid");
    return !source_.IsNode() || IsValueCached();
}

void BooleanNode::SetValue(bool value, bool verify) {
    RunChange("SetValue", ChangedByWriteTo(CameraDescription(), Id()),
              [&] { SetInt(value ? 1 : 0, verify); });
}

bool BooleanNode::GetValue(bool verify, bool ignoreCache) const {
    auto& self = const_cast<BooleanNode&>(*this);
    return self.RunRead("GetValue", [&] { return self.ReadableInt({verify, ignoreCache}) != 0; });
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
