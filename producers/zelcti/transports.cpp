// What the producer file is made of.
#include <utility>

#include "producers/gigevision/gevtransport.h"
#include "producers/transport.h"
#include "producers/zelcti/simulation.h"

namespace ZelCti {

namespace {

ProducerInfo MakeInfo() {
    ProducerInfo info;
    info.id = "ZelCTI";
    info.vendor = "ZelCam";
    info.model = "ZelCam GenTL producer";
    info.version = ZELCTI_VERSION;
    info.fileName = "libZelCTI.cti";
    info.displayName = "ZelCam cameras";
    return info;
}

}  // namespace

const ProducerInfo& GetProducerInfo() {
    static const ProducerInfo kInfo = MakeInfo();
    return kInfo;
}

std::vector<std::shared_ptr<Transport>> MakeTransports() {
    const auto world = Simulation::Instance().GetWorld();
    if (auto network = ZelGev::GevTransport::OfEnvironment()) return {std::move(network), world};
    return {world};
}

}  // namespace ZelCti
