#include <Base/GCException.h>
#include <GenApi/Synch.h>

namespace GENAPI_NAMESPACE {

CLock::CLock() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int error = pthread_mutex_init(&m_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    if (error != 0) throw RUNTIME_EXCEPTION("Cannot create a lock, error %d", error);
}

CLock::~CLock() {
    pthread_mutex_destroy(&m_mutex);
}

}  // namespace GENAPI_NAMESPACE
