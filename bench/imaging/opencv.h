// Conversions of images by OpenCV, to compare with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace Bench {

// Converts the image, on the calling thread, to memory of its own. Empty when OpenCV has no such
// conversion, or was not there when this program was compiled.
std::function<void()> SameByOpenCv(const std::string& from, const std::string& to, bool isEdgeAware,
                                   uint8_t* image, size_t width, size_t height);

}  // namespace Bench
