// A fast hash of texts with a random key per process: nobody can make a description whose texts
// collide, or one that is taken for another.
#pragma once

#include <cstdint>
#include <string_view>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Different seeds give independent hashes of a text.
uint64_t HashOf(std::string_view text, uint64_t seed = 0);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
