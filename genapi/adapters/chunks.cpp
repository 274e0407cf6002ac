#include "genapi/adapters/chunks.h"

#include <Base/GCException.h>

#include "genapi/adapters/bytes.h"
#include "genapi/adapters/hexid.h"

namespace GENAPI_NAMESPACE {
namespace Engine {
namespace {

constexpr int64_t kTrailerSize = 8;
constexpr size_t kMaxChunks = 65536;

}  // namespace

bool FindTrailedChunks(const uint8_t* buffer, int64_t length, ByteOrder order,
                       std::vector<Chunk>& chunks) {
    if (buffer == nullptr || length <= 0) return false;
    const auto number = order == ByteOrder::kBig ? Big32 : Little32;
    int64_t end = length;
    while (end > 0) {
        if (end < kTrailerSize || chunks.size() == kMaxChunks) return false;
        end -= kTrailerSize;
        const int64_t chunkLength = number(buffer + end + 4);
        if (chunkLength == 0 || chunkLength > end) return false;
        const uint32_t id = number(buffer + end);
        end -= chunkLength;
        chunks.push_back({HexId(id), end, chunkLength});
    }
    return true;
}

std::vector<Chunk> TrailedChunks(const uint8_t* buffer, int64_t length, ByteOrder order) {
    std::vector<Chunk> chunks;
    if (!FindTrailedChunks(buffer, length, order, chunks)) {
        throw RUNTIME_EXCEPTION("The layout of the buffer is not the one of chunk data");
    }
    return chunks;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
