// A configuration of the simulated cameras: the file of a user's, or a camera that a program plugs
// in. It is read, or refused with a reason.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "producers/server/base/error.h"
#include "producers/simulator/config/configparser.h"

using namespace ZelSim;

namespace {

template <typename Parse>
void Read(Parse parse, const std::string& text) {
    try {
        parse(text, "input");
    } catch (const ZelCti::Error& error) {
        if (error.Code() != GenTL::GC_ERR_INVALID_PARAMETER || *error.what() == '\0') std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Read(ParseConfig, text);
    Read(ParseCamera, text);
    return 0;
}
