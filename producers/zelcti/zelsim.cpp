// The control interface of zelsim.h.

#include "producers/simulator/zelsim.h"

#include <cstring>
#include <iterator>
#include <sstream>
#include <utility>

#include "producers/server/base/error.h"
#include "producers/server/exports/faults.h"
#include "producers/server/exports/lasterror.h"
#include "producers/server/modules/library.h"
#include "producers/server/modules/module.h"
#include "producers/simulator/config/configparser.h"
#include "producers/zelcti/simulation.h"

namespace {

using ZelCti::CallFault;
using ZelCti::Error;
using ZelCti::FaultEffect;
using ZelCti::Faults;
using ZelCti::Library;
using ZelCti::Module;
using ZelCti::Require;
using ZelCti::Simulation;

static_assert(ZELSIM_FOREVER == CallFault::kForever);

// Runs the work of a control function and turns what it throws into its code.
template <typename Work>
int32_t Control(const char* function, Work&& work) noexcept {
    try {
        work();
        return GenTL::GC_ERR_SUCCESS;
    } catch (const Error& error) {
        ZelCti::LastError::Set(error.Code(), function, error.what());
        return error.Code();
    } catch (const std::exception& error) {
        ZelCti::LastError::Set(GenTL::GC_ERR_ERROR, function, error.what());
        return GenTL::GC_ERR_ERROR;
    }
}

FaultEffect EffectOf(const ZelSimFault& fault) {
    const auto has = [&](ZelSimFaultAction action) {
        return (fault.actions & static_cast<uint32_t>(action)) != 0;
    };
    FaultEffect effect;
    if (has(ZELSIM_FAULT_BLOCK)) effect.blockMs = fault.blockMs;
    if (has(ZELSIM_FAULT_RETURN)) effect.result = fault.code;
    if (has(ZELSIM_FAULT_TYPE)) effect.type = fault.type;
    if (has(ZELSIM_FAULT_SIZE)) effect.size = fault.size;
    if (has(ZELSIM_FAULT_VALUE)) {
        effect.value.emplace();
        const auto* const bytes = static_cast<const uint8_t*>(fault.value);
        if (bytes != nullptr) effect.value->assign(bytes, bytes + fault.valueSize);
    }
    return effect;
}

CallFault FaultOf(const ZelSimFault& given) {
    Require(given.function);
    if (given.valueSize != 0) Require(given.value);
    CallFault fault;
    fault.function = ZelCti::FunctionOf(given.function);
    if (!fault.function && std::string_view(given.function) != "*") {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                    std::string(given.function) + " is not a GenTL function");
    }
    if (given.command != ZELSIM_ANY_COMMAND) fault.command = given.command;
    fault.skip = given.skip;
    fault.count = given.count;
    fault.effect = EffectOf(given);
    return fault;
}

}  // namespace

int32_t ZelSim_InjectFault(const ZelSimFault* fault) {
    return Control("ZelSim_InjectFault", [&] {
        Require(fault);
        Faults::Instance().Inject(FaultOf(*fault));
    });
}

int32_t ZelSim_ClearFaults() {
    Faults::Instance().Clear();
    return GenTL::GC_ERR_SUCCESS;
}

uint64_t ZelSim_GetCallCount(const char* function) {
    if (function == nullptr) return 0;
    const auto known = ZelCti::FunctionOf(function);
    return known ? Faults::Instance().CallCount(*known) : 0;
}

int32_t ZelSim_Configure(const char* xml) {
    return Control("ZelSim_Configure", [&] {
        const ZelSim::WorldConfig config =
            xml == nullptr ? ZelSim::DefaultConfig() : ZelSim::ParseConfig(xml, "configuration");
        Library::Instance().Reconfigure([&] { Simulation::Instance().Replace(config); });
    });
}

int32_t ZelSim_PlugCamera(const char* interfaceId, const char* xml) {
    return Control("ZelSim_PlugCamera", [&] {
        Require(interfaceId);
        Require(xml);
        Simulation::Instance().GetWorld()->Plug(interfaceId, ZelSim::ParseCamera(xml, "camera"));
    });
}

int32_t ZelSim_UnplugCamera(const char* deviceId) {
    return Control("ZelSim_UnplugCamera", [&] {
        Require(deviceId);
        Simulation::Instance().GetWorld()->Unplug(deviceId);
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
        Library::Instance().Handles().ForEach([&](ZelCti::Object& object) {
            if (!Module::IsKind(object.GetKind())) return;
            auto& module = static_cast<Module&>(object);
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

int32_t ZelSim_ServeCameras(const char* on) {
    return Control("ZelSim_ServeCameras", [&] {
        if (on == nullptr) return Simulation::Instance().StopServing();
        std::istringstream words(on);
        Simulation::Instance().Serve({std::istream_iterator<std::string>(words), {}});
    });
}

int32_t ZelSim_SetNetwork(const char* deviceId, const char* name, const char* value) {
    return Control("ZelSim_SetNetwork", [&] {
        Require(deviceId);
        Require(name);
        Require(value);
        Simulation::Instance().Served()->Set(deviceId, name, value);
    });
}

int32_t ZelSim_GetNetwork(const char* deviceId, const char* name, char* value, size_t* size) {
    return Control("ZelSim_GetNetwork", [&] {
        Require(deviceId);
        Require(name);
        Require(size);
        const auto device = Simulation::Instance().Served()->Device(deviceId);
        const std::string text = device->Switches().Get(name);
        const size_t given = std::exchange(*size, text.size() + 1);
        if (value == nullptr) return;
        if (given < *size) throw Error(GenTL::GC_ERR_BUFFER_TOO_SMALL, "the text is longer");
        std::memcpy(value, text.c_str(), *size);
    });
}
