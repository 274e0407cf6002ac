#include "tests/simulator/featuremap.h"

#include <stdexcept>

using namespace GenTL;
using GENAPI_NAMESPACE::ICommand;
using GENAPI_NAMESPACE::IFloat;
using GENAPI_NAMESPACE::IInteger;
using GENAPI_NAMESPACE::INode;
using GENAPI_NAMESPACE::IValue;

FeatureMap::FeatureMap(const Producer& producer, PORT_HANDLE port)
    : producer_(producer), port_(port) {
    uint32_t count = 0;
    if (producer_.GCGetNumPortURLs(port_, &count) != GC_ERR_SUCCESS || count == 0) {
        throw std::runtime_error("the port has no description");
    }
    const uint32_t last = count - 1;
    const std::vector<char> file = Description(last);
    const std::string name = UrlInfo(last, URL_INFO_FILENAME).Text();
    if (name.substr(name.size() - 4) == ".zip") {
        map_._LoadXMLFromZIPData(file.data(), file.size());
    } else {
        map_._LoadXMLFromString(std::string(file.begin(), file.end()).c_str());
    }
    const Info portName = Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
        return producer_.GCGetPortInfo(port_, PORT_INFO_PORTNAME, type, buffer, size);
    });
    if (!map_._Connect(this, portName.Text().c_str())) {
        throw std::runtime_error("the description has no port " + portName.Text());
    }
}

Info FeatureMap::UrlInfo(uint32_t url, int32_t command) {
    return Ask([&](INFO_DATATYPE* type, void* buffer, size_t* size) {
        return producer_.GCGetPortURLInfo(port_, url, command, type, buffer, size);
    });
}

std::vector<char> FeatureMap::Description(uint32_t url) {
    const auto address =
        static_cast<int64_t>(UrlInfo(url, URL_INFO_FILE_REGISTER_ADDRESS).Uint64());
    std::vector<char> file(UrlInfo(url, URL_INFO_FILE_SIZE).Uint64());
    Read(file.data(), address, static_cast<int64_t>(file.size()));
    return file;
}

template <typename Interface>
Interface& FeatureMap::As(const char* name) {
    auto* const node = dynamic_cast<Interface*>(Nodes().GetNode(name));
    if (node == nullptr) throw std::runtime_error(std::string("no such feature: ") + name);
    return *node;
}

std::string FeatureMap::Get(const char* name) {
    return As<IValue>(name).ToString().c_str();
}

void FeatureMap::Set(const char* name, const std::string& text) {
    As<IValue>(name).FromString(text.c_str());
}

int64_t FeatureMap::Integer(const char* name) {
    return As<IInteger>(name).GetValue();
}

void FeatureMap::SetInteger(const char* name, int64_t value) {
    As<IInteger>(name).SetValue(value);
}

double FeatureMap::Float(const char* name) {
    return As<IFloat>(name).GetValue();
}

void FeatureMap::Execute(const char* name) {
    As<ICommand>(name).Execute();
}

bool FeatureMap::IsReadable(const char* name) {
    INode* const node = Nodes().GetNode(name);
    return node != nullptr && GENAPI_NAMESPACE::IsReadable(node);
}

void FeatureMap::Read(void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    Check(producer_.GCReadPort(port_, static_cast<uint64_t>(address), buffer, &size), address);
}

void FeatureMap::Write(const void* buffer, int64_t address, int64_t length) {
    auto size = static_cast<size_t>(length);
    Check(producer_.GCWritePort(port_, static_cast<uint64_t>(address), buffer, &size), address);
}

void FeatureMap::Check(GC_ERROR code, int64_t address) {
    lastCode_ = code;
    if (code == GC_ERR_SUCCESS) return;
    throw RUNTIME_EXCEPTION("port access at 0x%llX: %d", static_cast<unsigned long long>(address),
                            code);
}

size_t ReadAllFeatures(FeatureMap& map) {
    GENAPI_NAMESPACE::NodeList_t nodes;
    map.Nodes().GetNodes(nodes);
    size_t numRead = 0;
    for (INode* const node : nodes) {
        auto* const value = dynamic_cast<IValue*>(node);
        if (value == nullptr || !node->IsFeature() || !GENAPI_NAMESPACE::IsReadable(node)) continue;
        if (node->GetPrincipalInterfaceType() == GENAPI_NAMESPACE::intfICategory) continue;
        try {
            value->ToString(true);
            ++numRead;
        } catch (const GENICAM_NAMESPACE::GenericException& error) {
            ADD_FAILURE() << node->GetName().c_str() << ": " << error.what();
        }
    }
    return numRead;
}
