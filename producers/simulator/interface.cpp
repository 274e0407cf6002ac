#include "producers/simulator/interface.h"

#include "producers/simulator/device.h"
#include "producers/simulator/library.h"
#include "producers/simulator/placeholders.h"

namespace ZelSim {

namespace {

PortIdentity IdentityOf(const InterfaceConfig& config) {
    return {config.id,   "ZelCam",      config.displayName, config.version,
            config.type, "TLInterface", "InterfacePort"};
}

}  // namespace

Interface::Interface(std::shared_ptr<HostInterface> host, Handle client, Claim claim)
    : Module(Kind::Interface, IdentityOf(host->Config()), OwnRegisters()),
      host_(std::move(host)),
      client_(client),
      claim_(std::move(claim)),
      cameras_(host_->Cameras()) {}

void Interface::GetDeviceInfo(const char* id, Answer answer) const {
    cameras_.Find(id)->GetInfo(answer, client_);
}

Handle Interface::OpenDevice(const std::shared_ptr<Interface>& interface, const char* id,
                             GenTL::DEVICE_ACCESS_FLAGS access) {
    const std::shared_ptr<Camera> camera = interface->cameras_.Find(id);
    const auto device = std::make_shared<Device>(camera, access, interface->client_);
    return Library::Instance().Handles().Open(device, interface);
}

std::unique_ptr<const Description> Interface::MakeDescription() const {
    return std::make_unique<Description>("ZelSim_Interface", Placeholders().FillIn("interface.xml"),
                                         Description::Form::Xml);
}

}  // namespace ZelSim
