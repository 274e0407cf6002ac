// Locks that threads and objects of this process share by name.
#include <chrono>
#include <iterator>
#include <map>
#include <string>

#include <Base/GCSynch.h>

namespace GENICAM_NAMESPACE {

namespace {

using Mutex = std::recursive_timed_mutex;

// The lock of that name. Making one removes the entries of locks that nobody holds any more.
std::shared_ptr<Mutex> MutexOf(const std::string& name) {
    static std::mutex guard;
    static std::map<std::string, std::weak_ptr<Mutex>> mutexes;
    const std::lock_guard<std::mutex> lock(guard);
    std::shared_ptr<Mutex> mutex = mutexes[name].lock();
    if (mutex) return mutex;
    for (auto entry = mutexes.begin(); entry != mutexes.end();)
        entry = entry->second.expired() ? mutexes.erase(entry) : std::next(entry);
    mutex = std::make_shared<Mutex>();
    mutexes[name] = mutex;
    return mutex;
}

}  // namespace

CGlobalLock::CGlobalLock(const gcstring& name)
    : m_Mutex(MutexOf(std::string(name.c_str(), name.length()))) {}

CGlobalLock::~CGlobalLock() = default;

bool CGlobalLock::Lock(unsigned int timeout_ms) {
    return m_Mutex->try_lock_for(std::chrono::milliseconds(timeout_ms));
}

bool CGlobalLock::TryLock() {
    return m_Mutex->try_lock();
}

void CGlobalLock::Unlock() {
    m_Mutex->unlock();
}

}  // namespace GENICAM_NAMESPACE
