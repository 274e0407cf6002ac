// A fast hash of texts, keyed at random per process: a description cannot be made so that its texts
// collide, nor so that it is taken for another one.
#pragma once

#include <cstdint>
#include <string_view>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Independent hashes of one text come from different seeds.
uint64_t HashOf(std::string_view text, uint64_t seed = 0);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
