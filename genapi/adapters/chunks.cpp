#include "genapi/adapters/chunks.h"

#include <Base/GCException.h>

#include "genapi/adapters/bytes.h"
#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {
namespace Engine {
namespace {

constexpr std::int64_t kTrailerSize = 8;
constexpr std::size_t kMaxChunks = 65536;

}  // namespace

bool findTrailedChunks(const std::uint8_t* buffer, std::int64_t length, ByteOrder order,
                       std::vector<Chunk>& chunks) {
    if (buffer == nullptr || length <= 0) return false;
    const auto number = order == ByteOrder::kBig ? big32 : little32;
    std::int64_t end = length;
    while (end > 0) {
        if (end < kTrailerSize || chunks.size() == kMaxChunks) return false;
        end -= kTrailerSize;
        const std::int64_t chunkLength = number(buffer + end + 4);
        if (chunkLength == 0 || chunkLength > end) return false;
        const std::uint32_t id = number(buffer + end);
        end -= chunkLength;
        chunks.push_back({hexId(id), end, chunkLength});
    }
    return true;
}

std::vector<Chunk> trailedChunks(const std::uint8_t* buffer, std::int64_t length, ByteOrder order) {
    std::vector<Chunk> chunks;
    if (!findTrailedChunks(buffer, length, order, chunks)) {
        throw RUNTIME_EXCEPTION("The layout of the buffer is not the one of chunk data");
    }
    return chunks;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
