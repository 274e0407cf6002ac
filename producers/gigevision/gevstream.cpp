#include "producers/gigevision/gevstream.h"

#include "producers/gigevision/stream/blockdescription.h"
#include "producers/gigevision/stream/streamreader.h"
#include "producers/server/base/error.h"
#include "producers/wire/bootstrapbits.h"

namespace ZelGev {

using ZelCti::Endpoint;
using ZelCti::Error;

namespace {

ZelCti::StreamInfo InfoOfStreams() {
    ZelCti::StreamInfo info;
    info.definesPayloadSize = false;
    info.maxParts = BlockDescription::kMaxParts;
    return info;
}

}  // namespace

GevStream::GevStream(DeviceLink& link, uint32_t channel, ZelCti::BufferQueue& buffers)
    : link_(link), info_(InfoOfStreams()), channel_(link, channel), reception_(link, buffers) {
    settings_.channel = static_cast<uint16_t>(channel);
    settings_.resend = (link.Capabilities() & ZelCti::Gev::GvcpCapability::kPacketResend) != 0;
    if (link.Controls()) Connect(0);
}

GevStream::~GevStream() {
    reception_.Stop(true);
    share_.reset();
    if (link_.Controls()) channel_.Close();
}

size_t GevStream::PayloadSize() const {
    throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the camera defines the payload size");
}

// Has the camera send to this machine, or to a group that this machine joins.
void GevStream::Connect(uint32_t group) {
    const Route& route = link_.Place();
    auto socket = std::make_unique<StreamSocket>(
        StreamSocket::Place{route.hostAddress, route.camera.address, group, 0});
    socket->SetBufferSize(bufferSize_);
    channel_.Open({group != 0 ? group : route.hostAddress, socket->Port()});
    socket_ = std::move(socket);
    group_ = group;
    sourcePort_ = channel_.SourcePort();
    socket_->OpenFirewall({route.camera.address, sourcePort_});
    channel_.FindPacketSize(PacketSizeSearch::Aim::Keep, *socket_);
}

// Joins the group to which another one lets the camera send.
void GevStream::Listen() {
    const Endpoint destination = channel_.Destination();
    if (!IsMulticast(destination.address) || destination.port == 0) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED,
                    "the camera sends the stream to no multicast group, and a connection that only "
                    "reads cannot ask for it");
    }
    const Route& route = link_.Place();
    socket_ = std::make_unique<StreamSocket>(StreamSocket::Place{
        route.hostAddress, route.camera.address, destination.address, destination.port});
    socket_->SetBufferSize(bufferSize_);
    group_ = destination.address;
    sourcePort_ = channel_.SourcePort();
}

void GevStream::Start(uint64_t numFrames) {
    const Lock lock(mutex_);
    if (!link_.Controls()) {
        if (!isRunning_) Listen();
    } else if (!isRunning_) {
        channel_.Renew(*socket_);
    }
    const Route& route = link_.Place();
    Reception::Source source;
    source.socket = socket_.get();
    source.port = sourcePort_;
    source.packetSize = channel_.PacketSize();
    settings_.pixelOrder = channel_.PixelOrder();
    if (sharesFairly_ && !share_) share_.emplace(link_, settings_.channel, source.packetSize);
    source.reader = std::make_unique<StreamReader>(
        *socket_, method_,
        PacketRing::Flow{route.camera.address, group_ != 0 ? group_ : route.hostAddress,
                         socket_->Port(), source.packetSize});
    reception_.Start(numFrames, settings_, std::move(source));
    if (isRunning_) return;
    isRunning_ = true;
    startTime_ = Clock::now();
    bytesAtStart_ = reception_.Statistics().receivedBytes;
}

void GevStream::Stop(bool kill) {
    reception_.Stop(kill);
    const Lock lock(mutex_);
    share_.reset();
    isRunning_ = false;
}

}  // namespace ZelGev
