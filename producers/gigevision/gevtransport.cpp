#include "producers/gigevision/gevtransport.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "producers/server/base/error.h"
#include "producers/sockets/ipaddress.h"

namespace ZelGev {

using ZelCti::InterfaceList;

namespace {

std::string VariableOf(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// What is no address is left out: the cameras that can be asked matter more.
std::vector<uint32_t> AddressesIn(const std::string& text) {
    std::vector<uint32_t> addresses;
    for (const std::string& part : SplitList(text))
        if (const auto address = ZelCti::ParseIpAddress(part)) addresses.push_back(*address);
    return addresses;
}

}  // namespace

std::shared_ptr<GevTransport> GevTransport::OfEnvironment() {
    DiscoverySettings settings;
    settings.adapters = VariableOf("ZELGEV_INTERFACES");
    if (settings.adapters == "none") return nullptr;
    settings.cameras = AddressesIn(VariableOf("ZELGEV_DEVICES"));
    return std::make_shared<GevTransport>(std::move(settings));
}

GevTransport::GevTransport(DiscoverySettings settings)
    : discovery_(std::make_shared<Discovery>(std::move(settings))),
      interfaces_(std::make_shared<const InterfaceList>()) {}

std::shared_ptr<const InterfaceList> GevTransport::Interfaces() const {
    const std::lock_guard lock(mutex_);
    return interfaces_;
}

// An interface whose adapter has not changed stays the same object.
void GevTransport::UpdateInterfaces(ZelCti::Deadline /*deadline*/) {
    InterfaceList interfaces = ListInterfaces();
    const std::lock_guard lock(mutex_);
    for (auto& interface : interfaces) {
        const auto before =
            std::find_if(interfaces_->begin(), interfaces_->end(), [&](const auto& known) {
                return static_cast<const GevInterface&>(*known).IsLike(
                    static_cast<const GevInterface&>(*interface));
            });
        if (before != interfaces_->end()) interface = *before;
    }
    if (interfaces != *interfaces_) {
        interfaces_ = std::make_shared<const InterfaceList>(std::move(interfaces));
    }
}

InterfaceList GevTransport::ListInterfaces() const {
    InterfaceList interfaces;
    try {
        for (const NetworkAdapter& adapter : discovery_->ListAdapters())
            interfaces.push_back(std::make_shared<GevInterface>(discovery_, objects_, adapter));
        for (const std::string& name : discovery_->UnknownNames()) {
            interfaces.push_back(
                std::make_shared<GevInterface>(discovery_, name, "no such adapter is up"));
        }
    } catch (const ZelCti::Error& error) {
        // Other transports have interfaces all the same, and people see the reason.
        interfaces = {std::make_shared<GevInterface>(discovery_, "network", error.what())};
    }
    return interfaces;
}

}  // namespace ZelGev
