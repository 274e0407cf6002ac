// Lists of nodes and of values.
#ifndef GENAPI_CONTAINER_H
#define GENAPI_CONTAINER_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

#include <GenApi/GenApiDll.h>

namespace GENAPI_NAMESPACE {

struct INode;
struct IValue;

// Random-access iterators of CPointerVector; invalid after a change of the list's size.
template <class T>
class CPointerVectorConstIterator {
  public:
    using iterator_category = std::random_access_iterator_tag;
    using const_iterator = CPointerVectorConstIterator;
    using value_type = T;
    using difference_type = intptr_t;
    using pointer = const T*;
    using reference = const T&;

    CPointerVectorConstIterator(T* pT = nullptr) : _pT(pT) {}
    const T& operator*() const { return *_pT; }
    const T* operator->() const { return _pT; }
    const T& operator[](intptr_t n) const { return _pT[n]; }
    const_iterator& operator++() {
        ++_pT;
        return *this;
    }
    const_iterator operator++(int) { return const_iterator(_pT++); }
    const_iterator& operator--() {
        --_pT;
        return *this;
    }
    const_iterator operator--(int) { return const_iterator(_pT--); }
    const_iterator& operator+=(intptr_t n) {
        _pT += n;
        return *this;
    }
    const_iterator operator+=(intptr_t n) const { return const_iterator(_pT + n); }
    const_iterator operator+(intptr_t n) const { return const_iterator(_pT + n); }
    const_iterator& operator-=(intptr_t n) {
        _pT -= n;
        return *this;
    }
    const_iterator operator-=(intptr_t n) const { return const_iterator(_pT - n); }
    const_iterator operator-(intptr_t n) const { return const_iterator(_pT - n); }
    intptr_t operator-(const const_iterator& iter) const { return _pT - iter._pT; }
    bool operator==(const const_iterator& iter) const { return _pT == iter._pT; }
    bool operator!=(const const_iterator& iter) const { return _pT != iter._pT; }
    bool operator<(const const_iterator& iter) const { return _pT < iter._pT; }
    bool operator>(const const_iterator& iter) const { return _pT > iter._pT; }
    bool operator<=(const const_iterator& iter) const { return _pT <= iter._pT; }
    bool operator>=(const const_iterator& iter) const { return _pT >= iter._pT; }
    friend const_iterator operator+(intptr_t n, const const_iterator& iter) { return iter + n; }

  protected:
    T* _pT;
};

template <class T>
class CPointerVectorIterator : public CPointerVectorConstIterator<T> {
  public:
    using const_iterator = CPointerVectorConstIterator<T>;
    using iterator = CPointerVectorIterator;
    using pointer = T*;
    using reference = T&;

    CPointerVectorIterator(T* pT = nullptr) : const_iterator(pT) {}
    T& operator*() const { return *_pT; }
    T* operator->() const { return _pT; }
    T& operator[](intptr_t n) const { return _pT[n]; }
    iterator& operator++() {
        ++_pT;
        return *this;
    }
    iterator operator++(int) { return iterator(_pT++); }
    iterator& operator--() {
        --_pT;
        return *this;
    }
    iterator operator--(int) { return iterator(_pT--); }
    iterator& operator+=(intptr_t n) {
        _pT += n;
        return *this;
    }
    iterator operator+=(intptr_t n) const { return iterator(_pT + n); }
    iterator operator+(intptr_t n) const { return iterator(_pT + n); }
    iterator& operator-=(intptr_t n) {
        _pT -= n;
        return *this;
    }
    iterator operator-=(intptr_t n) const { return iterator(_pT - n); }
    iterator operator-(intptr_t n) const { return iterator(_pT - n); }
    intptr_t operator-(const const_iterator& iter) const { return const_iterator::operator-(iter); }
    friend iterator operator+(intptr_t n, const iterator& iter) { return iter + n; }

  private:
    using const_iterator::_pT;
};

// A vector of pointers that behaves like std::vector; its layout hides the storage. at() throws
// OutOfRangeException; the other operations do not check. Reentrant.
template <class T>
class GENAPI_DECL CPointerVector {
  public:
    using value_type = T;

    using const_iterator = CPointerVectorConstIterator<T>;
    using iterator = CPointerVectorIterator<T>;

    CPointerVector();
    explicit CPointerVector(size_t uiSize);
    CPointerVector(const CPointerVector& obj);
    virtual ~CPointerVector();

    virtual void assign(size_t n, const T& val);
    virtual void clear();
    virtual iterator erase(iterator pos);
    virtual T& at(size_t uiIndex);
    virtual const T& at(size_t uiIndex) const;
    virtual T& back();
    virtual const T& back() const;
    virtual iterator begin();
    virtual const_iterator begin() const;
    virtual size_t capacity() const;
    virtual iterator end();
    virtual const_iterator end() const;
    virtual T& front();
    virtual const T& front() const;
    virtual size_t max_size() const;
    virtual size_t size() const;
    virtual iterator insert(iterator pos, const T& val);
    virtual bool empty() const;
    virtual void pop_back();
    virtual void push_back(const T& val);
    virtual void resize(size_t uiSize, const T& val = T());
    virtual void reserve(size_t uiSize);
    virtual void erase(size_t uiIndex);
    virtual void insert(size_t uiIndex, const T& val);

    CPointerVector& operator=(const CPointerVector& obj);
    T& operator[](size_t uiIndex) { return (*_pv)[uiIndex]; }
    const T& operator[](size_t uiIndex) const { return (*_pv)[uiIndex]; }

    // The library allocates and frees all objects.
    void operator delete(void* pWhere);
    void* operator new(size_t uiSize);

  private:
    std::vector<T>* _pv;
};

// Exported even if INode or IValue was first declared with another visibility.
extern template class GENAPI_DECL CPointerVector<INode*>;
extern template class GENAPI_DECL CPointerVector<IValue*>;

class GENAPI_DECL node_vector : public CPointerVector<INode*> {
  public:
    node_vector() = default;
    explicit node_vector(size_t uiSize) : CPointerVector<INode*>(uiSize) {}
};

class GENAPI_DECL value_vector : public CPointerVector<IValue*> {
  public:
    value_vector() = default;
    explicit value_vector(size_t uiSize) : CPointerVector<IValue*>(uiSize) {}
};

using NodeList_t = node_vector;
using FeatureList_t = value_vector;

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_CONTAINER_H
