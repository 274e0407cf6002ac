// The producers, interfaces and cameras of one run of the program.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "tools/zelcam/camera/producertrial.h"

namespace ZelTool {

// Deletes an object of the library by its Release.
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
    std::string only;                    // use only the cameras of this producer; empty: of all
    uint64_t searchMs = 1000;            // for each interface to find its cameras
    uint64_t loadMs = 10000;             // for a producer to do everything else, see TrialOptions
    bool simulated = false;              // ask for simulated cameras, and use only these
    bool noSimulated = false;            // use no simulated camera
    bool json = false;
};

struct Producer {
    enum class Origin { Default, Option, Environment, Only };
    enum class State {
        Loaded,
        Failed,
        Skipped,  // not loaded, although nothing is wrong with it
    };

    std::string file;
    std::string name;  // of the file without its folder, if no other producer has that name
    Origin origin = Origin::Default;
    State state = State::Loaded;
    std::string reason;    // why it is not loaded, or why its cameras are left out
    bool leftOut = false;  // it is loaded, but its cameras are not listed
    std::vector<OfferedInterface> interfaces;

    std::string OriginWords() const;
    std::string StateWords() const;
    void Fail(const std::string& why);
    void Skip(const std::string& why);

    // Whether all its interfaces are simulated, and it has one.
    bool OnlySimulates() const;
};

struct InterfaceEntry {
    ZelCam::Interface* interface = nullptr;
    std::string id;
    std::string description;
    ZelCam::InterfaceType type = ZelCam::InterfaceType::Unknown;
    std::string producer;      // file; empty when it is unknown
    std::string producerName;  // see Producer
    bool simulated = false;
    std::string problem;  // why the search for cameras failed
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
    std::string producer;      // file; empty when it is unknown
    std::string producerName;  // see Producer
    bool simulated;

    // "id (vendor model, serial number 123, simulated)".
    std::string Description() const;
};

// The constructor tries the producers, loads those that work, and lists their interfaces and
// cameras. The lists also say what failed, which does not affect the rest: a producer that crashes,
// hangs or does not load, or an interface that cannot find its cameras. Only the default producer
// is indispensable, since the library needs it: without it the lists of interfaces and cameras are
// empty. Real interfaces and cameras come before simulated ones.
//
// A search may end soon after the first answers, but GigE Vision cameras may wait for up to a
// second before they answer. So it is repeated, until the cameras are enough for the command or the
// time for the search has passed.
class Session {
  public:
    // Whether the cameras are enough.
    using Enough = std::function<bool(const Session&)>;

    // Without `isEnough`, all cameras are wanted.
    explicit Session(const SessionOptions& options, const Enough& isEnough = nullptr);

    const std::vector<Producer>& Producers() const { return producers_; }
    const std::vector<InterfaceEntry>& Interfaces() const { return interfaces_; }
    const std::vector<Camera>& Cameras() const { return cameras_; }

    // Goes on with the search; the list of the cameras is a new one then. Does nothing when there
    // is no time left, or no GigE camera to wait for.
    void SearchOn(const Enough& isEnough);
    bool CanSearchOn() const;

    // Whether cameras on a network outside this machine may still answer.
    bool MayLackCameras() const;

    // False when the interfaces could not be listed: Producers() says why.
    bool HasInterfaceList() const { return list_ != nullptr; }

    // Whether another producer than the default one is loaded for real cameras, even if it has
    // found none.
    bool HasRealProducer() const;

    bool AsksForSimulated() const { return options_.simulated; }

    // Whether there is no simulated camera only because nobody asked for one.
    bool CouldAskForSimulated() const;

    // Name and version that the default producer reports; empty when it does not work.
    std::string DefaultProducerName() const;

  private:
    struct Trial {
        Producer* producer;
        std::unique_ptr<ProducerTrial> trial;
    };

    std::vector<Trial> StartTrials();
    static void AwaitTrials(const std::vector<Trial>& trials);
    void FailDefault(const std::string& reason);
    bool OpenSystem();
    void ListInterfaces();
    bool IsAskedFor(const InterfaceEntry& entry, const Producer* producer) const;
    void Search(InterfaceEntry& entry, std::chrono::milliseconds time);
    void ListCameras();
    void ListCameras(InterfaceEntry& entry);
    std::chrono::milliseconds TimeLeft() const;

    const SessionOptions options_;
    std::vector<Producer> producers_;  // the first is the default one
    std::vector<InterfaceEntry> interfaces_;
    std::vector<Camera> cameras_;
    Released<ZelCam::System> system_;
    Released<ZelCam::List<ZelCam::Interface>> list_;
    std::chrono::steady_clock::time_point searchEnd_;
};

}  // namespace ZelTool
