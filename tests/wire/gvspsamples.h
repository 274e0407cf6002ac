// Packets of the stream protocol, each as our encoders make it and as the bytes that it shall have.
#pragma once

#include <functional>
#include <string>

#include "tests/wire/bytes.h"

namespace ZelCti::Gvsp {

struct GvspSample {
    const char* name;
    std::function<size_t(ByteSpan)> encode;
    WireTest::Bytes bytes;
    std::string fields;  // that tshark finds, in its order: name=value, but not those that are 0
};

// The packets that were captured, those that were built by hand from the tables of the protocol,
// and with them each payload type and each format.
const std::vector<GvspSample>& GvspSamples();

}  // namespace ZelCti::Gvsp
