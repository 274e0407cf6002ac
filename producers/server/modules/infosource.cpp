#include "producers/server/modules/infosource.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace ZelCti {

BytesSource InfoSource(int32_t command, std::function<void(Answer)> getInfo) {
    return [command, getInfo = std::move(getInfo)](uint8_t* bytes, size_t size) {
        size_t length = 0;
        getInfo(Answer(command, nullptr, nullptr, &length));
        // Never shorter than the register: a text may grow between the two calls.
        std::vector<uint8_t> answer(std::max(length, size));
        length = answer.size();
        getInfo(Answer(command, nullptr, answer.data(), &length));
        std::memcpy(bytes, answer.data(), size);
    };
}

}  // namespace ZelCti
