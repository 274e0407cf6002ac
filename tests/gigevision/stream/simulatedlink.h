// A simulated camera on loopback, and the control channel of an application that has it open.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "producers/gigevision/base/devicelink.h"
#include "producers/server/base/error.h"
#include "producers/simulator/config/configparser.h"
#include "producers/simulator/gige/networkserver.h"
#include "producers/wire/bootstrap.h"
#include "tests/support/networkapplication.h"

namespace GevTest {

// The keys are those of a camera and of its network in a configuration.
class SimulatedLink final : public ZelGev::DeviceLink {
  public:
    explicit SimulatedLink(const std::string& camera, const std::string& network = {},
                           bool controls = true)
        : config_(ZelSim::ParseConfig("<ZelSim><Interface id='I' type='GEV'><Camera id='C' " +
                                          camera + "><Network BootMs='0' " + network +
                                          "/></Camera></Interface></ZelSim>",
                                      "test")),
          server_(config_, ZelSim::AddressPool({}, ZelCti::ListHostAddresses()),
                  [](const std::string&) {}),
          application_(ZelCti::IpAddressText(Device().Place().address)),
          controls_(controls) {
        route_.camera = {Device().Place().address, 3956};
        route_.hostAddress = 0x7F000001;
        route_.interface = "lo";
        route_.mtu = 65536;
        route_.isLoopback = true;
        if (!controls) return;
        WriteRegister(ZelCti::Gev::kCcp.address, ZelCti::Gev::Ccp::kControl);
        WriteRegister(ZelCti::Gev::kHeartbeatTimeout.address, 600000);
    }

    ZelSim::NetworkDevice& Device() { return *server_.Device("C"); }
    void Set(const std::string& name, const std::string& value) { server_.Set("C", name, value); }

    const ZelGev::Route& Place() const override { return route_; }
    bool Controls() const override { return controls_; }
    uint32_t ReadRegister(uint32_t address) override {
        return application_.Read(static_cast<uint16_t>(address));
    }
    void WriteRegister(uint32_t address, uint32_t value) override {
        const int status = application_.Write(static_cast<uint16_t>(address), value);
        if (status != 0) {
            throw ZelCti::Error(GenTL::GC_ERR_ACCESS_DENIED, "status " + std::to_string(status));
        }
    }
    uint32_t Capabilities() const override { return capabilities; }
    uint64_t TickFrequency() const override { return 1000000000; }
    bool IsLost() const override { return isLost; }

    ZelGev::Route& Way() { return route_; }

    std::atomic<bool> isLost{false};
    uint32_t capabilities = ZelCti::Gev::GvcpCapability::kPacketResend;

  private:
    const ZelSim::WorldConfig config_;
    ZelSim::NetworkServer server_;
    ZelTest::NetworkApplication application_;
    const bool controls_;
    ZelGev::Route route_;
};

}  // namespace GevTest
