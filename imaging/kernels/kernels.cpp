#include "imaging/kernels/kernels.h"

namespace ZelImage::Kernels {

namespace Baseline {
extern const Set kSet;
}

#ifdef __x86_64__
namespace Newer {
extern const Set kSet;
}

const Set& Best() {
    static const bool kIsNewer = __builtin_cpu_supports("avx2");
    return kIsNewer ? Newer::kSet : Baseline::kSet;
}
#else
const Set& Best() {
    return Baseline::kSet;
}
#endif

}  // namespace ZelImage::Kernels
