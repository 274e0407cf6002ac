#include "imaging/kernels/loops.h"

namespace ZelImage::Kernels::ZELIMAGE_LEVEL {

const Set kSet = {
    UnpackLsbFirst, UnpackGigEVision, UnpackWords, StretchTo8, NarrowTo8, WidenTo16,  StretchTo16,
    Join8,          Join16,           Split8,      Split16,    Demosaic8, Demosaic16, Luma8,
    Luma16,         Yuv8To8,          Yuv8To16,    Yuv16To8,   Yuv16To16,
};

}  // namespace ZelImage::Kernels::ZELIMAGE_LEVEL
