// Texts that are handed out as pointers.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include <GenApi/GenApi.h>

namespace ZelCameraApi::Internal {

// Each thread has its own texts: a sink that reads on the event thread does not invalidate a text
// that the application reads. Successive threads with the same id share their texts, so texts of
// ended threads do not accumulate. Thread-safe.
class KeptTexts {
  public:
    // Returns `text`, valid until the calling thread stores another text under `key`.
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
