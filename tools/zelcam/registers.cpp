// zelcam read and write: the registers of a camera, without its features between.

#include <iostream>
#include <memory>

#include <nlohmann/json.hpp>

#include "tools/zelcam/commands.h"
#include "tools/zelcam/jsontext.h"
#include "tools/zelcam/numbertext.h"
#include "tools/zelcam/registerport.h"
#include "tools/zelcam/registervalue.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr uint64_t longestRead = uint64_t{1} << 20;
constexpr uint64_t longestWrite = 4096;

struct RegisterOptions {
    FeatureOptions camera;
    std::string address;
    std::string length;  // read only; empty: one value
    std::string value;   // write only
    std::string type;
    std::string order = "auto";
};

uint64_t NumberOf(const std::string& text, const char* what) {
    const auto number = ParseUnsigned(text);
    if (number) return *number;
    throw Failure(ExitCode::Usage, "\"" + text + "\" is no " + what + ": digits, or 0x and digits");
}

uint64_t AddressOf(const RegisterOptions& options) {
    return NumberOf(options.address, "address");
}

void CheckRange(uint64_t address, uint64_t size, uint64_t longest) {
    if (size == 0 || size > longest) {
        throw Failure(ExitCode::Usage, "between 1 and " + std::to_string(longest) +
                                           " bytes go at once, not " + std::to_string(size));
    }
    if (size - 1 > UINT64_MAX - address) {
        throw Failure(ExitCode::Usage, std::to_string(size) + " bytes at " + AddressText(address) +
                                           " go beyond the last address");
    }
}

size_t LengthOf(const RegisterOptions& options, const RegisterType& type) {
    constexpr size_t oneRegister = 4;
    if (options.length.empty()) return type.IsNumber() ? type.Size() : oneRegister;
    const uint64_t length = NumberOf(options.length, "length");
    if (length % type.Size() != 0) {
        throw Failure(ExitCode::Usage, options.length + " bytes are no whole number of " +
                                           type.Name() + ", of " + std::to_string(type.Size()) +
                                           " bytes each");
    }
    return length;
}

ByteOrder OrderOf(const RegisterOptions& options, const RegisterType& type,
                  const RegisterPort& port) {
    if (options.order == "big") return ByteOrder::Big;
    if (options.order == "little" || !type.HasOrder()) return ByteOrder::Little;
    const auto order = port.Order();
    if (order) return *order;
    throw Failure(ExitCode::Usage, "the byte order of this module is not known: --endian says it");
}

std::string LineOf(const Json& value, const RegisterType& type, ByteOrder order) {
    std::string line = "  " + JsonText(value, -1);
    if (type.IsNumber()) line += "  " + type.Name();
    return type.HasOrder() ? line + " " + OrderWords(order) : line;
}

void Print(const RegisterOptions& options, const RegisterType& type, ByteOrder order,
           const std::string& bytes) {
    const uint64_t address = AddressOf(options);
    const bool json = options.camera.session.json;
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
    std::cout << JsonText(result) << '\n';
}

ExitCode RunRead(const RegisterOptions& options) {
    const RegisterType type(options.type);
    const uint64_t address = AddressOf(options);
    const size_t length = LengthOf(options, type);
    CheckRange(address, length, longestRead);
    FeatureSession session(options.camera);
    const RegisterPort port(session.Camera(), ModuleOf(options.camera.module));
    const ByteOrder order = OrderOf(options, type, port);
    Print(options, type, order, port.Read(address, length));
    return ExitCode::Ok;
}

// What was written is printed as it was understood; a register need not be readable.
ExitCode RunWrite(const RegisterOptions& options) {
    const bool isHex = options.value.compare(0, 4, "hex:") == 0;
    const RegisterType type(isHex ? "hex" : options.type);
    const uint64_t address = AddressOf(options);
    CheckRange(address, type.Bytes(options.value, ByteOrder::Little).size(), longestWrite);
    FeatureSession session(options.camera);
    const RegisterPort port(session.Camera(), ModuleOf(options.camera.module));
    const ByteOrder order = OrderOf(options, type, port);
    const std::string bytes = type.Bytes(options.value, order);
    port.Write(address, bytes);
    Print(options, type, order, bytes);
    return ExitCode::Ok;
}

std::shared_ptr<RegisterOptions> MakeOptions(const char* type) {
    auto options = std::make_shared<RegisterOptions>();
    options->type = type;
    return options;
}

void AddAddress(Command command, RegisterOptions& options) {
    AddFeatureOptions(command, options.camera);
    command.AddOption("address", options.address, "Where: decimal, or behind 0x")
        .TypeName("ADDRESS")
        .Required();
}

void AddForm(Command command, RegisterOptions& options, const std::string& what) {
    command
        .AddOption("--as", options.type,
                   what + ": hex, text, u8, u16, u32, u64,\ni8, i16, i32, i64, f32 or f64")
        .TypeName("TYPE")
        .OneOf(RegisterType::Names())
        .ShowDefault();
    command
        .AddOption("--endian", options.order,
                   "Order of the bytes of a number: little, big, or auto, as the camera says (big "
                   "where it says nothing)")
        .TypeName("ORDER")
        .OneOf({"auto", "little", "big"})
        .ShowDefault();
}

}  // namespace

void AddReadCommand(Command app, Invocation& invocation) {
    const auto options = MakeOptions("hex");
    Command command = app.AddCommand("read", "Read registers");
    AddAddress(command, *options);
    command
        .AddOption("length", options->length,
                   "How many bytes, up to 1048576. Left out: those of one number, else 4")
        .TypeName("LENGTH");
    AddForm(command, *options, "What the bytes are");
    command.Footer(
        "Examples:\n"
        "  zelcam read 1 0x0 0x200                  a hex dump\n"
        "  zelcam read 1 0x2110 --as u32\n"
        "  zelcam read 1 0x2110 8 --as u32 --endian big --json\n"
        "  zelcam read 1 0x44 32 --as text\n"
        "  zelcam read 1 0x200 -m stream\n\n"
        "The registers of a module other than the camera do not tell the order of their bytes: "
        "give --endian with numbers of several bytes.");
    Connect(command, invocation, options, RunRead);
}

void AddWriteCommand(Command app, Invocation& invocation) {
    const auto options = MakeOptions("u32");
    Command command = app.AddCommand("write", "Write registers");
    AddAddress(command, *options);
    command
        .AddOption("value", options->value,
                   "A value of the type, or bytes as they stand: hex:0a0b or 'hex:0a 0b', up to "
                   "4096")
        .TypeName("VALUE")
        .Required();
    AddForm(command, *options, "What VALUE is");
    command.Footer(
        "Examples:\n"
        "  zelcam write 1 0x2110 320\n"
        "  zelcam write 1 0x2110 0x140 --as u32 --endian little\n"
        "  zelcam write 1 0x2110 hex:40010000\n"
        "  zelcam write 1 0x2200 0.5 --as f32\n\n"
        "A register is written past all limits that its feature may have, and the features do not "
        "notice. Text is written without a zero at its end. What was written is printed, not what "
        "is read back.");
    Connect(command, invocation, options, RunWrite);
}
