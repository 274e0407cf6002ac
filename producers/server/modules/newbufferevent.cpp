#include "producers/server/modules/newbufferevent.h"

#include <cstring>

#include "producers/server/base/error.h"

namespace ZelCti {

EventData NewBufferEvent::Front() {
    const Buffer& buffer = pool_->FrontOutput();
    front_ = {buffer.GetHandle(), buffer.Memory().userPointer};
    return {&front_, sizeof(front_)};
}

void NewBufferEvent::GetDataInfo(EventData data, Answer answer) {
    GenTL::EVENT_NEW_BUFFER_DATA event{};
    if (data.size < sizeof(event)) {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "not the data of a new-buffer event");
    }
    std::memcpy(&event, data.bytes, sizeof(event));
    switch (answer.Command()) {
        case GenTL::EVENT_DATA_ID:
            return answer.Pointer(event.BufferHandle);
        case GenTL::EVENT_DATA_VALUE:
            return answer.Pointer(event.pUserPointer);
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "not an info command of this event type");
    }
}

}  // namespace ZelCti
