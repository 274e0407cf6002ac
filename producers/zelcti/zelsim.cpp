// The control interface of zelsim.h.

#include "producers/simulator/zelsim.h"

#include "producers/server/base/error.h"
#include "producers/server/exports/faults.h"
#include "producers/server/exports/lasterror.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/module.h"
#include "producers/simulator/config/configparser.h"

namespace {

using ZelSim::Error;
using ZelSim::Faults;
using ZelSim::Handle;
using ZelSim::Library;
using ZelSim::Module;
using ZelSim::Require;

// Runs the work of a control function and turns what it throws into its code.
template <typename Work>
int32_t Control(const char* function, Work&& work) noexcept {
    try {
        work();
        return GenTL::GC_ERR_SUCCESS;
    } catch (const Error& error) {
        ZelSim::LastError::Set(error.Code(), function, error.what());
        return error.Code();
    } catch (const std::exception& error) {
        ZelSim::LastError::Set(GenTL::GC_ERR_ERROR, function, error.what());
        return GenTL::GC_ERR_ERROR;
    }
}

template <typename Visit>
void ForEachModule(Visit&& visit) {
    Library::Instance().Handles().ForEach([&](ZelSim::Object& object) {
        if (Module::IsKind(object.GetKind())) visit(static_cast<Module&>(object));
    });
}

}  // namespace

int32_t ZelSim_InjectFault(const ZelSimFault* fault) {
    return Control("ZelSim_InjectFault", [&] {
        Require(fault);
        Faults::Instance().Inject(*fault);
    });
}

int32_t ZelSim_ClearFaults() {
    Faults::Instance().Clear();
    return GenTL::GC_ERR_SUCCESS;
}

uint64_t ZelSim_GetCallCount(const char* function) {
    return function == nullptr ? 0 : Faults::Instance().CallCount(function);
}

int32_t ZelSim_Configure(const char* xml) {
    return Control("ZelSim_Configure", [&] {
        Library::Instance().Replace(xml == nullptr ? ZelSim::DefaultConfig()
                                                   : ZelSim::ParseConfig(xml, "configuration"));
    });
}

int32_t ZelSim_PlugCamera(const char* interfaceId, const char* xml) {
    return Control("ZelSim_PlugCamera", [&] {
        Require(interfaceId);
        Require(xml);
        Library::Instance().GetWorld()->Plug(interfaceId, ZelSim::ParseCamera(xml, "camera"));
    });
}

int32_t ZelSim_UnplugCamera(const char* deviceId) {
    return Control("ZelSim_UnplugCamera", [&] {
        Require(deviceId);
        const auto camera = Library::Instance().GetWorld()->Unplug(deviceId);
        ForEachModule([&](Module& module) {
            if (module.GetCamera() == camera.get()) module.OnCameraLost();
        });
    });
}

int32_t ZelSim_FireEvent(const char* moduleId, int32_t eventType, uint64_t eventId,
                         const void* data, size_t size) {
    return Control("ZelSim_FireEvent", [&] {
        Require(moduleId);
        if (size != 0) Require(data);
        if (eventType == GenTL::EVENT_NEW_BUFFER) {
            throw Error(GenTL::GC_ERR_INVALID_PARAMETER, "new-buffer events come from frames only");
        }
        bool found = false;
        ForEachModule([&](Module& module) {
            if (module.Id() != moduleId) return;
            found = true;
            module.FireMessage(eventType, eventId, {data, size});
        });
        if (!found) throw Error(GenTL::GC_ERR_INVALID_ID, std::string(moduleId) + " is not open");
    });
}

size_t ZelSim_GetNumOpenHandles() {
    return Library::Instance().Handles().Count();
}
