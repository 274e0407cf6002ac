#include "producers/simulator/frame/testpicture.h"

#include <algorithm>
#include <cstring>

namespace ZelSim {

namespace {

constexpr size_t kStep = 8;  // pixels a frame
constexpr size_t kCellWidth = 16;
constexpr size_t kCellHeight = 24;
constexpr size_t kGlyphScale = 3;  // pixels for each dot of the digits
constexpr size_t kMarkerTop = kCellHeight;
constexpr size_t kMarkerHeight = 8;
constexpr size_t kPeriod = 256;  // of the gradient

// Digits of 5 x 7 dots; a row is five bits, the leftmost highest.
constexpr uint8_t kGlyphs[10][7] = {
    {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}, {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E},
    {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F}, {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E},
    {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}, {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E},
    {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}, {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08},
    {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}, {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C}};

// One row of a digit in its cell, which it leaves a border of about one dot.
std::vector<uint8_t> GlyphRow(size_t digit, size_t row) {
    std::vector<uint8_t> levels(kCellWidth, 0);
    if (row == 0 || row > 7 * kGlyphScale) return levels;
    const unsigned dots = kGlyphs[digit][(row - 1) / kGlyphScale];
    for (size_t x = 0; x < 5 * kGlyphScale; ++x) {
        if ((dots >> (4 - x / kGlyphScale) & 1U) != 0) levels[x] = 255;
    }
    return levels;
}

Rgb Grey(size_t level) {
    const auto value = static_cast<uint8_t>(level);
    return {value, value, value};
}

// The pattern at a place of the sensor, in pixels after binning.
Rgb ColourAt(const FrameSettings& settings, size_t x, size_t y) {
    constexpr Rgb kBars[] = {{255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
                             {255, 0, 255},   {255, 0, 0},   {0, 0, 255},   {0, 0, 0}};
    switch (settings.pattern) {
        case Pattern::GradientHorizontal:
            return Grey(x * 255 / std::max<size_t>(settings.WidthMax() - 1, 1));
        case Pattern::GradientDiagonal:
            return Grey((x + y) % kPeriod);
        case Pattern::Black:
            return Grey(0);
        case Pattern::White:
            return Grey(255);
        default:
            return kBars[x * std::size(kBars) / settings.WidthMax()];
    }
}

}  // namespace

TestPicture::TestPicture(const FrameSettings& settings)
    : settings_(settings),
      brightness_(settings),
      format_(*settings.pixelFormat),
      width_(settings.width),
      height_(settings.height),
      pitch_(static_cast<size_t>(settings.LinePitch())),
      moves_(width_ >= kCellWidth && height_ >= kMarkerTop + kMarkerHeight) {
    RenderStatic();
    if (moves_) RenderParts();
}

// One line of the region that the camera sends.
std::vector<Rgb> TestPicture::PatternLine(size_t y) const {
    std::vector<Rgb> line(width_);
    for (size_t x = 0; x < width_; ++x) {
        const size_t place = settings_.offsetX + x;
        const size_t column = settings_.reverseX ? settings_.WidthMax() - 1 - place : place;
        line[x] = brightness_.Apply(ColourAt(settings_, column, settings_.offsetY + y));
    }
    return line;
}

// Most lines are like the one two rows above, which has the same place in a mosaic: they are
// copied.
void TestPicture::RenderStatic() {
    static_.assign(pitch_ * height_, 0);
    std::array<std::vector<Rgb>, 2> above;
    for (size_t y = 0; y < height_; ++y) {
        std::vector<Rgb> line = PatternLine(y);
        const bool black = moves_ && y >= kMarkerTop && y < kMarkerTop + kMarkerHeight;
        if (black) std::fill(line.begin(), line.end(), Grey(0));
        uint8_t* const out = static_.data() + y * pitch_;
        if (line == above[y % 2]) {
            std::memcpy(out, out - 2 * pitch_, pitch_);
            continue;
        }
        const std::vector<uint8_t> bytes = EncodeLine(format_, line, y);
        std::copy(bytes.begin(), bytes.end(), out);
        above[y % 2] = line;
    }
}

// Grey is the same in every row of a mosaic.
std::vector<uint8_t> TestPicture::EncodeGrey(const std::vector<uint8_t>& levels) const {
    std::vector<Rgb> line;
    line.reserve(levels.size());
    for (uint8_t level : levels)
        line.push_back(Grey(level));
    return EncodeLine(format_, line, 0);
}

void TestPicture::RenderParts() {
    for (size_t digit = 0; digit < kNumDigits; ++digit) {
        for (size_t row = 0; row < kCellHeight; ++row) {
            digits_[digit].push_back(EncodeGrey(GlyphRow(digit, row)));
        }
    }
    marker_ = EncodeGrey(std::vector<uint8_t>(kStep, 255));
    std::vector<uint8_t> levels(width_ + kPeriod);
    for (size_t x = 0; x < levels.size(); ++x)
        levels[x] = brightness_.Apply(Grey(x % kPeriod)).g;
    gradient_ = EncodeGrey(levels);
}

void TestPicture::Draw(uint64_t frame, uint8_t* image, size_t numLines) const {
    if (numLines == 0) return;
    std::memcpy(image, static_.data(), pitch_ * numLines);
    if (!moves_) return;
    DrawCounter(frame, image, numLines);
    DrawMarker(frame, image, numLines);
    DrawGradient(frame, image, numLines);
}

void TestPicture::DrawCounter(uint64_t frame, uint8_t* image, size_t numLines) const {
    const size_t numCells = std::min(kNumDigits, width_ / kCellWidth);
    const size_t numRows = std::min(kCellHeight, numLines);
    for (size_t cell = numCells; cell-- > 0; frame /= 10) {
        uint8_t* out = image + format_.LineBytes(cell * kCellWidth);
        const auto& digit = digits_[frame % 10];
        for (size_t row = 0; row < numRows; ++row, out += pitch_) {
            std::copy(digit[row].begin(), digit[row].end(), out);
        }
    }
}

void TestPicture::DrawMarker(uint64_t frame, uint8_t* image, size_t numLines) const {
    const auto x = static_cast<size_t>(frame % (width_ / kStep)) * kStep;
    const size_t end = std::min(kMarkerTop + kMarkerHeight, numLines);
    for (size_t row = kMarkerTop; row < end; ++row) {
        std::copy(marker_.begin(), marker_.end(), image + row * pitch_ + format_.LineBytes(x));
    }
}

void TestPicture::DrawGradient(uint64_t frame, uint8_t* image, size_t numLines) const {
    const auto shift = static_cast<size_t>(frame % (kPeriod / kStep)) * kStep;
    const uint8_t* const line = gradient_.data() + format_.LineBytes(shift);
    const size_t top = std::max(height_ - height_ / 4, kMarkerTop + kMarkerHeight);
    for (size_t row = top; row < numLines; ++row) {
        std::memcpy(image + row * pitch_, line, format_.LineBytes(width_));
    }
}

}  // namespace ZelSim
