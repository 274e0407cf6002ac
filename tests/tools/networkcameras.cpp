// A producer whose cameras are on a network and cannot be opened, each for another reason. The only
// free address of their interface is 10.0.0.2.

#include "producers/gigefeatures/gigefeatures.h"
#include "producers/server/base/error.h"
#include "tests/producer/scriptedtransport.h"

namespace {

using ZelTest::ScriptedCamera;

std::shared_ptr<ScriptedCamera> MakeCamera(const std::string& id, uint32_t address,
                                           GenTL::DEVICE_ACCESS_STATUS status,
                                           const std::string& reason) {
    auto camera = std::make_shared<ScriptedCamera>(id);
    camera->network = ZelCti::CameraNetwork{1, address, 0xFFFFFFFC, 0};
    camera->status = status;
    camera->accessReason = reason;
    return camera;
}

class Adapter final : public ZelCti::GigeHost {
  public:
    uint64_t MacAddress() const override { return 1; }
    std::vector<Subnet> Subnets() const override { return {{0x0A000001, 0xFFFFFFFC}}; }
    std::vector<uint32_t> Gateways() const override { return {}; }
    bool IsTaken(uint32_t /*address*/) const override { return false; }
    void ForceNetwork(ZelCti::Camera& camera, const ZelCti::CameraNetwork& /*network*/,
                      std::chrono::milliseconds /*timeout*/) override {
        if (camera.Id() == "c-foreign") return;
        throw ZelCti::Error(GenTL::GC_ERR_ACCESS_DENIED, "it is open");
    }
};

const bool kIsMade = [] {
    static Adapter adapter;
    const auto interface = std::make_shared<ZelTest::ScriptedInterface>(
        "eth0",
        ZelCti::CameraList{
            MakeCamera("a-free", 0x0A000065, GenTL::DEVICE_ACCESS_STATUS_READWRITE, "unused"),
            MakeCamera("b-busy", 0x0A000066, GenTL::DEVICE_ACCESS_STATUS_BUSY,
                       "controlled by 10.0.0.7:40000"),
            MakeCamera("c-foreign", 0xC0A80505, GenTL::DEVICE_ACCESS_STATUS_NOACCESS,
                       "192.168.5.5 is in no network of eth0")});
    interface->rows = [](auto& features, const auto& selected) {
        AddGigeInterfaceFeatures(features, adapter, selected);
    };
    ZelTest::Script::Instance().transports = {
        std::make_shared<ZelTest::ScriptedTransport>(ZelCti::InterfaceList{interface})};
    return true;
}();

}  // namespace
