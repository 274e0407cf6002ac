// Lists of numbers that are returned by value.
#ifndef GENAPI_AUTOVECTOR_H
#define GENAPI_AUTOVECTOR_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

// Copies share their elements. A default-constructed list allocates nothing. Reentrant.
template <class T>
class CSharedVector {
  public:
    CSharedVector() = default;
    explicit CSharedVector(size_t n) : m_Values(std::make_shared<std::vector<T>>(n)) {}
    CSharedVector(const CSharedVector&) = default;
    virtual ~CSharedVector() {}
    CSharedVector& operator=(const CSharedVector&) = default;

    // The index is not checked.
    T& operator[](size_t uiIndex) { return (*m_Values)[uiIndex]; }
    const T& operator[](size_t uiIndex) const { return (*m_Values)[uiIndex]; }
    size_t size() const { return m_Values ? m_Values->size() : 0; }

  private:
    std::shared_ptr<std::vector<T>> m_Values;
};

class GENAPI_DECL int64_autovector_t : public CSharedVector<int64_t> {
  public:
    explicit int64_autovector_t() = default;
    explicit int64_autovector_t(size_t n) : CSharedVector<int64_t>(n) {}
};

class GENAPI_DECL double_autovector_t : public CSharedVector<double> {
  public:
    explicit double_autovector_t() = default;
    explicit double_autovector_t(size_t n) : CSharedVector<double>(n) {}
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_AUTOVECTOR_H
