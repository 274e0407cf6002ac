#include "producers/gigevision/control/exchange.h"

#include <cstdio>

#include "producers/wire/gvcpcommands.h"

namespace ZelGev {

namespace Gvcp = ZelCti::Gvcp;
using ZelCti::ByteSpan;
using ZelCti::ByteView;

namespace {

// Encoders want an id; the one that is sent replaces it.
constexpr Gvcp::Request kRequest{1};

const char* CommandName(Gvcp::Code code) {
    switch (code) {
        case Gvcp::Code::ReadRegCmd:
            return "READREG";
        case Gvcp::Code::WriteRegCmd:
            return "WRITEREG";
        case Gvcp::Code::ReadMemCmd:
            return "READMEM";
        default:
            return "WRITEMEM";
    }
}

}  // namespace

template <typename Encode>
Exchange Exchange::Make(Gvcp::Code code, const Encode& encode) {
    Exchange exchange;
    exchange.code = code;
    exchange.commandSize = encode(ByteSpan{exchange.command.data(), exchange.command.size()});
    return exchange;
}

Exchange Exchange::ReadReg(const uint32_t* addresses, size_t count) {
    Exchange exchange = Make(Gvcp::Code::ReadRegCmd, [&](ByteSpan out) {
        return Gvcp::EncodeReadRegCmd(out, kRequest, addresses, count);
    });
    exchange.answerSize = count * sizeof(uint32_t);
    return exchange;
}

Exchange Exchange::WriteReg(uint32_t address, uint32_t value) {
    const Gvcp::RegisterWrite write{address, value};
    return Make(Gvcp::Code::WriteRegCmd,
                [&](ByteSpan out) { return Gvcp::EncodeWriteRegCmd(out, kRequest, &write, 1); });
}

Exchange Exchange::ReadMem(uint32_t address, size_t size) {
    Exchange exchange = Make(Gvcp::Code::ReadMemCmd, [&](ByteSpan out) {
        return Gvcp::EncodeReadMemCmd(out, kRequest, {address, static_cast<uint16_t>(size)});
    });
    exchange.answerSize = sizeof address + size;
    return exchange;
}

Exchange Exchange::WriteMem(const Gvcp::Memory& memory) {
    return Make(Gvcp::Code::WriteMemCmd,
                [&](ByteSpan out) { return Gvcp::EncodeWriteMemCmd(out, kRequest, memory); });
}

std::string Exchange::Name() const {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%s 0x%08X", CommandName(code), Address());
    return text.data();
}

uint32_t Exchange::Address() const {
    return ByteView{command.data(), commandSize}.U32(Gvcp::kHeaderSize);
}

}  // namespace ZelGev
