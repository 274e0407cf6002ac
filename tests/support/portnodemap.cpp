#include "tests/support/portnodemap.h"

#include <chrono>
#include <thread>

using namespace GenTL;
using namespace GENAPI_NAMESPACE;

namespace ZelTest {

namespace {

void Check(GC_ERROR code, const char* function) {
    if (code != GC_ERR_SUCCESS) {
        throw std::runtime_error(std::string(function) + " " + std::to_string(code));
    }
}

}  // namespace

PortNodeMap::PortNodeMap(const GenTLFunctions& functions, PORT_HANDLE port)
    : gentl_(functions), port_(port) {
    std::string file(UrlNumber(URL_INFO_FILE_SIZE), '\0');
    const uint64_t address = UrlNumber(URL_INFO_FILE_REGISTER_ADDRESS);
    Read(file.data(), static_cast<int64_t>(address), static_cast<int64_t>(file.size()));
    if (file.compare(0, 2, "PK") == 0) {
        map_._LoadXMLFromZIPData(file.data(), file.size());
    } else {
        map_._LoadXMLFromString(file.c_str());
    }
    const std::string name = Ask(gentl_.GCGetPortInfo, port_, PORT_INFO_PORTNAME).Text();
    if (!map_._Connect(this, name.c_str())) throw std::runtime_error("no port " + name);
}

uint64_t PortNodeMap::UrlNumber(int32_t command) {
    return Ask(gentl_.GCGetPortURLInfo, port_, uint32_t{0}, command).Uint64();
}

void PortNodeMap::Set(const char* name, const std::string& value) {
    CValuePtr(Node(name))->FromString(value.c_str());
}

std::string PortNodeMap::Get(const char* name) {
    return CValuePtr(Node(name))->ToString().c_str();
}

int64_t PortNodeMap::Integer(const char* name) {
    return CIntegerPtr(Node(name))->GetValue();
}

void PortNodeMap::SetInteger(const char* name, int64_t value) {
    CIntegerPtr(Node(name))->SetValue(value);
}

bool PortNodeMap::IsReadable(const char* name) {
    INode* const node = Node(name);
    return node != nullptr && GENAPI_NAMESPACE::IsReadable(node);
}

void PortNodeMap::Execute(const char* name) {
    CCommandPtr(Node(name))->Execute();
}

void PortNodeMap::Finish(const char* name) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    const CCommandPtr command(Node(name));
    command->Execute();
    while (!command->IsDone()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error(std::string(name) + " does not end");
        std::this_thread::yield();
    }
}

void PortNodeMap::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    Check(gentl_.GCReadPort(port_, static_cast<uint64_t>(address), buffer, &size), "GCReadPort");
}

void PortNodeMap::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    Check(gentl_.GCWritePort(port_, static_cast<uint64_t>(address), buffer, &size), "GCWritePort");
}

}  // namespace ZelTest
