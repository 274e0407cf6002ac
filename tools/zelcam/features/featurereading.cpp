#include "tools/zelcam/features/featurereading.h"

#include <GenApi/GenApi.h>

namespace ZelTool {

namespace {

using ZelGenParam::Param;

// Whether any register that reports to be readable can be read; nothing without such registers.
// This tries only the first few, since each may take the time-out of the transport.
std::optional<bool> Answers(GenApi::INodeMap& nodeMap) {
    constexpr int kEnough = 3;
    constexpr int64_t kLongest = 4096;
    GenApi::NodeList_t nodes;
    nodeMap.GetNodes(nodes);
    int failed = 0;
    for (GenApi::INode* node : nodes) {
        auto* const contents = dynamic_cast<GenApi::IRegister*>(node);
        auto* const value = dynamic_cast<GenApi::IValue*>(node);
        if (contents == nullptr || value == nullptr) continue;
        try {
            if (!GenApi::IsReadable(node) || contents->GetLength() > kLongest) continue;
            value->ToString(false, true);
            return true;
        } catch (const GenICam::GenericException&) {
            if (++failed == kEnough) return false;
        }
    }
    return failed == 0 ? std::nullopt : std::optional<bool>(false);
}

[[noreturn]] void ThrowUnreadable(Param& feature, const std::string& why) {
    const std::string text = std::string(feature.GetName()) + " cannot be read: " + why;
    if (Answers(*feature.GetNode()->GetNodeMap()).value_or(false)) {
        throw Failure(ExitCode::FeatureFailed, text);
    }
    throw CameraLost(ExitCode::FeatureFailed, "nothing answers any more: " + text);
}

// The result of `read` for the value of a feature that has one and is readable.
template <typename Result, typename Read>
std::optional<Result> ReadWith(Param& feature, Read read) {
    auto* const value = dynamic_cast<GenApi::IValue*>(feature.GetNode());
    const auto kind = feature.GetType();
    if (value == nullptr || kind == ZelGenParam::ParamType_Command ||
        kind == ZelGenParam::ParamType_Category) {
        return std::nullopt;
    }
    try {
        if (!GenApi::IsReadable(feature.GetNode())) return std::nullopt;
        return read(*value);
    } catch (const GenICam::GenericException& error) {
        ThrowUnreadable(feature, error.GetDescription());
    }
}

}  // namespace

std::string AccessMark(Param& feature) {
    try {
        switch (feature.GetNode()->GetAccessMode()) {
            case GenApi::RW:
                return "rw";
            case GenApi::RO:
                return "ro";
            case GenApi::WO:
                return "wo";
            case GenApi::NI:
                return "ni";
            default:
                return "na";
        }
    } catch (const GenICam::GenericException&) {
        return "??";
    }
}

std::optional<std::string> ReadFeature(Param& feature, bool fresh) {
    const auto read = [fresh](GenApi::IValue& value) -> std::string {
        return value.ToString(false, fresh).c_str();
    };
    return ReadWith<std::string>(feature, read);
}

Json ReadFeatureAsJson(Param& feature, bool fresh) {
    const auto read = [&](GenApi::IValue& value) -> Json {
        GenApi::INode* const node = feature.GetNode();
        if (feature.ToInt() != nullptr) {
            return GenApi::CIntegerPtr(node)->GetValue(false, fresh);
        }
        if (feature.ToFloat() != nullptr) return GenApi::CFloatPtr(node)->GetValue(false, fresh);
        if (feature.ToBoolean() != nullptr) {
            return GenApi::CBooleanPtr(node)->GetValue(false, fresh);
        }
        return value.ToString(false, fresh).c_str();
    };
    return ReadWith<Json>(feature, read).value_or(nullptr);
}

std::string ReadOrEmpty(Param& feature, bool fresh) {
    try {
        return ReadFeature(feature, fresh).value_or("");
    } catch (const Failure&) {
        return "";
    }
}

void RequireAnswer(ZelGenParam::Array& features) {
    GenApi::INodeMap* const nodeMap = features.GetNodeMap(nullptr);
    if (nodeMap == nullptr || Answers(*nodeMap).value_or(true)) return;
    throw CameraLost(ExitCode::FeatureFailed, "nothing answers any more: the camera is lost");
}

}  // namespace ZelTool
