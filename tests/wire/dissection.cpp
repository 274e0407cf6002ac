#include "tests/wire/dissection.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace WireTest {

namespace {

using ZelCti::ByteSpan;
using ZelCti::ByteView;

constexpr uint8_t kApplication = 1;
constexpr uint8_t kDevice = 2;

constexpr size_t kEthernetSize = 14;
constexpr size_t kIpSize = 20;
constexpr size_t kUdpSize = 8;
constexpr size_t kHeadersSize = kEthernetSize + kIpSize + kUdpSize;

void PutEthernet(ByteSpan out, uint8_t source, uint8_t destination) {
    out.PutU48(0, 0x020000000000U + destination);
    out.PutU48(6, 0x020000000000U + source);
    out.PutU16(12, 0x0800);  // IPv4
}

void PutIp(ByteSpan out, uint8_t source, uint8_t destination, size_t size) {
    out.PutZeros(0, kIpSize);
    out.PutU16(0, 0x4500);
    out.PutU16(2, size);
    out.PutU16(8, 0x4011);  // 64 hops, UDP
    out.PutU32(12, 0x0A4D0000U + source);
    out.PutU32(16, 0x0A4D0000U + destination);
    uint32_t sum = 0;
    for (size_t i = 0; i < kIpSize; i += 2)
        sum += ByteView{out.data, kIpSize}.U16(i);
    out.PutU16(10, ~(sum + (sum >> 16)));
}

void PutUdp(ByteSpan out, uint16_t source, uint16_t destination, size_t size) {
    out.PutU16(0, source);
    out.PutU16(2, destination);
    out.PutU16(4, size);
    out.PutU16(6, 0);  // no checksum
}

using File = std::unique_ptr<FILE, int (*)(FILE*)>;

void Write(FILE* file, const Bytes& bytes) {
    if (fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
        throw std::runtime_error("cannot write the capture");
}

// A file of packets, in the format of libpcap.
void WriteCapture(const std::string& path, const std::vector<Bytes>& frames) {
    const File file(fopen(path.c_str(), "wb"), &fclose);
    if (file == nullptr) throw std::runtime_error("cannot open " + path);
    Write(file.get(), Hex("a1b2c3d4 0002 0004 00000000 00000000 0000ffff 00000001"));
    for (const Bytes& frame : frames) {
        Bytes header(16);  // times are 0
        const ByteSpan out{header.data(), header.size()};
        out.PutU32(8, frame.size());
        out.PutU32(12, frame.size());
        Write(file.get(), header);
        Write(file.get(), frame);
    }
}

// The output of a command; throws when it fails.
std::string OutputOf(const std::string& command) {
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    std::string output;
    char part[65536];
    while (const size_t size = fread(part, 1, sizeof part, pipe))
        output.append(part, size);
    if (pclose(pipe) != 0) throw std::runtime_error("failed: " + command);
    return output;
}

// The value of an attribute in a line of XML.
std::string Attribute(std::string_view line, std::string_view name) {
    const std::string begin = " " + std::string(name) + "=\"";
    const size_t found = line.find(begin);
    if (found == std::string_view::npos) return {};
    const std::string_view rest = line.substr(found + begin.size());
    return std::string(rest.substr(0, rest.find('"')));
}

bool IsOf(std::string_view protocol, std::string_view field) {
    return field.size() > protocol.size() && field.substr(0, protocol.size()) == protocol &&
           field[protocol.size()] == '.';
}

bool IsObjection(std::string_view field) {
    return field == "_ws.malformed" || field == "_ws.expert.message";
}

// From PDML, which has an element in each line.
std::vector<Dissection::Fields> ParsePdml(std::string_view text, std::string_view protocol) {
    std::vector<Dissection::Fields> packets;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end);
        if (line.find("<packet>") != std::string_view::npos) packets.emplace_back();
        const std::string name = Attribute(line, "name");
        if (packets.empty() || (!IsOf(protocol, name) && !IsObjection(name))) continue;
        packets.back().push_back(name + "=" + Attribute(line, "show"));
    }
    return packets;
}

// A folder that ends with the object.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return path_; }

  private:
    std::string path_ = (std::filesystem::temp_directory_path() / "dissection-XXXXXX").string();
};

}  // namespace

bool Dissection::IsPossible() {
    return std::system("command -v tshark >/dev/null") == 0;
}

void Dissection::AddToDevice(uint16_t applicationPort, uint16_t devicePort, const Bytes& payload) {
    Add({kApplication, applicationPort}, {kDevice, devicePort}, payload);
}

void Dissection::AddFromDevice(uint16_t applicationPort, uint16_t devicePort,
                               const Bytes& payload) {
    Add({kDevice, devicePort}, {kApplication, applicationPort}, payload);
}

void Dissection::Add(Endpoint source, Endpoint destination, const Bytes& payload) {
    Bytes frame(kHeadersSize);
    const ByteSpan out{frame.data(), frame.size()};
    PutEthernet(out, source.host, destination.host);
    const size_t udpSize = kUdpSize + payload.size();
    PutIp(out.From(kEthernetSize), source.host, destination.host, kIpSize + udpSize);
    PutUdp(out.From(kEthernetSize + kIpSize), source.port, destination.port, udpSize);
    frame.insert(frame.end(), payload.begin(), payload.end());
    frames_.push_back(frame);
}

std::vector<Dissection::Fields> Dissection::Run(std::string_view protocol,
                                                const std::string& options) const {
    const TemporaryFolder folder;
    const std::string capture = folder.Path() + "/capture.pcap";
    WriteCapture(capture, frames_);
    const std::string warnings = folder.Path() + "/warnings";
    return ParsePdml(
        OutputOf("tshark -n -r '" + capture + "' -T pdml " + options + " 2>'" + warnings + "'"),
        protocol);
}

}  // namespace WireTest
