// gcarray: a buffer that frees itself. Reentrant.
#ifndef GCBASE_GCARRAY_H
#define GCBASE_GCARRAY_H

#include <algorithm>
#include <memory>

#include <Base/GCTypes.h>

namespace GENICAM_NAMESPACE {

// Owns elements of T; their number is fixed on construction. Copying copies the elements.
template <typename T>
class gcarray {
  public:
    // The elements are value-initialised: numbers are 0.
    explicit gcarray(size_t nLength = 0) : m_Length(nLength), m_Elements(new T[nLength]()) {}
    gcarray(const gcarray& other) : gcarray(other.m_Length) {
        std::copy(other.get(), other.get() + m_Length, get());
    }
    gcarray& operator=(const gcarray& other) {
        gcarray copy(other);
        std::swap(m_Length, copy.m_Length);
        m_Elements.swap(copy.m_Elements);
        return *this;
    }

    T* get() { return m_Elements.get(); }
    const T* get() const { return m_Elements.get(); }
    size_t length() const { return m_Length; }
    // The index is not checked.
    T& operator[](size_t nIndex) { return m_Elements[nIndex]; }
    const T& operator[](size_t nIndex) const { return m_Elements[nIndex]; }

  private:
    size_t m_Length;
    std::unique_ptr<T[]> m_Elements;
};

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCARRAY_H
