// Literal messages of GVCP, decoded as far as their headers.
#pragma once

#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "producers/wire/gvcpcommands.h"
#include "tests/wire/bytes.h"

namespace WireTest {

// A message with its own memory, to which the payloads point.
struct CommandMessage {
    explicit CommandMessage(std::string_view digits) : bytes(Hex(digits)) {
        const auto decoded = ZelCti::Gvcp::DecodeCommand(ViewOf(bytes));
        EXPECT_TRUE(decoded) << digits;
        if (decoded) command = *decoded;
    }

    Bytes bytes;
    ZelCti::Gvcp::Command command{};
};

struct AckMessage {
    explicit AckMessage(std::string_view digits) : bytes(Hex(digits)) {
        const auto decoded = ZelCti::Gvcp::DecodeAcknowledge(ViewOf(bytes));
        EXPECT_TRUE(decoded) << digits;
        if (decoded) ack = *decoded;
    }

    Bytes bytes;
    ZelCti::Gvcp::Acknowledge ack{};
};

inline std::vector<uint32_t> ValuesOf(const ZelCti::Gvcp::Words& words) {
    std::vector<uint32_t> values;
    for (const uint32_t word : words)
        values.push_back(word);
    return values;
}

}  // namespace WireTest
