// The chunks of a buffer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// One chunk; the id as HexId makes it.
struct Chunk {
    std::string id;
    int64_t offset;
    int64_t length;
};

enum class ByteOrder { kBig, kLittle };

// The chunks of a buffer in which each is followed by its id and length, from the last to the
// first. False, with some of them or none, unless they fill the buffer exactly; empty chunks, and
// more than 65536, are noise. The buffer is what a device sent.
bool FindTrailedChunks(const uint8_t* buffer, int64_t length, ByteOrder order,
                       std::vector<Chunk>& chunks);
// The same with a RuntimeException instead of false.
std::vector<Chunk> TrailedChunks(const uint8_t* buffer, int64_t length, ByteOrder order);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
