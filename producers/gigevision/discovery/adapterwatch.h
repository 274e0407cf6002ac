// Notices that network adapters or their addresses change.
#pragma once

namespace ZelGev {

// Thread-bound.
class AdapterWatch {
  public:
    AdapterWatch();
    ~AdapterWatch();
    AdapterWatch(const AdapterWatch&) = delete;
    AdapterWatch& operator=(const AdapterWatch&) = delete;

    // Whether anything may have changed since the last call; true for the first one, and always
    // where the system gives no notice. Never waits.
    bool HasChanged();

  private:
    const int descriptor_;  // negative when the system gives no notice
    bool isFirst_ = true;
};

}  // namespace ZelGev
