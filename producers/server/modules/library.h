// The state of the producer in a process.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "producers/server/base/answer.h"
#include "producers/server/base/handletable.h"
#include "producers/server/modules/cameraaccess.h"
#include "producers/transport.h"

namespace ZelCti {

using TransportList = std::vector<std::shared_ptr<Transport>>;

// Counts the initialisations, and holds the handles and the transports. These are made when they
// are first needed and stay until Reconfigure replaces them. The last GCCloseLib closes all handles
// and lets the transports go: they may have threads, which must not end while the file is unloaded.
// Thread-safe.
class Library {
  public:
    static Library& Instance();

    void Init();  // throws what MakeTransports throws
    void Close();

    void CheckInitialized() const {
        if (numInits_.load(std::memory_order_relaxed) == 0) ThrowNotInitialized();
    }

    HandleTable& Handles() { return handles_; }
    CameraAccess& Access() { return access_; }
    std::shared_ptr<const TransportList> Transports();

    // Makes a change after which the transports are made anew, while nothing is open. Throws
    // GC_ERR_BUSY while any handle is.
    void Reconfigure(const std::function<void()>& change);

    // Answers TLGetInfo and GCGetInfo.
    static void GetInfo(Answer answer);

  private:
    Library() = default;
    ~Library() { CloseAll(); }

    [[noreturn]] static void ThrowNotInitialized();
    void CloseAll();

    std::mutex mutex_;
    std::atomic<size_t> numInits_{0};                  // changed with mutex_ held
    std::shared_ptr<const TransportList> transports_;  // guarded by mutex_
    CameraAccess access_;
    HandleTable handles_;
};

// The open object of a handle; throws GC_ERR_INVALID_HANDLE.
template <typename T>
std::shared_ptr<T> Find(Handle handle) {
    return Library::Instance().Handles().Find<T>(handle);
}

}  // namespace ZelCti
