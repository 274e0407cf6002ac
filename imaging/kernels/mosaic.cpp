// Bilinear demosaicing of a line. A pair of pixels, a coloured one and a green one to its right, is
// one lane of a vector, as wide as both: the coloured pixel is its low half, the green one its high
// half, and the sums of four components fit into it.
#include "imaging/kernels/loops.h"
#include "imaging/kernels/vectors.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

namespace {

// A lane is of the type `Lane`, with half of its bits for each pixel.
template <typename Pairs, typename Lane, typename Sample>
size_t DemosaicVectors(const MosaicLines<Sample>& lines, size_t x, size_t to,
                       const MosaicColours<Sample>& colours) {
    constexpr size_t kPixels = kVectorBytes / sizeof(Sample);
    constexpr int kBits = 8 * sizeof(Sample);
    constexpr auto kLow = static_cast<Lane>((Lane{1} << kBits) - 1);
    const auto low = [](Pairs pairs) { return pairs & kLow; };
    const auto join = [](Pairs first, Pairs second) { return first | second << kBits; };
    for (; x + kPixels <= to; x += kPixels) {
        const auto own = Load<Pairs>(lines.own + x);
        const auto above = Load<Pairs>(lines.above + x);
        const auto below = Load<Pairs>(lines.below + x);
        const Pairs greenBefore = low(Load<Pairs>(lines.own + x - 1));
        const Pairs colourAfter = Load<Pairs>(lines.own + x + 1) >> kBits;
        // Above and below a coloured pixel is green, beside that the other colour.
        const Pairs green = low(above) + low(below);
        const Pairs other = (above >> kBits) + (below >> kBits);
        const Pairs otherBefore =
            low(Load<Pairs>(lines.above + x - 1)) + low(Load<Pairs>(lines.below + x - 1));
        Store(join(low(own), (low(own) + colourAfter + 1) >> 1), colours.own + x);
        Store(join((greenBefore + (own >> kBits) + green + 2) >> 2, own >> kBits),
              colours.green + x);
        Store(join((otherBefore + other + 2) >> 2, (other + 1) >> 1), colours.other + x);
    }
    return x;
}

template <typename Sample>
Sample Mean(uint32_t a, uint32_t b) {
    return static_cast<Sample>((a + b + 1) / 2);
}

template <typename Sample>
Sample Mean(uint32_t a, uint32_t b, uint32_t c, uint32_t d) {
    return static_cast<Sample>((a + b + c + d + 2) / 4);
}

template <typename Sample>
void DemosaicRest(const MosaicLines<Sample>& lines, size_t x, size_t to,
                  const MosaicColours<Sample>& colours) {
    const Sample* const above = lines.above;
    const Sample* const own = lines.own;
    const Sample* const below = lines.below;
    for (; x + 1 < to; x += 2) {
        colours.own[x] = own[x];
        colours.green[x] = Mean<Sample>(own[x - 1], own[x + 1], above[x], below[x]);
        colours.other[x] = Mean<Sample>(above[x - 1], above[x + 1], below[x - 1], below[x + 1]);
        colours.own[x + 1] = Mean<Sample>(own[x], own[x + 2]);
        colours.green[x + 1] = own[x + 1];
        colours.other[x + 1] = Mean<Sample>(above[x + 1], below[x + 1]);
    }
}

}  // namespace

void Demosaic8(const MosaicLines<uint8_t>& lines, size_t from, size_t to,
               const MosaicColours<uint8_t>& colours) {
    DemosaicRest(lines, DemosaicVectors<Vector16, uint16_t>(lines, from, to, colours), to, colours);
}

void Demosaic16(const MosaicLines<uint16_t>& lines, size_t from, size_t to,
                const MosaicColours<uint16_t>& colours) {
    DemosaicRest(lines, DemosaicVectors<Vector32, uint32_t>(lines, from, to, colours), to, colours);
}

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
