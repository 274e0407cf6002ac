// zelcam read and write: access to the registers of a camera without its features.

#include <iostream>

#include "tools/zelcam/camera/registerport.h"
#include "tools/zelcam/camera/registervalue.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/numbertext.h"

namespace ZelTool {

namespace {

constexpr uint64_t kLongestRead = uint64_t{1} << 20;
constexpr uint64_t kLongestWrite = 4096;

struct RegisterOptions : CameraOptions {
    std::string address;
    std::string length;  // only for read; empty: one value
    std::string value;   // only for write
    std::string type;
    std::string order = "auto";
};

uint64_t NumberOf(const std::string& text, const char* what) {
    const auto number = ParseUnsigned(text);
    if (number) return *number;
    throw Failure(ExitCode::Usage, "\"" + text + "\" is not " + what +
                                       ": give a decimal number, or a hexadecimal one after 0x");
}

uint64_t AddressOf(const RegisterOptions& options) {
    return NumberOf(options.address, "an address");
}

void CheckRange(uint64_t address, uint64_t size, uint64_t longest) {
    if (size == 0 || size > longest) {
        throw Failure(ExitCode::Usage, "the length must be from 1 to " + std::to_string(longest) +
                                           " bytes, not " + std::to_string(size));
    }
    if (size - 1 > UINT64_MAX - address) {
        throw Failure(ExitCode::Usage, std::to_string(size) + " bytes at " + AddressText(address) +
                                           " go beyond the last address");
    }
}

size_t LengthOf(const RegisterOptions& options, const RegisterType& type) {
    constexpr size_t kOneRegister = 4;
    if (options.length.empty()) return type.IsNumber() ? type.Size() : kOneRegister;
    const uint64_t length = NumberOf(options.length, "a length");
    if (length % type.Size() != 0) {
        throw Failure(ExitCode::Usage,
                      "a length of " + options.length + " bytes is not a multiple of " +
                          std::to_string(type.Size()) + ", the size of " + type.Name());
    }
    return length;
}

ByteOrder OrderOf(const RegisterOptions& options, const RegisterType& type,
                  const RegisterPort& port) {
    if (options.order == "big") return ByteOrder::Big;
    if (options.order == "little" || !type.HasOrder()) return ByteOrder::Little;
    const auto order = port.Order();
    if (order) return *order;
    throw Failure(ExitCode::Usage, "the byte order of this module is unknown: give --endian");
}

std::string LineOf(const Json& value, const RegisterType& type, ByteOrder order) {
    std::string line = "  " + JsonLine(value);
    if (type.IsNumber()) line += "  " + type.Name();
    return type.HasOrder() ? line + " " + OrderWords(order) : line;
}

void Print(const RegisterOptions& options, const RegisterType& type, ByteOrder order,
           const std::string& bytes) {
    const uint64_t address = AddressOf(options);
    const bool json = options.json;
    if (type.Name() == "hex" && !json) {
        std::cout << HexDump(address, bytes);
        return;
    }
    Json values = Json::array();
    const size_t step = type.IsNumber() ? type.Size() : bytes.size();
    for (size_t at = 0; at < bytes.size(); at += step) {
        values.push_back(type.Value(bytes.substr(at, step), order));
        if (!json)
            std::cout << AddressText(address + at) << LineOf(values.back(), type, order) << '\n';
    }
    if (!json) return;
    Json result = {
        {"address", address}, {"length", bytes.size()}, {"type", type.Name()}, {"values", values}};
    if (type.HasOrder()) result["byteOrder"] = OrderWords(order);
    PrintJson(result);
}

ExitCode RunRead(const RegisterOptions& options) {
    const RegisterType type(options.type);
    const uint64_t address = AddressOf(options);
    const size_t length = LengthOf(options, type);
    CheckRange(address, length, kLongestRead);
    FeatureSession session(options);
    const RegisterPort port(session.Camera(), ModuleOf(options.module));
    const ByteOrder order = OrderOf(options, type, port);
    Print(options, type, order, port.Read(address, length));
    return ExitCode::Ok;
}

// Prints the written value and does not read it back: the register may not be readable.
ExitCode RunWrite(const RegisterOptions& options) {
    const bool isHex = options.value.compare(0, 4, "hex:") == 0;
    const RegisterType type(isHex ? "hex" : options.type);
    const uint64_t address = AddressOf(options);
    CheckRange(address, type.Bytes(options.value, ByteOrder::Little).size(), kLongestWrite);
    FeatureSession session(options);
    const RegisterPort port(session.Camera(), ModuleOf(options.module));
    const ByteOrder order = OrderOf(options, type, port);
    const std::string bytes = type.Bytes(options.value, order);
    port.Write(address, bytes);
    Print(options, type, order, bytes);
    return ExitCode::Ok;
}

void AddAddress(Command command, RegisterOptions& options) {
    AddModuleOptions(command, options);
    command
        .AddOption("address", "ADDRESS", options.address,
                   "Address: decimal, or hexadecimal after 0x")
        .Required();
}

void AddForm(Command command, RegisterOptions& options, const std::string& what) {
    command
        .AddOption("--as", "TYPE", options.type,
                   what + ": hex, text, u8, u16, u32, u64,\ni8, i16, i32, i64, f32 or f64")
        .OneOf(RegisterType::Names());
    command
        .AddOption("--endian", "ORDER", options.order,
                   "Byte order of a number: little, big, or auto, which means the order that the "
                   "camera reports (big if it reports none)")
        .OneOf({"auto", "little", "big"});
}

}  // namespace

void AddReadCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(app, invocation, "read", "Read registers", RunRead);
    options.type = "hex";
    AddAddress(command, options);
    command.AddOption("length", "LENGTH", options.length,
                      "Number of bytes, up to 1048576. Default: the size of one number, else 4");
    AddForm(command, options, "Type of the values");
    command.Footer(
        "Examples:\n"
        "  zelcam read 1 0x0 0x200                  a hex dump\n"
        "  zelcam read 1 0x2110 --as u32\n"
        "  zelcam read 1 0x2110 8 --as u32 --endian big --json\n"
        "  zelcam read 1 0x44 32 --as text\n"
        "  zelcam read 1 0x200 -m stream\n\n"
        "Only the camera reports its byte order. For numbers of several bytes in other modules, "
        "give --endian.");
}

void AddWriteCommand(Command app, Invocation& invocation) {
    auto [command, options] = AddCommand(app, invocation, "write", "Write registers", RunWrite);
    options.type = "u32";
    AddAddress(command, options);
    command
        .AddOption("value", "VALUE", options.value,
                   "A value of the type, or up to 4096 bytes: hex:0a0b or 'hex:0a 0b'")
        .Required();
    AddForm(command, options, "Type of VALUE");
    command.Footer(
        "Examples:\n"
        "  zelcam write 1 0x2110 320\n"
        "  zelcam write 1 0x2110 0x140 --as u32 --endian little\n"
        "  zelcam write 1 0x2110 hex:40010000\n"
        "  zelcam write 1 0x2200 0.5 --as f32\n\n"
        "Writing a register ignores the limits of its feature, and the features do not notice the "
        "change. Text is written without a zero at its end. The command prints what it has "
        "written and does not read it back.");
}

}  // namespace ZelTool
