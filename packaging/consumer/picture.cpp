// Writes a picture of an image in memory: `picture FILE`.
#include <cstdint>
#include <cstdio>

#include "ZelImage/ZelImage.h"

int main(int argc, char** argv) {
    const uint8_t mosaic[] = {200, 90, 80, 30};
    const ZelImage::View view{mosaic, sizeof mosaic, ZelImage::FormatByName("BayerRG8"), 2, 2};
    if (argc == 2 && ZelImage::Save(view, argv[1], nullptr) == ZelCamErr_Success) return 0;
    std::fprintf(stderr, "picture: %s\n", ZelImage::LastReason());
    return 1;
}
