// The registers of a port together with their description.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "producers/server/registers/description.h"
#include "producers/server/registers/porturl.h"
#include "producers/server/registers/registerspace.h"

namespace ZelCti {

// A register space whose description is read through the same port. Both are made when the port is
// first used: most programs never read the features of most modules. Thread-safe.
class PortRegisters {
  public:
    // Puts the registers into an empty space; returns their description, or null without one.
    using Make = std::function<std::unique_ptr<const Description>(RegisterSpace&)>;

    // `make` is called by the first operation. What it throws, the operation throws, and the next
    // one calls it again. What the registers refer to must live as long as this object is used.
    PortRegisters(uint64_t lastAddress, ByteOrder order, Make make)
        : lastAddress_(lastAddress), order_(order), make_(std::move(make)) {}

    // The description's own URL; none without a description.
    std::vector<PortUrl> Urls();

    // As in RegisterSpace; the description can only be read.
    void Read(uint64_t address, void* buffer, size_t size);
    void Write(uint64_t address, const void* buffer, size_t size);
    const Register* Find(uint64_t address, size_t size);
    std::unique_lock<std::recursive_mutex> Lock() { return GetContent().space.Lock(); }

  private:
    struct Content {
        Content(uint64_t lastAddress, ByteOrder order) : space(lastAddress, order) {}

        // Whether a range of addresses belongs to the description.
        bool IsDescription(uint64_t address, size_t size) const {
            return description != nullptr && description->Contains(address, size);
        }

        RegisterSpace space;
        std::unique_ptr<const Description> description;
        Register descriptionPlace;  // of all of it
    };

    Content& GetContent();

    const uint64_t lastAddress_;
    const ByteOrder order_;
    const Make make_;
    std::mutex mutex_;
    std::unique_ptr<Content> content_;  // guarded by mutex_
    std::atomic<Content*> made_{nullptr};
};

}  // namespace ZelCti
