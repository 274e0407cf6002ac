// The image of a frame.
#pragma once

#include <cstdint>

#include "producers/simulator/frame/pixelformat.h"

namespace ZelSim {

// What a sensor sees.
enum class Pattern { ColorBars, GradientHorizontal, GradientDiagonal, Black, White };

// What a frame is: an image, or the components of a 3D camera as parts, which a GenDC container
// describes itself.
enum class PayloadForm : uint8_t { Image, MultiPart, GenDc };

// What the image shows and how it lies in memory. A configuration gives it, and features change it.
struct ImageLayout {
    uint32_t width = 640;
    uint32_t height = 480;
    uint32_t offsetX = 0;  // on the sensor
    uint32_t offsetY = 0;
    uint32_t xPadding = 0;     // bytes behind each line
    uint32_t yPadding = 0;     // bytes behind the image
    uint32_t imageOffset = 0;  // bytes before it
    const PixelFormat* pixelFormat = FindPixelFormat("Mono8");
    Pattern pattern = Pattern::ColorBars;
    PayloadForm payload = PayloadForm::Image;
};

}  // namespace ZelSim
