#include "producers/simulator/frame/lineencoder.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace ZelSim {

namespace {

// The component with this letter.
uint8_t ComponentOf(const Rgb& pixel, char letter) {
    const double r = pixel.r;
    const double g = pixel.g;
    const double b = pixel.b;
    double value = 255;  // A
    switch (letter) {
        case 'R':
            return pixel.r;
        case 'G':
            return pixel.g;
        case 'B':
            return pixel.b;
        case 'Y':
            value = 0.299 * r + 0.587 * g + 0.114 * b;
            break;
        case 'U':
            value = 128 - 0.168736 * r - 0.331264 * g + 0.5 * b;
            break;
        case 'V':
            value = 128 + 0.5 * r - 0.418688 * g - 0.081312 * b;
            break;
        default:
            break;
    }
    return static_cast<uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

// 8 bits to more, so that 0 stays 0 and 255 becomes the largest value.
uint16_t Widen(uint8_t value, unsigned bits) {
    return static_cast<uint16_t>(unsigned{value} << (bits - 8) | unsigned{value} >> (16 - bits));
}

// The component values of a line, in the order of the format.
std::vector<uint16_t> ComponentsOf(const PixelFormat& format, const std::vector<Rgb>& pixels,
                                   size_t row) {
    const std::string_view letters = format.components;
    std::vector<uint16_t> values;
    const auto add = [&](const Rgb& pixel, char letter) {
        values.push_back(Widen(ComponentOf(pixel, letter), format.bits));
    };
    for (size_t x = 0; x < pixels.size(); ++x) {
        switch (format.sampling) {
            case Sampling::Pixel:
                for (char letter : letters)
                    add(pixels[x], letter);
                break;
            case Sampling::Mosaic:
                add(pixels[x], letters[row % 2 * 2 + x % 2]);
                break;
            case Sampling::Pair:  // each pixel gives half of the letters; chroma from the first
                for (char letter : letters.substr(x % 2 * 2, 2)) {
                    add(letter == 'Y' ? pixels[x] : pixels[x - x % 2], letter);
                }
                break;
        }
    }
    return values;
}

std::vector<uint8_t> PackWords(const std::vector<uint16_t>& values, unsigned bits) {
    std::vector<uint8_t> bytes;
    for (const unsigned value : values) {
        bytes.push_back(static_cast<uint8_t>(value & 0xFFU));
        if (bits > 8) bytes.push_back(static_cast<uint8_t>(value >> 8));
    }
    return bytes;
}

std::vector<uint8_t> PackLsb(const std::vector<uint16_t>& values, unsigned bits) {
    std::vector<uint8_t> bytes;
    uint32_t pending = 0;
    unsigned numPending = 0;
    for (const uint32_t value : values) {
        pending |= value << numPending;
        for (numPending += bits; numPending >= 8; numPending -= 8) {
            bytes.push_back(static_cast<uint8_t>(pending & 0xFFU));
            pending >>= 8;
        }
    }
    return bytes;
}

std::vector<uint8_t> PackGev(const std::vector<uint16_t>& values, unsigned bits) {
    std::vector<uint8_t> bytes;
    const unsigned low = bits - 8;
    const unsigned mask = (1U << low) - 1;
    for (size_t i = 0; i + 1 < values.size(); i += 2) {
        const unsigned first = values[i];
        const unsigned second = values[i + 1];
        bytes.push_back(static_cast<uint8_t>(first >> low));
        bytes.push_back(static_cast<uint8_t>((first & mask) | (second & mask) << 4));
        bytes.push_back(static_cast<uint8_t>(second >> low));
    }
    return bytes;
}

}  // namespace

std::vector<uint8_t> EncodeLine(const PixelFormat& format, const std::vector<Rgb>& pixels,
                                size_t row) {
    const std::vector<uint16_t> values = ComponentsOf(format, pixels, row);
    switch (format.packing) {
        case Packing::Lsb:
            return PackLsb(values, format.bits);
        case Packing::Gev:
            return PackGev(values, format.bits);
        default:
            return PackWords(values, format.bits);
    }
}

}  // namespace ZelSim
