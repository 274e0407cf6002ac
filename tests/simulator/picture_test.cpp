// What frames look like, byte by byte.

#include <cstring>

#include <gmock/gmock.h>

#include "tests/simulator/producer.h"

using namespace GenTL;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

namespace {

using Bytes = std::vector<uint8_t>;

class PictureTest : public CameraTest {
  protected:
    // The first frame of a camera with these keys.
    Bytes Frame(const std::string& keys) {
        OpenCamera(keys + " frameRate='0'");
        AllocateAndQueue(1);
        EXPECT_EQ(Start(1), GC_ERR_SUCCESS);
        const BUFFER_HANDLE buffer = Fetch();
        const uint8_t* const data = Data(buffer);
        return Bytes(data, data + BufferInfo(buffer, BUFFER_INFO_SIZE_FILLED).Size());
    }
};

// Bars 80 pixels wide: white, yellow, cyan, green, magenta, red, blue, black. Bytes from row 40 or
// 41, in the middle of a bar.
struct Sample {
    const char* format;
    size_t bitsPerPixel;
    size_t row;
    size_t bar;
    Bytes bytes;
};

class FormatTest : public PictureTest, public ::testing::WithParamInterface<Sample> {};

TEST_P(FormatTest, ShowsColourBars) {
    const Sample& sample = GetParam();
    const Bytes frame = Frame(std::string("pixelFormat='") + sample.format + "'");
    const size_t pitch = 640 * sample.bitsPerPixel / 8;
    ASSERT_EQ(frame.size(), pitch * 480);
    const size_t column = sample.bar * 80 + 40;
    const auto start = frame.begin() + static_cast<ptrdiff_t>(sample.row * pitch +
                                                              column * sample.bitsPerPixel / 8);
    EXPECT_THAT(Bytes(start, start + static_cast<ptrdiff_t>(sample.bytes.size())),
                ElementsAreArray(sample.bytes));
}

INSTANTIATE_TEST_SUITE_P(
    Formats, FormatTest,
    ::testing::Values(
        Sample{"Mono8", 8, 40, 0, {255}}, Sample{"Mono8", 8, 40, 1, {226}},
        Sample{"Mono8", 8, 40, 2, {179}}, Sample{"Mono8", 8, 40, 3, {150}},
        Sample{"Mono8", 8, 40, 4, {105}}, Sample{"Mono8", 8, 40, 5, {76}},
        Sample{"Mono8", 8, 40, 6, {29}}, Sample{"Mono8", 8, 40, 7, {0}},
        Sample{"Mono16", 16, 40, 5, {0x4C, 0x4C}}, Sample{"Mono10", 16, 40, 0, {0xFF, 0x03}},
        Sample{"Mono12p", 12, 40, 5, {0xC4, 0x44, 0x4C}},
        Sample{"Mono12Packed", 12, 40, 5, {0x4C, 0x44, 0x4C}},
        Sample{"Mono10Packed", 12, 40, 5, {0x4C, 0x11, 0x4C}},
        Sample{"Mono10p", 10, 40, 5, {0x31, 0xC5, 0x14, 0x53, 0x4C}},
        Sample{"BayerRG8", 8, 40, 1, {255, 255}}, Sample{"BayerRG8", 8, 41, 1, {255, 0}},
        Sample{"BayerRG8", 8, 40, 5, {255, 0}}, Sample{"BayerRG8", 8, 41, 6, {0, 255}},
        Sample{"BayerGB8", 8, 40, 6, {0, 255}}, Sample{"BayerGB8", 8, 41, 5, {255, 0}},
        Sample{"BayerGR12p", 12, 40, 5, {0x00, 0xF0, 0xFF}},
        Sample{"BayerBG10Packed", 12, 41, 5, {0x00, 0x30, 0xFF}},
        Sample{"RGB8", 24, 40, 5, {255, 0, 0}}, Sample{"BGR8", 24, 40, 5, {0, 0, 255}},
        Sample{"BGRa8", 32, 40, 6, {255, 0, 0, 255}},
        Sample{"RGB10", 48, 40, 1, {0xFF, 0x03, 0xFF, 0x03, 0, 0}},
        Sample{"BGR10p", 30, 40, 5, {0x00, 0x00, 0xF0, 0x3F}},
        Sample{"YCbCr422_8", 16, 40, 5, {76, 85, 76, 255}},
        Sample{"YUV422_8_UYVY", 16, 40, 6, {255, 29, 107, 29}}));

// The digits as they stand in the image, a sample for each dot.
constexpr const char* kDigits[10] = {
    ".###. #...# #..## #.#.# ##..# #...# .###.", "..#.. .##.. ..#.. ..#.. ..#.. ..#.. .###.",
    ".###. #...# ....# ...#. ..#.. .#... #####", "##### ...#. ..#.. ...#. ....# #...# .###.",
    "...#. ..##. .#.#. #..#. ##### ...#. ...#.", "##### #.... ####. ....# ....# #...# .###.",
    "..##. .#... #.... ####. #...# #...# .###.", "##### ....# ...#. ..#.. .#... .#... .#...",
    ".###. #...# #...# .###. #...# #...# .###.", ".###. #...# #...# .#### ....# ...#. .##.."};

// Reads one digit of the counter in a Mono8 image of 640 pixels; -1 when there is none.
int DigitAt(const uint8_t* image, size_t cell) {
    std::string seen;
    for (size_t y = 0; y < 7; ++y) {
        if (y != 0) seen += ' ';
        for (size_t x = 0; x < 5; ++x) {
            seen += image[(2 + 3 * y) * 640 + cell * 16 + 1 + 3 * x] == 255 ? '#' : '.';
        }
    }
    for (int digit = 0; digit < 10; ++digit) {
        if (seen == kDigits[digit]) return digit;
    }
    return -1;
}

TEST_F(PictureTest, CounterMarkerAndGradientMove) {
    OpenCamera("frameRate='0'");
    AllocateAndQueue(3);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    for (uint64_t id = 0; id < 125; ++id) {
        const BUFFER_HANDLE buffer = Fetch();
        ASSERT_EQ(FrameId(buffer), id);
        const uint8_t* const image = Data(buffer);
        int64_t counter = 0;
        for (size_t cell = 0; cell < 10; ++cell)
            counter = counter * 10 + DigitAt(image, cell);
        ASSERT_EQ(counter, static_cast<int64_t>(id));
        const size_t marker = 8 * id % 640;
        const uint8_t* const markerLine = &image[size_t{28} * 640];
        EXPECT_EQ(markerLine[marker], 255);
        EXPECT_EQ(markerLine[marker + 7], 255);
        EXPECT_EQ(markerLine[(marker + 8) % 640], 0);
        EXPECT_EQ(image[479 * 640 + 100], (100 + 8 * id) % 256);
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    }
}

TEST_F(PictureTest, PaddingAndOffsetSurroundTheLines) {
    const Bytes frame = Frame(
        "width='8' height='2' xPadding='2' yPadding='3' imageOffset='4' "
        "pattern='White'");
    EXPECT_THAT(frame, ElementsAre(0, 0, 0, 0,                                    // offset
                                   255, 255, 255, 255, 255, 255, 255, 255, 0, 0,  // line
                                   255, 255, 255, 255, 255, 255, 255, 255, 0, 0,  // line
                                   0, 0, 0));                                     // padding
}

TEST_F(PictureTest, PatternsOfSmallImages) {
    EXPECT_THAT(Frame("width='4' height='2' pattern='GradientDiagonal'"),
                ElementsAre(0, 1, 2, 3, 1, 2, 3, 4));
    EXPECT_THAT(Frame("width='4' height='1' pattern='GradientHorizontal'"),
                ElementsAre(0, 85, 170, 255));
    // White and magenta, with the chroma of white.
    EXPECT_THAT(Frame("width='2' height='1' pixelFormat='YCbCr422_8'"),
                ElementsAre(255, 128, 105, 128));
}

TEST_F(PictureTest, WithoutPictureTheCounterIsTheData) {
    OpenCamera("frameRate='0' noFill='true' width='16' height='2'");
    const BUFFER_HANDLE buffer = QueueMemory(32);
    ASSERT_EQ(Start(), GC_ERR_SUCCESS);
    for (uint64_t id = 0; id < 3; ++id) {
        ASSERT_EQ(Fetch(), buffer);
        uint64_t values[2] = {};
        std::memcpy(values, memory.data(), sizeof values);
        EXPECT_EQ(values[0], id);
        EXPECT_GE(values[1], BufferInfo(buffer, BUFFER_INFO_TIMESTAMP).Uint64());
        EXPECT_EQ(memory[16], 0xEE);
        ASSERT_EQ(Queue(buffer), GC_ERR_SUCCESS);
    }
}

}  // namespace
