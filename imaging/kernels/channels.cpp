// Channels as pixels, and back.
#include "imaging/kernels/loops.h"
#include "imaging/kernels/vectors.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

namespace {

template <typename Sample>
void Join3(const Sample* a, const Sample* b, const Sample* c, size_t from, size_t count,
           Sample* out) {
    for (size_t i = from; i < count; ++i) {
        out[3 * i] = a[i];
        out[3 * i + 1] = b[i];
        out[3 * i + 2] = c[i];
    }
}

template <typename Sample>
void Join4(const Sample* a, const Sample* b, const Sample* c, const Sample* d, size_t count,
           Sample* out) {
    for (size_t i = 0; i < count; ++i) {
        out[4 * i] = a[i];
        out[4 * i + 1] = b[i];
        out[4 * i + 2] = c[i];
        out[4 * i + 3] = d[i];
    }
}

// Sixteen pixels are three vectors. Byte i of the vector n belongs to the channel (n + i) % 3, so
// each channel has one vector in which every byte it has in the three already stands in its place;
// masks put them together.
void JoinVectors(Vector8 a, Vector8 b, Vector8 c, uint8_t* out) {
    constexpr uint8_t kAll = 0xFF;
    const Vector8 first = {kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll};
    const Vector8 second = {0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0};
    const Vector8 third = {0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0, 0, kAll, 0};
    a = __builtin_shufflevector(a, a, 0, 11, 6, 1, 12, 7, 2, 13, 8, 3, 14, 9, 4, 15, 10, 5);
    b = __builtin_shufflevector(b, b, 5, 0, 11, 6, 1, 12, 7, 2, 13, 8, 3, 14, 9, 4, 15, 10);
    c = __builtin_shufflevector(c, c, 10, 5, 0, 11, 6, 1, 12, 7, 2, 13, 8, 3, 14, 9, 4, 15);
    Store((a & first) | (b & second) | (c & third), out);
    Store((b & first) | (c & second) | (a & third), out + kVectorBytes);
    Store((c & first) | (a & second) | (b & third), out + 2 * kVectorBytes);
}

template <typename Sample>
void Split(const Sample* in, size_t count, size_t step, Sample* const channels[4]) {
    Sample* const a = channels[0];
    Sample* const b = channels[1];
    Sample* const c = channels[2];
    Sample* const d = channels[3];
    for (size_t i = 0; step == 3 && i < count; ++i) {
        a[i] = in[3 * i];
        b[i] = in[3 * i + 1];
        c[i] = in[3 * i + 2];
    }
    for (size_t i = 0; step == 4 && i < count; ++i) {
        a[i] = in[4 * i];
        b[i] = in[4 * i + 1];
        c[i] = in[4 * i + 2];
        d[i] = in[4 * i + 3];
    }
}

}  // namespace

void Join8(const uint8_t* const channels[4], size_t count, uint8_t* out) {
    const uint8_t* const a = channels[0];
    const uint8_t* const b = channels[1];
    const uint8_t* const c = channels[2];
    if (channels[3] != nullptr) return Join4(a, b, c, channels[3], count, out);
    size_t i = 0;
    for (; i + kVectorBytes <= count; i += kVectorBytes) {
        JoinVectors(Load<Vector8>(a + i), Load<Vector8>(b + i), Load<Vector8>(c + i), out + 3 * i);
    }
    Join3(a, b, c, i, count, out);
}

void Join16(const uint16_t* const channels[4], size_t count, uint16_t* out) {
    if (channels[3] != nullptr)
        return Join4(channels[0], channels[1], channels[2], channels[3], count, out);
    Join3(channels[0], channels[1], channels[2], 0, count, out);
}

void Split8(const uint8_t* in, size_t count, size_t step, uint8_t* const channels[4]) {
    Split(in, count, step, channels);
}

void Split16(const uint16_t* in, size_t count, size_t step, uint16_t* const channels[4]) {
    Split(in, count, step, channels);
}

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
