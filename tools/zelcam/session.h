// The producers, interfaces and cameras of one run of the program.
#ifndef ZELCAM_TOOLS_ZELCAM_SESSION_H
#define ZELCAM_TOOLS_ZELCAM_SESSION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ZelCam/ZelCam.h"

// Ends an object of the library the way the library wants it.
struct Releaser {
    template <typename T>
    void operator()(T* object) const {
        object->Release();
    }
};
template <typename T>
using Released = std::unique_ptr<T, Releaser>;

struct SessionOptions {
    std::vector<std::string> producers;  // files given with --producer
    uint64_t searchMs = 1000;            // time each interface has to find its cameras
    bool json = false;
};

struct Producer {
    enum class Origin { Default, Option, Environment };
    enum class State {
        Loaded,
        Failed,
        Skipped,  // nothing wrong with it, but not loaded
    };

    std::string file;
    Origin origin = Origin::Default;
    State state = State::Loaded;
    std::string reason;  // why it is not loaded

    std::string OriginWords() const;
    std::string StateWords() const;
    void Fail(const std::string& why);
    void Skip(const std::string& why);
};

struct InterfaceEntry {
    std::string id;
    std::string description;
    ZelCam::InterfaceType type;
    std::string producer;  // file; empty when it cannot be told
    std::string problem;   // why the search for cameras failed
    size_t cameras = 0;
};

struct Camera {
    ZelCam::DeviceInfo* info;  // lives as long as the Session
    size_t number;             // from 1, in the order of the listing
    std::string id;
    std::string vendor;
    std::string model;
    std::string serial;
    std::string userName;
    std::string version;
    int32_t accessStatus;
    std::string interfaceId;
    ZelCam::InterfaceType interfaceType;

    // "id (vendor model, serial number 123)".
    std::string Description() const;
};

// Loads the producers and lists what they offer, once, at construction. What fails is noted in the
// lists and leaves the rest alone: a producer that does not load, one that cannot tell its
// interfaces, an interface that cannot find its cameras. Only the default producer is needed by the
// library itself: without it the lists of interfaces and cameras are empty.
class Session {
  public:
    enum class Detail {
        Cameras,
        CamerasAndOwners,  // also tell which producer an interface belongs to: takes longer
    };

    Session(const SessionOptions& options, Detail detail);

    const std::vector<Producer>& Producers() const { return producers_; }
    const std::vector<InterfaceEntry>& Interfaces() const { return interfaces_; }
    const std::vector<Camera>& Cameras() const { return cameras_; }

    // False when no producer could be asked: Producers() tells why.
    bool HasInterfaceList() const { return list_ != nullptr; }

    // Name and version of the default producer, as it tells them; empty when it could not be asked.
    std::string DefaultProducerName() const;

  private:
    bool HasSeveral() const;  // usable producers
    bool OpenSystem();
    void ExplainMissingDefault();
    void FailDefault(const std::string& reason);
    void Probe();
    void AssignOwners();
    void ListInterface(ZelCam::Interface& interface, uint64_t searchMs);
    void ListCameras(ZelCam::Interface& interface, InterfaceEntry& entry);

    std::vector<Producer> producers_;      // the first is the default one
    std::vector<size_t> interfaceCounts_;  // by producer, filled by Probe
    std::vector<InterfaceEntry> interfaces_;
    std::vector<Camera> cameras_;
    Released<ZelCam::System> system_;
    Released<ZelCam::List<ZelCam::Interface>> list_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_SESSION_H
