// Which packet size a stream gets.
#pragma once

#include <cstdint>
#include <optional>

namespace ZelGev {

// Finds the packets that reach this machine, by test packets that somebody else has the camera
// send. Sizes are those of IP datagrams, as in the packet size register. It ends after a bounded
// number of tests, whatever a camera answers. Reentrant.
class PacketSizeSearch {
  public:
    enum class Aim {
        Keep,     // the present size if its packets arrive, or else the largest that do
        Largest,  // the largest whose packets arrive
    };

    // `largest` is what our end of the network carries.
    PacketSizeSearch(Aim aim, uint32_t present, uint32_t largest);

    // The size to be tested next; none when the search is over.
    std::optional<uint32_t> Next() const { return next_; }

    // The camera refuses the size.
    void OnRefused();

    // The camera took the size, or made another one of it, and the test packet came or did not.
    void OnTested(uint32_t size, bool arrived);

    // The size to use; none when no test packet arrived at all, which says nothing of any size:
    // there are cameras without test packets, and firewalls.
    std::optional<uint32_t> Result() const;

  private:
    void Choose();

    uint32_t arrived_ = 0;  // the largest size whose packet did
    uint32_t lost_;         // the least size whose packet did not
    std::optional<uint32_t> next_;
    uint32_t numTests_ = 0;
};

}  // namespace ZelGev
