// Texts that are handed out as pointers.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include <GenApi/GenApi.h>

namespace ZelCameraApi::Internal {

// Each thread has its own texts: a sink that reads on the event thread does not end what the
// application is reading. Threads with the same id, one after the other, share theirs, so that
// threads that come and go do not add up. Thread-safe.
class KeptTexts {
  public:
    // `text`, valid until the calling thread keeps another one under `key`.
    const char* Keep(const char* key, const GenICam::gcstring& text) {
        const std::lock_guard<std::mutex> lock(mutex_);
        return (texts_[{std::this_thread::get_id(), key}] = text).c_str();
    }

  private:
    std::mutex mutex_;
    std::map<std::pair<std::thread::id, std::string>, GenICam::gcstring>
        texts_;  // guarded by mutex_
};

}  // namespace ZelCameraApi::Internal
