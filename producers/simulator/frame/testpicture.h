// The moving test picture of a camera.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "producers/simulator/frame/brightness.h"
#include "producers/simulator/frame/framesettings.h"
#include "producers/simulator/frame/lineencoder.h"

namespace ZelSim {

// What a frame shows, in images of at least 16 x 32 pixels:
//
//   rows 0 to 23   the pattern; in the left corner the frame counter, white on black, in cells of
//                  16 x 24 pixels: as many as fit, ten at most
//   rows 24 to 31  black, with a white marker, 8 pixels wide, that moves 8 pixels a frame
//   middle         the pattern
//   last quarter   a grey gradient that scrolls by 8 pixels a frame
//
// Smaller images show the pattern only. All is encoded once; a frame is copies of the parts. Eight
// pixels are whole bytes in every format, so that moving parts need no shifting of bits.
class TestPicture {
  public:
    explicit TestPicture(const FrameSettings& settings);

    // Whether it is the picture of frames with these settings.
    bool IsOf(const FrameSettings& settings) const { return settings_.ShowsSameAs(settings); }

    // Draws the first lines of a frame, each with its padding.
    void Draw(uint64_t frame, uint8_t* image, size_t numLines) const;

  private:
    static constexpr size_t kNumDigits = 10;

    void RenderStatic();
    std::vector<Rgb> PatternLine(size_t y) const;
    void RenderParts();
    void DrawCounter(uint64_t frame, uint8_t* image, size_t numLines) const;
    void DrawMarker(uint64_t frame, uint8_t* image, size_t numLines) const;
    void DrawGradient(uint64_t frame, uint8_t* image, size_t numLines) const;
    std::vector<uint8_t> EncodeGrey(const std::vector<uint8_t>& levels) const;

    const FrameSettings settings_;
    const Brightness brightness_;
    const PixelFormat& format_;
    const size_t width_;
    const size_t height_;
    const size_t pitch_;
    const bool moves_;
    std::vector<uint8_t> static_;
    std::array<std::vector<std::vector<uint8_t>>, kNumDigits> digits_;  // by digit, row
    std::vector<uint8_t> marker_;
    std::vector<uint8_t> gradient_;  // one line, longer than the image by a period
};

}  // namespace ZelSim
