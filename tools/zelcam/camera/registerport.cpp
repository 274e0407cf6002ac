#include "tools/zelcam/camera/registerport.h"

#include <algorithm>

#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/failure.h"

namespace ZelTool {

namespace {

// Ports of events and chunk data are not available: nothing is connected to them.
GenApi::IPort* FindPort(ZelGenParam::Array& features) {
    GenApi::INodeMap* const map = features.GetNodeMap(nullptr);
    GenApi::NodeList_t nodes;
    if (map != nullptr) map->GetNodes(nodes);
    for (GenApi::INode* const node : nodes) {
        auto* const port = dynamic_cast<GenApi::IPort*>(node);
        if (port != nullptr && GenApi::IsAvailable(port->GetAccessMode())) return port;
    }
    return nullptr;
}

}  // namespace

RegisterPort::RegisterPort(OpenedCamera& camera, Module module)
    : device_(camera.Device()), module_(module) {
    if (module == Module::Camera) return;
    port_ = FindPort(camera.Features(module));
    if (port_ == nullptr) {
        throw Failure(ExitCode::FeatureFailed,
                      "the description of the " + ModuleWords(module) + " has no port");
    }
}

template <typename Transfer>
void RegisterPort::Access(const char* verb, uint64_t address, size_t size,
                          Transfer&& transfer) const {
    std::string why;
    try {
        const ZelCamErr code = transfer();
        if (code == ZelCamErr_Success) return;
        why = ErrorWords(code);
    } catch (const GenICam::GenericException& error) {
        why = error.GetDescription();
    }
    throw Failure(ExitCode::FeatureFailed,
                  std::to_string(size) + " bytes at " + AddressText(address) + " of the " +
                      ModuleWords(module_) + " cannot be " + verb + ": " + why);
}

std::string RegisterPort::Read(uint64_t address, size_t size) const {
    // Every transport can read that much at once, and it is a whole number of registers.
    constexpr size_t kMost = 4096;
    std::string bytes(size, '\0');
    for (size_t at = 0; at < size; at += kMost) {
        const size_t piece = std::min(kMost, size - at);
        Access("read", address + at, piece, [&, to = bytes.data() + at, from = address + at] {
            if (port_ == nullptr) return device_.ReadMem(from, to, piece);
            port_->Read(to, static_cast<int64_t>(from), static_cast<int64_t>(piece));
            return ZelCamErr_Success;
        });
    }
    return bytes;
}

void RegisterPort::Write(uint64_t address, const std::string& bytes) const {
    Access("written", address, bytes.size(), [&] {
        if (port_ == nullptr) {
            return device_.WriteMem(address, bytes.data(), bytes.size(), nullptr);
        }
        port_->Write(bytes.data(), static_cast<int64_t>(address),
                     static_cast<int64_t>(bytes.size()));
        return ZelCamErr_Success;
    });
}

std::optional<ByteOrder> RegisterPort::Order() const {
    if (module_ != Module::Camera) return std::nullopt;
    return device_.GetEndianness() == 1 ? ByteOrder::Little : ByteOrder::Big;
}

}  // namespace ZelTool
