// The socket for messages of a camera.
#pragma once

#include <optional>

#include "producers/gigevision/control/eventinbox.h"
#include "producers/gigevision/control/exchange.h"
#include "producers/sockets/udpsocket.h"

namespace ZelGev {

// Receives events of one camera, and answers them. Thread-bound, once it is constructed.
class MessageReceiver {
  public:
    // Throws GC_ERR_IO. `camera` is where the messages come from: its message port may be 0, when
    // the camera does not say it.
    MessageReceiver(uint32_t hostAddress, const ZelCti::Endpoint& camera,
                    EventInbox::Deliver deliver);

    uint16_t Port() const { return socket_.Port(); }
    int Descriptor() const { return socket_.Descriptor(); }

    // Handles datagrams that wait, up to a limit.
    void Receive();

    // Firewalls let pass what answers a datagram of ours, for a while: sends one when it is time.
    void KeepFirewallOpen(Time now);
    Time NextDeadline() const { return nextOpening_; }

  private:
    ZelCti::UdpSocket socket_;
    const ZelCti::Endpoint camera_;
    EventInbox inbox_;
    Time nextOpening_{};
};

}  // namespace ZelGev
