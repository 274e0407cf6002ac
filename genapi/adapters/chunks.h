// The chunks of a buffer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// One chunk, with its id in the form of HexId.
struct Chunk {
    std::string id;
    int64_t offset;
    int64_t length;
};

enum class ByteOrder { kBig, kLittle };

// Finds the chunks of a buffer in which its id and length follow each chunk, from the last to the
// first. False, with some or none of them, unless the chunks fill the buffer exactly; empty chunks,
// and more than 65536, count as noise. The buffer comes from a device.
bool FindTrailedChunks(const uint8_t* buffer, int64_t length, ByteOrder order,
                       std::vector<Chunk>& chunks);
// The same, but throws a RuntimeException instead of returning false.
std::vector<Chunk> TrailedChunks(const uint8_t* buffer, int64_t length, ByteOrder order);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
