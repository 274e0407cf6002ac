// Locks that stand outside node maps.
#ifndef GCBASE_GCSYNCH_H
#define GCBASE_GCSYNCH_H

#include <memory>
#include <mutex>

#include <Base/GCString.h>

namespace GENICAM_NAMESPACE {

// Recursive lock: a thread may lock again what it holds and must unlock as often. Thread-safe.
class CLock {
  public:
    // False if another thread holds the lock.
    bool TryLock() { return m_Mutex.try_lock(); }
    void Lock() { m_Mutex.lock(); }
    void Unlock() { m_Mutex.unlock(); }

  private:
    std::recursive_mutex m_Mutex;
};

// Holds a lock for its scope.
class AutoLock {
  public:
    explicit AutoLock(CLock& lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~AutoLock() { m_Lock.Unlock(); }
    AutoLock(const AutoLock&) = delete;
    AutoLock& operator=(const AutoLock&) = delete;

  private:
    CLock& m_Lock;
};

// A lock known by its name throughout the process: objects of one name are one recursive lock. The
// lock exists as long as one of its objects does. Thread-safe.
class GCBASE_RTTI_CLASS_API CGlobalLock {
  public:
    explicit CGlobalLock(const gcstring& name);
    ~CGlobalLock();
    CGlobalLock(const CGlobalLock&) = delete;
    CGlobalLock& operator=(const CGlobalLock&) = delete;

    // False if another thread held the lock all the time.
    bool Lock(unsigned int timeout_ms);
    // False if another thread holds the lock.
    bool TryLock();
    void Unlock();

  private:
    std::shared_ptr<std::recursive_timed_mutex> m_Mutex;
};

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCSYNCH_H
