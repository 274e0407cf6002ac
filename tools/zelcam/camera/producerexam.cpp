#include "tools/zelcam/camera/producerexam.h"

#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <unistd.h>

#include "gentl/GenTL.h"
#include "producers/simulator/zelsim.h"
#include "tools/zelcam/camera/words.h"

namespace ZelTool {

namespace {

using namespace GenTL;

// Time to find interfaces; the library allows the same.
constexpr uint64_t kInterfaceSearchMs = 1000;

// Only a broken producer reports more.
constexpr uint32_t kMostItems = 65536;

class ProducerExam {
  public:
    ProducerExam(const TrialOptions& options, int records) : options_(options), records_(records) {}

    void Run(const std::string& file) {
        Report(TrialStep, "the loader");
        library_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library_ == nullptr) return Report(TrialFailed, dlerror());
        if (dlsym(library_, "GCInitLib") == nullptr) {
            return Report(TrialFailed,
                          "it is a shared library but not a GenTL producer (it has no GCInitLib)");
        }
        // The file stays loaded: a producer that fails only when it is unloaded can be used.
        if (Start()) Report(TrialDone, "");
    }

  private:
    void Report(TrialRecord kind, const std::string& text) const {
        std::string record = static_cast<char>(kind) + text;
        record += '\0';
        // This fails only when the parent is gone.
        if (write(records_, record.data(), record.size()) < 0) _exit(0);
    }

    // A missing function gives the same code as in the library.
    template <typename Function, typename... Arguments>
    GC_ERROR Call(const char* name, Arguments... arguments) const {
        return Announced<Function>(TrialStep, name, arguments...);
    }

    template <typename Function, typename... Arguments>
    GC_ERROR Announced(TrialRecord kind, const char* name, Arguments... arguments) const {
        const auto function = reinterpret_cast<Function>(dlsym(library_, name));
        if (function == nullptr) return GC_ERR_NOT_AVAILABLE;
        Report(kind, name);
        return function(arguments...);
    }

    bool Start() {
        if (!Succeeds(Call<PGCInitLib>("GCInitLib"), "it loads but refuses to start")) return false;
        TL_HANDLE system = nullptr;
        if (!Succeeds(Call<PTLOpen>("TLOpen", &system), "it starts but does not open")) {
            return false;
        }
        const bool listed = ListInterfaces(system);
        Call<PTLClose>("TLClose", system);
        Call<PGCCloseLib>("GCCloseLib");
        return listed;
    }

    bool ListInterfaces(TL_HANDLE system) {
        constexpr const char* kWhat = "it cannot list its interfaces";
        bool8_t changed = 0;
        uint32_t count = 0;
        if (!Succeeds(Call<PTLUpdateInterfaceList>("TLUpdateInterfaceList", system, &changed,
                                                   kInterfaceSearchMs),
                      kWhat) ||
            !Succeeds(Call<PTLGetNumInterfaces>("TLGetNumInterfaces", system, &count), kWhat)) {
            return false;
        }
        for (uint32_t i = 0; i < std::min(count, kMostItems); ++i) {
            std::string id;
            if (!Succeeds(Identifier<PTLGetInterfaceID>("TLGetInterfaceID", system, i, id),
                          kWhat)) {
                return false;
            }
            TryInterface(system, id);
        }
        return true;
    }

    // Skips an interface that cannot be opened, like the library.
    void TryInterface(TL_HANDLE system, const std::string& id) {
        IF_HANDLE interface = nullptr;
        if (Call<PTLOpenInterface>("TLOpenInterface", system, id.c_str(), &interface) !=
            GC_ERR_SUCCESS) {
            return;
        }
        const bool simulated = PortText(interface, PORT_INFO_VENDOR) == ZELSIM_INTERFACE_VENDOR &&
                               PortText(interface, PORT_INFO_MODEL) == ZELSIM_INTERFACE_MODEL;
        Report(simulated ? TrialSimulated : TrialInterface, id);
        if (simulated ? options_.searchSimulated : options_.searchReal) ListCameras(interface);
        Call<PIFClose>("IFClose", interface);
    }

    // The library will search again. This search shows whether that would crash or hang the
    // program.
    void ListCameras(IF_HANDLE interface) {
        bool8_t changed = 0;
        uint32_t count = 0;
        std::string id;
        Announced<PIFUpdateDeviceList>(TrialSearch, "IFUpdateDeviceList", interface, &changed,
                                       options_.searchMs);
        if (Call<PIFGetNumDevices>("IFGetNumDevices", interface, &count) != GC_ERR_SUCCESS) return;
        for (uint32_t i = 0; i < std::min(count, kMostItems); ++i)
            Identifier<PIFGetDeviceID>("IFGetDeviceID", interface, i, id);
    }

    template <typename Function>
    GC_ERROR Identifier(const char* name, void* module, uint32_t index, std::string& id) const {
        size_t size = 0;
        GC_ERROR code = Call<Function>(name, module, index, static_cast<char*>(nullptr), &size);
        if (code != GC_ERR_SUCCESS) return code;
        if (size > kMostItems) return GC_ERR_ERROR;
        id.assign(size, '\0');
        code = Call<Function>(name, module, index, id.data(), &size);
        id.resize(std::min(id.find('\0'), id.size()));
        return code;
    }

    std::string PortText(PORT_HANDLE port, PORT_INFO_CMD command) const {
        std::array<char, 256> text{};
        size_t size = text.size();
        INFO_DATATYPE type = INFO_DATATYPE_UNKNOWN;
        const GC_ERROR code =
            Call<PGCGetPortInfo>("GCGetPortInfo", port, command, &type, text.data(), &size);
        text.back() = '\0';
        return code == GC_ERR_SUCCESS && type == INFO_DATATYPE_STRING ? text.data() : "";
    }

    // Reports a failure, with the producer's own message if it has one.
    bool Succeeds(GC_ERROR code, const std::string& what) const {
        if (code == GC_ERR_SUCCESS) return true;
        std::array<char, 1024> text{};
        size_t size = text.size();
        GC_ERROR last = GC_ERR_SUCCESS;
        const GC_ERROR told = Call<PGCGetLastError>("GCGetLastError", &last, text.data(), &size);
        text.back() = '\0';
        const std::string words = told == GC_ERR_SUCCESS ? text.data() : "";
        Report(TrialFailed, what + ": " + ErrorWords(static_cast<ZelCamErr>(code)) +
                                (words.empty() ? "" : ": " + words));
        return false;
    }

    const TrialOptions options_;
    const int records_;
    void* library_ = nullptr;
};

}  // namespace

void ExamineProducer(const std::string& file, const TrialOptions& options, int records) {
    ProducerExam(options, records).Run(file);
}

}  // namespace ZelTool
