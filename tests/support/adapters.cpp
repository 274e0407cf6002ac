// The adapters on which the program of a test looks for GigE cameras: looking for them sends
// broadcasts.

#include <cstdlib>

namespace {

[[maybe_unused]] const int kIsSet = setenv("ZELGEV_INTERFACES", ZELCAM_TEST_ADAPTERS, 1);

}  // namespace
