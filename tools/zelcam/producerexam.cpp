#include "tools/zelcam/producerexam.h"

#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <unistd.h>

#include "gentl/GenTL.h"
#include "producers/simulator/zelsim.h"
#include "tools/zelcam/words.h"

namespace {

using namespace GenTL;

// Time in which interfaces are found; the same as the library's.
constexpr uint64_t interfaceSearchMs = 1000;

// What only a broken producer reports more of.
constexpr uint32_t mostItems = 65536;

class ProducerExam {
  public:
    ProducerExam(const TrialOptions& options, int records) : options_(options), records_(records) {}

    void Run(const std::string& file) {
        Tell(TrialStep, "the loader");
        library_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library_ == nullptr) return Tell(TrialFailed, dlerror());
        if (dlsym(library_, "GCInitLib") == nullptr) {
            return Tell(TrialFailed,
                        "it is a shared library but not a GenTL producer (it has no GCInitLib)");
        }
        // Not unloaded: a file that only fails there can be used.
        if (Start()) Tell(TrialDone, "");
    }

  private:
    void Tell(TrialRecord kind, const std::string& text) const {
        std::string record = static_cast<char>(kind) + text;
        record += '\0';
        // Nobody is left to read it when this fails.
        if (write(records_, record.data(), record.size()) < 0) _exit(0);
    }

    // A function that the producer lacks answers as it does in the library.
    template <typename Function, typename... Arguments>
    GC_ERROR Call(const char* name, Arguments... arguments) const {
        return Announced<Function>(TrialStep, name, arguments...);
    }

    template <typename Function, typename... Arguments>
    GC_ERROR Announced(TrialRecord kind, const char* name, Arguments... arguments) const {
        const auto function = reinterpret_cast<Function>(dlsym(library_, name));
        if (function == nullptr) return GC_ERR_NOT_AVAILABLE;
        Tell(kind, name);
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
        constexpr const char* what = "it cannot tell its interfaces";
        bool8_t changed = 0;
        uint32_t count = 0;
        if (!Succeeds(Call<PTLUpdateInterfaceList>("TLUpdateInterfaceList", system, &changed,
                                                   interfaceSearchMs),
                      what) ||
            !Succeeds(Call<PTLGetNumInterfaces>("TLGetNumInterfaces", system, &count), what)) {
            return false;
        }
        for (uint32_t i = 0; i < std::min(count, mostItems); ++i) {
            std::string id;
            if (!Succeeds(Identifier<PTLGetInterfaceID>("TLGetInterfaceID", system, i, id), what)) {
                return false;
            }
            TryInterface(system, id);
        }
        return true;
    }

    // The library goes on without an interface that it cannot open.
    void TryInterface(TL_HANDLE system, const std::string& id) {
        IF_HANDLE interface = nullptr;
        if (Call<PTLOpenInterface>("TLOpenInterface", system, id.c_str(), &interface) !=
            GC_ERR_SUCCESS) {
            return;
        }
        const bool simulated = PortText(interface, PORT_INFO_VENDOR) == ZELSIM_INTERFACE_VENDOR &&
                               PortText(interface, PORT_INFO_MODEL) == ZELSIM_INTERFACE_MODEL;
        Tell(simulated ? TrialSimulated : TrialInterface, id);
        if (simulated ? options_.searchSimulated : options_.searchReal) ListCameras(interface);
        Call<PIFClose>("IFClose", interface);
    }

    // The library searches again: this search shows whether it would crash or hang the program.
    void ListCameras(IF_HANDLE interface) {
        bool8_t changed = 0;
        uint32_t count = 0;
        std::string id;
        Announced<PIFUpdateDeviceList>(TrialSearch, "IFUpdateDeviceList", interface, &changed,
                                       options_.searchMs);
        if (Call<PIFGetNumDevices>("IFGetNumDevices", interface, &count) != GC_ERR_SUCCESS) return;
        for (uint32_t i = 0; i < std::min(count, mostItems); ++i)
            Identifier<PIFGetDeviceID>("IFGetDeviceID", interface, i, id);
    }

    template <typename Function>
    GC_ERROR Identifier(const char* name, void* module, uint32_t index, std::string& id) const {
        size_t size = 0;
        GC_ERROR code = Call<Function>(name, module, index, static_cast<char*>(nullptr), &size);
        if (code != GC_ERR_SUCCESS) return code;
        if (size > mostItems) return GC_ERR_ERROR;
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

    // Tells a failure in the words of the producer, where it has some.
    bool Succeeds(GC_ERROR code, const std::string& what) const {
        if (code == GC_ERR_SUCCESS) return true;
        std::array<char, 1024> text{};
        size_t size = text.size();
        GC_ERROR last = GC_ERR_SUCCESS;
        const GC_ERROR told = Call<PGCGetLastError>("GCGetLastError", &last, text.data(), &size);
        text.back() = '\0';
        const std::string words = told == GC_ERR_SUCCESS ? text.data() : "";
        Tell(TrialFailed, what + ": " + ErrorWords(static_cast<ZelCamErr>(code)) +
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
