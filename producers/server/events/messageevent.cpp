#include "producers/server/events/messageevent.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string_view>

#include "producers/server/base/error.h"

namespace ZelCti {

namespace {

// The texts of a message are one after the other, each with its terminating zero.
std::string_view TextAt(EventData data, size_t number) {
    std::string_view rest(static_cast<const char*>(data.bytes), data.size);
    for (; number != 0; --number) {
        const size_t end = rest.find('\0');
        rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    }
    return rest.substr(0, rest.find('\0'));
}

[[noreturn]] void ThrowUnknown() {
    throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "not an info command of this event type");
}

// EVENT_ERROR: a code and its text.
void AnswerError(uint64_t id, EventData data, Answer answer) {
    if (answer.Command() == GenTL::EVENT_DATA_ID) return answer.Int32(static_cast<int32_t>(id));
    if (answer.Command() == GenTL::EVENT_DATA_VALUE) return answer.String(TextAt(data, 0));
    ThrowUnknown();
}

// EVENT_FEATURE_INVALIDATE: the name of a feature; EVENT_FEATURE_CHANGE: its new value as well.
void AnswerFeature(bool hasValue, EventData data, Answer answer) {
    if (answer.Command() == GenTL::EVENT_DATA_ID) return answer.String(TextAt(data, 0));
    if (hasValue && answer.Command() == GenTL::EVENT_DATA_VALUE) {
        return answer.String(TextAt(data, 1));
    }
    ThrowUnknown();
}

// EVENT_REMOTE_DEVICE and EVENT_MODULE: a GenApi event.
void AnswerGenApi(uint64_t id, EventData data, Answer answer) {
    if (answer.Command() == GenTL::EVENT_DATA_NUMID) return answer.Uint64(id);
    if (answer.Command() == GenTL::EVENT_DATA_VALUE) return answer.Buffer(data.bytes, data.size);
    if (answer.Command() != GenTL::EVENT_DATA_ID) ThrowUnknown();
    char text[17];
    std::snprintf(text, sizeof(text), "%04llX", static_cast<unsigned long long>(id));
    answer.String(text);
}

}  // namespace

void MessageEvent::Fire(uint64_t id, EventData data) {
    const auto* const bytes = static_cast<const char*>(data.bytes);
    std::unique_lock lock(mutex_);
    ++numFired_;
    sizeMax_ = std::max(sizeMax_, data.size);
    if (messages_.size() == kMaxMessages) messages_.pop_front();
    try {
        messages_.push_back({id, std::vector<char>(bytes, bytes + data.size)});
    } catch (const std::bad_alloc&) {
        return;
    }
    waitPoint_.UnlockAndWakeOne(lock);
}

EventData MessageEvent::Front() {
    const Message& front = messages_.front();
    return {front.bytes.data(), front.bytes.size()};
}

void MessageEvent::Pop() {
    last_ = std::move(messages_.front());
    messages_.pop_front();
}

// The data say nothing about the identifier; it is remembered for the event fetched last. Consumers
// may pass a whole buffer that starts with the data.
uint64_t MessageEvent::IdOf(EventData data) const {
    const std::lock_guard lock(mutex_);
    const auto* const bytes = static_cast<const char*>(data.bytes);
    if (data.size < last_.bytes.size() ||
        !std::equal(last_.bytes.begin(), last_.bytes.end(), bytes)) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "not the data of the event fetched last");
    }
    return last_.id;
}

void MessageEvent::GetDataInfo(EventData data, Answer answer) {
    const uint64_t id = IdOf(data);
    switch (Type()) {
        case GenTL::EVENT_ERROR:
            return AnswerError(id, data, answer);
        case GenTL::EVENT_FEATURE_INVALIDATE:
            return AnswerFeature(false, data, answer);
        case GenTL::EVENT_FEATURE_CHANGE:
            return AnswerFeature(true, data, answer);
        default:
            return AnswerGenApi(id, data, answer);
    }
}

}  // namespace ZelCti
