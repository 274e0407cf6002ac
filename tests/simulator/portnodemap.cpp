#include "tests/simulator/portnodemap.h"

using namespace GenTL;
using namespace GENAPI_NAMESPACE;

namespace {

void Check(GC_ERROR code, const char* function) {
    if (code != GC_ERR_SUCCESS) {
        throw std::runtime_error(std::string(function) + " " + std::to_string(code));
    }
}

}  // namespace

PortNodeMap::PortNodeMap(Producer& producer, PORT_HANDLE port) : p_(producer), port_(port) {
    std::string file(UrlNumber(URL_INFO_FILE_SIZE), '\0');
    const uint64_t address = UrlNumber(URL_INFO_FILE_REGISTER_ADDRESS);
    Read(file.data(), static_cast<int64_t>(address), static_cast<int64_t>(file.size()));
    if (file.compare(0, 2, "PK") == 0) {
        map_._LoadXMLFromZIPData(file.data(), file.size());
    } else {
        map_._LoadXMLFromString(file.c_str());
    }
    const std::string name =
        Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
            return p_.GCGetPortInfo(port_, PORT_INFO_PORTNAME, type, buffer, size);
        }).Text();
    if (!map_._Connect(this, name.c_str())) throw std::runtime_error("no port " + name);
}

uint64_t PortNodeMap::UrlNumber(int32_t command) {
    return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
               return p_.GCGetPortURLInfo(port_, 0, command, type, buffer, size);
           })
        .Uint64();
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

void PortNodeMap::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    Check(p_.GCReadPort(port_, static_cast<uint64_t>(address), buffer, &size), "GCReadPort");
}

void PortNodeMap::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    Check(p_.GCWritePort(port_, static_cast<uint64_t>(address), buffer, &size), "GCWritePort");
}

void CameraNodesTest::Open(const std::string& keys, const std::string& type) {
    OpenCamera(keys, type);
    PORT_HANDLE port = nullptr;
    ASSERT_EQ(p.DevGetPort(device, &port), GC_ERR_SUCCESS);
    nodes = std::make_unique<PortNodeMap>(p, port);
}
