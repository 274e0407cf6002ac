// The lock of node maps.
#ifndef GENAPI_SYNCH_H
#define GENAPI_SYNCH_H

#include <pthread.h>

#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

// Recursive lock: the thread that holds it may lock it again, and must unlock it as often.
// Thread-safe.
class GENAPI_DECL CLock {
  public:
    CLock();
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    // False if another thread holds the lock.
    bool TryLock() { return pthread_mutex_trylock(&m_mutex) == 0; }
    void Lock() { pthread_mutex_lock(&m_mutex); }
    void Unlock() { pthread_mutex_unlock(&m_mutex); }

  protected:
    pthread_mutex_t m_mutex;
};

class GENAPI_DECL CLockEx : public CLock {};

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

// Base of objects with a lock of their own: `auto lock = object.GetLock();` holds it for the scope.
template <class Object>
class LockableObject {
  public:
    class Lock {
      public:
        explicit Lock(const LockableObject& obj) : m_Lock(obj.m_Lock) { m_Lock.Lock(); }
        Lock(const Lock& other) : m_Lock(other.m_Lock) { m_Lock.Lock(); }
        ~Lock() { m_Lock.Unlock(); }
        Lock& operator=(const Lock&) = delete;

      private:
        CLock& m_Lock;
    };

    Lock GetLock() const { return Lock(*this); }

  protected:
    mutable CLock m_Lock;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_SYNCH_H
