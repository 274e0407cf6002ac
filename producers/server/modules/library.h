// The state of the producer in a process.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "producers/server/base/answer.h"
#include "producers/server/base/handletable.h"
#include "producers/simulator/world.h"

namespace ZelSim {

// Counts the initialisations, and holds the handles and the world. The world is built when it is
// first needed and stays until the file is unloaded or another configuration replaces it; the last
// GCCloseLib closes all handles. Thread-safe.
class Library {
  public:
    static Library& Instance();

    void Init();  // throws when there is no usable configuration
    void Close();

    void CheckInitialized() const {
        if (numInits_.load(std::memory_order_relaxed) == 0) ThrowNotInitialized();
    }

    HandleTable& Handles() { return handles_; }
    std::shared_ptr<World> GetWorld();

    // Throws GC_ERR_BUSY while any handle is open.
    void Replace(const WorldConfig& config);

    // The info commands of the producer itself: those of TLGetInfo and GCGetInfo.
    static void GetInfo(Answer answer);

  private:
    Library() = default;
    ~Library() { CloseAll(); }

    [[noreturn]] static void ThrowNotInitialized();
    void CloseAll();

    std::mutex mutex_;
    std::atomic<size_t> numInits_{0};  // changed with mutex_ held
    std::shared_ptr<World> world_;     // guarded by mutex_
    HandleTable handles_;
};

// The open object of a handle; throws GC_ERR_INVALID_HANDLE.
template <typename T>
std::shared_ptr<T> Find(Handle handle) {
    return Library::Instance().Handles().Find<T>(handle);
}

}  // namespace ZelSim
