// Locks outside node maps.
#ifndef GCBASE_GCSYNCH_H
#define GCBASE_GCSYNCH_H

#include <memory>
#include <mutex>

#include <Base/GCString.h>

namespace GENICAM_NAMESPACE {

// Recursive lock: the thread that holds it may lock it again, and must unlock it as often.
// Thread-safe.
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

// A recursive lock with a name: all objects of one name in the process are the same lock. It exists
// as long as one of these objects. Thread-safe.
class GCBASE_RTTI_CLASS_API CGlobalLock {
  public:
    explicit CGlobalLock(const gcstring& name);
    ~CGlobalLock();
    CGlobalLock(const CGlobalLock&) = delete;
    CGlobalLock& operator=(const CGlobalLock&) = delete;

    // False if another thread held the lock during the whole time.
    bool Lock(unsigned int timeout_ms);
    // False if another thread holds the lock.
    bool TryLock();
    void Unlock();

  private:
    std::shared_ptr<std::recursive_timed_mutex> m_Mutex;
};

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCSYNCH_H
