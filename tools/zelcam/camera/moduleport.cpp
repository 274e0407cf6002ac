#include "tools/zelcam/camera/moduleport.h"

#include <algorithm>
#include <dlfcn.h>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/interrupt.h"

namespace ZelTool {

namespace {

using namespace GenTL;

// Time for the producer to find interfaces and cameras.
constexpr uint64_t kUpdateMs = 1000;

// Only a broken producer reports more.
constexpr size_t kLongestText = size_t{16} << 20;
constexpr uint32_t kMostUrls = 64;

void RequireGood(GC_ERROR code, const std::string& what) {
    RequireSuccess(static_cast<ZelCamErr>(code), what, ExitCode::CannotOpen);
}

// A text that the producer returns in two calls of `ask`: first its size with the zero at the end,
// then the text.
template <typename Ask>
std::string AskText(const std::string& what, Ask ask) {
    size_t size = 0;
    RequireGood(ask(nullptr, &size), what);
    if (size > kLongestText) throw Failure(ExitCode::CannotOpen, what + ": the text is too long");
    std::string text(size, '\0');
    RequireGood(ask(text.data(), &size), what);
    return text.substr(0, text.find('\0'));
}

}  // namespace

template <typename Function>
Function ModulePort::Resolve(const char* name) const {
    const auto function = reinterpret_cast<Function>(dlsym(library_.get(), name));
    if (function == nullptr) {
        throw Failure(ExitCode::CannotOpen, std::string("the producer has no ") + name);
    }
    return function;
}

ModulePort::ModulePort(const ModulePlace& place) {
    void* library = dlopen(place.producer.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) throw Failure(ExitCode::NoProducer, dlerror());
    library_.reset(library, dlclose);
    try {
        Open(place);
    } catch (...) {
        Close();
        throw;
    }
}

ModulePort::~ModulePort() {
    Close();
}

void ModulePort::Close() {
    while (!closers_.empty()) {
        closers_.back()();
        closers_.pop_back();
    }
}

void ModulePort::Open(const ModulePlace& place) {
    OpenSystem();
    if (place.module == Module::System) return;
    OpenInterface(place);
    if (place.module == Module::Interface) return;
    OpenDevice(place);
    if (place.module == Module::Stream) OpenStream();
    if (place.module == Module::Camera) {
        RequireGood(Resolve<PDevGetPort>("DevGetPort")(device_, &port_), "the camera has no port");
    }
}

void ModulePort::OpenSystem() {
    const auto closeLibrary = Resolve<PGCCloseLib>("GCCloseLib");
    const auto close = Resolve<PTLClose>("TLClose");
    RequireGood(Resolve<PGCInitLib>("GCInitLib")(), "the producer does not start");
    closers_.emplace_back([closeLibrary] { closeLibrary(); });
    RequireGood(Resolve<PTLOpen>("TLOpen")(&system_), "the producer does not open");
    closers_.emplace_back([close, handle = system_] { close(handle); });
    port_ = system_;
}

void ModulePort::OpenInterface(const ModulePlace& place) {
    const auto close = Resolve<PIFClose>("IFClose");
    Resolve<PTLUpdateInterfaceList>("TLUpdateInterfaceList")(system_, nullptr, kUpdateMs);
    RequireGood(Resolve<PTLOpenInterface>("TLOpenInterface")(system_, place.interfaceId.c_str(),
                                                             &interface_),
                "the interface cannot be opened");
    closers_.emplace_back([close, handle = interface_] { close(handle); });
    port_ = interface_;
}

// Not every producer supports all ways to open a camera.
GC_ERROR ModulePort::TryDevice(const std::string& cameraId) {
    const auto open = Resolve<PIFOpenDevice>("IFOpenDevice");
    GC_ERROR code = GC_ERR_ERROR;
    for (DEVICE_ACCESS_FLAGS access :
         {DEVICE_ACCESS_READONLY, DEVICE_ACCESS_CONTROL, DEVICE_ACCESS_EXCLUSIVE}) {
        code = open(interface_, cameraId.c_str(), access, &device_);
        if (code == GC_ERR_SUCCESS) break;
    }
    return code;
}

// A search may end before a slow camera answers: the camera was there a moment ago.
void ModulePort::OpenDevice(const ModulePlace& place) {
    constexpr uint64_t kPauseMs = 20;
    const auto close = Resolve<PDevClose>("DevClose");
    const auto update = Resolve<PIFUpdateDeviceList>("IFUpdateDeviceList");
    const Deadline deadline(kUpdateMs);
    update(interface_, nullptr, kUpdateMs);
    GC_ERROR code = TryDevice(place.cameraId);
    while (code == GC_ERR_INVALID_ID && !deadline.Passed() && !Interrupted()) {
        Pause(kPauseMs);
        update(interface_, nullptr, kUpdateMs);
        code = TryDevice(place.cameraId);
    }
    RequireGood(code, "the camera cannot be opened");
    closers_.emplace_back([close, handle = device_] { close(handle); });
    port_ = device_;
}

void ModulePort::OpenStream() {
    const auto close = Resolve<PDSClose>("DSClose");
    const auto getId = Resolve<PDevGetDataStreamID>("DevGetDataStreamID");
    const std::string id = AskText("the camera has no stream", [&](char* text, size_t* size) {
        return getId(device_, 0, text, size);
    });
    DS_HANDLE stream = nullptr;
    RequireGood(Resolve<PDevOpenDataStream>("DevOpenDataStream")(device_, id.c_str(), &stream),
                "the stream cannot be opened");
    closers_.emplace_back([close, stream] { close(stream); });
    port_ = stream;
}

std::vector<std::string> ModulePort::DescriptionUrls() const {
    const auto getInfo = Resolve<PGCGetPortURLInfo>("GCGetPortURLInfo");
    uint32_t count = 0;
    RequireGood(Resolve<PGCGetNumPortURLs>("GCGetNumPortURLs")(port_, &count),
                "the module does not report where its description is");
    std::vector<std::string> urls;
    for (uint32_t i = 0; i < std::min(count, kMostUrls); ++i) {
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        urls.push_back(
            AskText("the URL of the description cannot be read", [&](char* text, size_t* size) {
                return getInfo(port_, i, URL_INFO_URL, &type, text, size);
            }));
    }
    return urls;
}

std::string ModulePort::Read(uint64_t address, size_t size) const {
    const auto read = Resolve<PGCReadPort>("GCReadPort");
    // Every transport can read that much at once, and it is a whole number of registers.
    constexpr size_t kMost = 4096;
    std::string bytes(size, '\0');
    for (size_t at = 0; at < size;) {
        size_t piece = std::min(kMost, size - at);
        RequireGood(read(port_, address + at, bytes.data() + at, &piece),
                    "the description cannot be read");
        if (piece == 0) throw Failure(ExitCode::CannotOpen, "the description ends early");
        at += piece;
    }
    return bytes;
}

}  // namespace ZelTool
