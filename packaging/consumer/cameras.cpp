// Lists the cameras of the GenTL producer in a file, without any library: the standard's types and
// the dynamic loader.
#include <dlfcn.h>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <GenTL/GenTL.h>

using namespace GenTL;

namespace {

class Producer {
  public:
    explicit Producer(const char* file) : library_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {
        if (!library_) throw std::runtime_error(dlerror());
        Resolve("GCInitLib", initLib);
        Resolve("GCCloseLib", closeLib);
        Resolve("TLOpen", open);
        Resolve("TLClose", close);
        Resolve("TLUpdateInterfaceList", updateInterfaces);
        Resolve("TLGetNumInterfaces", numInterfaces);
        Resolve("TLGetInterfaceID", interfaceId);
        Resolve("TLOpenInterface", openInterface);
        Resolve("IFUpdateDeviceList", updateDevices);
        Resolve("IFGetNumDevices", numDevices);
        Resolve("IFGetDeviceID", deviceId);
        Resolve("IFGetDeviceInfo", deviceInfo);
        Resolve("IFClose", closeInterface);
    }
    ~Producer() { dlclose(library_); }
    Producer(const Producer&) = delete;
    Producer& operator=(const Producer&) = delete;

    PGCInitLib initLib;
    PGCCloseLib closeLib;
    PTLOpen open;
    PTLClose close;
    PTLUpdateInterfaceList updateInterfaces;
    PTLGetNumInterfaces numInterfaces;
    PTLGetInterfaceID interfaceId;
    PTLOpenInterface openInterface;
    PIFUpdateDeviceList updateDevices;
    PIFGetNumDevices numDevices;
    PIFGetDeviceID deviceId;
    PIFGetDeviceInfo deviceInfo;
    PIFClose closeInterface;

  private:
    template <typename Function>
    void Resolve(const char* name, Function& function) {
        function = reinterpret_cast<Function>(dlsym(library_, name));
        if (!function) throw std::runtime_error(std::string("no function ") + name);
    }

    void* library_;
};

void Check(GC_ERROR result) {
    if (result != GC_ERR_SUCCESS) throw std::runtime_error("GenTL error " + std::to_string(result));
}

// A text whose size the producer says first.
template <typename Ask>
std::string TextOf(Ask ask) {
    size_t size = 0;
    Check(ask(nullptr, &size));
    std::vector<char> text(size);
    Check(ask(text.data(), &size));
    return text.data();
}

uint32_t ListDevices(const Producer& producer, IF_HANDLE interface) {
    bool8_t changed = 0;
    Check(producer.updateDevices(interface, &changed, 1000));
    uint32_t count = 0;
    Check(producer.numDevices(interface, &count));
    for (uint32_t i = 0; i < count; ++i) {
        const std::string id = TextOf(
            [&](char* text, size_t* size) { return producer.deviceId(interface, i, text, size); });
        const std::string model = TextOf([&](char* text, size_t* size) {
            INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
            return producer.deviceInfo(interface, id.c_str(), DEVICE_INFO_MODEL, &type, text, size);
        });
        std::cout << "  " << id << "  " << model << '\n';
    }
    return count;
}

uint32_t ListInterfaces(const Producer& producer, TL_HANDLE system) {
    bool8_t changed = 0;
    Check(producer.updateInterfaces(system, &changed, GENTL_INFINITE));
    uint32_t count = 0, cameras = 0;
    Check(producer.numInterfaces(system, &count));
    for (uint32_t i = 0; i < count; ++i) {
        const std::string id = TextOf(
            [&](char* text, size_t* size) { return producer.interfaceId(system, i, text, size); });
        std::cout << id << '\n';
        IF_HANDLE interface = GENTL_INVALID_HANDLE;
        Check(producer.openInterface(system, id.c_str(), &interface));
        cameras += ListDevices(producer, interface);
        Check(producer.closeInterface(interface));
    }
    return cameras;
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) throw std::runtime_error("usage: cameras FILE.cti");
    const Producer producer(argv[1]);
    Check(producer.initLib());
    TL_HANDLE system = GENTL_INVALID_HANDLE;
    Check(producer.open(&system));
    const uint32_t cameras = ListInterfaces(producer, system);
    Check(producer.close(system));
    Check(producer.closeLib());
    return cameras > 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
}
