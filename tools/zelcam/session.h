// The producers, interfaces and cameras of one run of the program.
#ifndef ZELCAM_TOOLS_ZELCAM_SESSION_H
#define ZELCAM_TOOLS_ZELCAM_SESSION_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "ZelCam/ZelCam.h"
#include "tools/zelcam/producertrial.h"

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
    std::string only;                    // the producer whose cameras alone are used; empty: all
    uint64_t searchMs = 1000;            // time each interface has to find its cameras
    uint64_t loadMs = 10000;   // time a producer has for everything else, see TrialOptions
    bool simulated = false;    // simulated cameras only; asks the default producer for them
    bool noSimulated = false;  // none of them
    bool json = false;
};

struct Producer {
    enum class Origin { Default, Option, Environment, Only };
    enum class State {
        Loaded,
        Failed,
        Skipped,  // nothing wrong with it, but not loaded
    };

    std::string file;
    std::string name;  // of the file without its folder, where that tells it from all others
    Origin origin = Origin::Default;
    State state = State::Loaded;
    std::string reason;    // why it is not loaded, or its cameras are left out
    bool leftOut = false;  // loaded, but its cameras are not asked for
    std::vector<OfferedInterface> interfaces;

    std::string OriginWords() const;
    std::string StateWords() const;
    void Fail(const std::string& why);
    void Skip(const std::string& why);

    // Whether no real camera can come from it: all of its interfaces are simulated or, in the
    // default producer, there is none.
    bool OnlySimulates() const;
};

struct InterfaceEntry {
    std::string id;
    std::string description;
    ZelCam::InterfaceType type;
    std::string producer;      // file; empty when it cannot be told
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
    std::string producer;      // file; empty when it cannot be told
    std::string producerName;  // see Producer
    bool simulated;

    // "id (vendor model, serial number 123, simulated)".
    std::string Description() const;
};

// Tries the producers, loads those that work and lists what they offer, once, at construction. What
// fails is noted in the lists and leaves the rest alone: a producer that crashes, hangs or does not
// load, an interface that cannot find its cameras. Only the default producer is needed by the
// library itself: without it the lists of interfaces and cameras are empty. Real interfaces and
// cameras come first, simulated ones after them.
class Session {
  public:
    explicit Session(const SessionOptions& options);

    const std::vector<Producer>& Producers() const { return producers_; }
    const std::vector<InterfaceEntry>& Interfaces() const { return interfaces_; }
    const std::vector<Camera>& Cameras() const { return cameras_; }

    // False when no producer could be asked: Producers() tells why.
    bool HasInterfaceList() const { return list_ != nullptr; }

    // Whether a producer for real cameras is loaded, with or without cameras.
    bool HasRealProducer() const;

    bool AsksForSimulated() const { return options_.simulated; }

    // Whether there is no simulated camera for the only reason that nobody asked for one.
    bool CouldAskForSimulated() const;

    // Name and version of the default producer, as it tells them; empty when it could not be asked.
    std::string DefaultProducerName() const;

  private:
    struct Trial {
        Producer* producer;
        std::unique_ptr<ProducerTrial> trial;
    };

    // An interface of the library, and where it comes from.
    struct Listed {
        ZelCam::Interface* interface;
        const Producer* producer;  // null when it cannot be told
        bool simulated;
    };

    std::vector<Trial> StartTrials();
    static void AwaitTrials(const std::vector<Trial>& trials);
    void FailDefault(const std::string& reason);
    bool OpenSystem();
    std::vector<Listed> ListInterfaces();
    bool IsAskedFor(const Listed& listed) const;
    void SearchInterface(const Listed& listed);
    void ListCameras(ZelCam::Interface& interface, InterfaceEntry& entry);

    const SessionOptions options_;
    std::vector<Producer> producers_;  // the first is the default one
    std::vector<InterfaceEntry> interfaces_;
    std::vector<Camera> cameras_;
    Released<ZelCam::System> system_;
    Released<ZelCam::List<ZelCam::Interface>> list_;
};

#endif  // ZELCAM_TOOLS_ZELCAM_SESSION_H
