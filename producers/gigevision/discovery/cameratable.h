// The cameras that were found, on all network adapters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "producers/gigevision/discovery/foundcamera.h"
#include "producers/gigevision/discovery/networkadapter.h"

namespace ZelGev {

// A camera as one adapter sees it.
struct Sighting {
    FoundCamera camera;
    // Our address from which its address is reached; 0 when there is none, because the camera is
    // in a subnet that the adapter is not in.
    uint32_t hostAddress = 0;
};

// Adapters are known by their index. Thread-bound; pure.
class CameraTable {
  public:
    // A search begins on the adapter; returns how many cameras it is known to see.
    size_t BeginRound(unsigned adapter);

    // A camera answered on the adapter. A late answer to an earlier search tells of a camera that
    // is new, but not that a known one is still there. `isRouted` says that the camera was asked at
    // its own address, from `hostAddress`, and so is reached wherever it is. Returns whether the
    // search waited for this camera.
    bool OnAnswer(const NetworkAdapter& adapter, FoundCamera camera, bool isLate,
                  uint32_t routedFrom = 0);

    // The search is over: a camera that did not answer for the second time is gone.
    void EndRound(unsigned adapter);

    // Forgets what other adapters saw.
    void KeepAdapters(const std::vector<NetworkAdapter>& adapters);

    // The cameras of an adapter. One that several adapters see belongs to the one that reaches it,
    // and of several to the first.
    std::vector<Sighting> CamerasOf(unsigned adapter) const;

    // Whether a camera that was seen has this address.
    bool HasAddress(uint32_t address) const;

  private:
    struct Entry {
        Sighting sighting;
        unsigned numMisses = 0;
        bool isAwaited = false;
    };
    using Sightings = std::map<unsigned, Entry>;  // by adapter

    static unsigned OwnerOf(const Sightings& sightings);

    std::map<std::string, Sightings> cameras_;  // by identifier
};

}  // namespace ZelGev
