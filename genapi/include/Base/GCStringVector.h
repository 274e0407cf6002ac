// gcstring_vector: std::vector<gcstring> behind a pointer, so that its layout does not depend on
// the standard library. Iterators are random-access, and valid as long as those of std::vector.
// Reentrant.
#ifndef GCBASE_GCSTRINGVECTOR_H
#define GCBASE_GCSTRINGVECTOR_H

#include <iterator>

#include <Base/GCString.h>

namespace GENICAM_NAMESPACE {

class GCBASE_RTTI_CLASS_API gcstring_vector {
  public:
    class const_iterator {
      public:
        using iterator_category = std::random_access_iterator_tag;
        using value_type = gcstring;
        using difference_type = intptr_t;
        using pointer = const gcstring*;
        using reference = const gcstring&;

        const_iterator(gcstring* pStr = nullptr) : _ps(pStr) {}
        const gcstring& operator*() const { return *_ps; }
        const gcstring* operator->() const { return _ps; }
        const_iterator& operator++() { return ++_ps, *this; }
        const_iterator operator++(int) { return const_iterator(_ps++); }
        const_iterator& operator--() { return --_ps, *this; }
        const_iterator operator--(int) { return const_iterator(_ps--); }
        const_iterator& operator+=(intptr_t n) { return _ps += n, *this; }
        const_iterator operator+(intptr_t n) const { return const_iterator(_ps + n); }
        const_iterator& operator-=(intptr_t n) { return _ps -= n, *this; }
        const_iterator operator-(intptr_t n) const { return const_iterator(_ps - n); }
        intptr_t operator-(const const_iterator& iter) const { return _ps - iter._ps; }
        const gcstring& operator[](intptr_t n) const { return _ps[n]; }
        bool operator==(const const_iterator& iter) const { return _ps == iter._ps; }
        bool operator!=(const const_iterator& iter) const { return _ps != iter._ps; }
        bool operator<(const const_iterator& iter) const { return _ps < iter._ps; }
        bool operator>(const const_iterator& iter) const { return _ps > iter._ps; }
        bool operator<=(const const_iterator& iter) const { return _ps <= iter._ps; }
        bool operator>=(const const_iterator& iter) const { return _ps >= iter._ps; }
        friend const_iterator operator+(intptr_t n, const const_iterator& iter) { return iter + n; }

      protected:
        gcstring* _ps;
    };

    class iterator : public const_iterator {
      public:
        using pointer = gcstring*;
        using reference = gcstring&;

        iterator(gcstring* ps = nullptr) : const_iterator(ps) {}
        gcstring& operator*() const { return *_ps; }
        gcstring* operator->() const { return _ps; }
        iterator& operator++() { return ++_ps, *this; }
        iterator operator++(int) { return iterator(_ps++); }
        iterator& operator--() { return --_ps, *this; }
        iterator operator--(int) { return iterator(_ps--); }
        iterator& operator+=(intptr_t n) { return _ps += n, *this; }
        iterator operator+(intptr_t n) const { return iterator(_ps + n); }
        iterator& operator-=(intptr_t n) { return _ps -= n, *this; }
        iterator operator-(intptr_t n) const { return iterator(_ps - n); }
        intptr_t operator-(const const_iterator& iter) const {
            return static_cast<const const_iterator&>(*this) - iter;
        }
        gcstring& operator[](intptr_t n) const { return _ps[n]; }
        friend iterator operator+(intptr_t n, const iterator& iter) { return iter + n; }
    };

    gcstring_vector();
    explicit gcstring_vector(size_t uiSize, const gcstring& str = gcstring());
    gcstring_vector(const gcstring_vector& obj);
    virtual ~gcstring_vector();

    virtual void assign(size_t n, const gcstring& val);
    virtual void clear();
    virtual iterator erase(iterator pos);
    // OutOfRangeException when there is no such element.
    virtual gcstring& at(size_t uiIndex);
    virtual const gcstring& at(size_t uiIndex) const;
    virtual gcstring& back();
    virtual const gcstring& back() const;
    virtual iterator begin();
    virtual const_iterator begin() const;
    virtual size_t capacity() const;
    virtual iterator end();
    virtual const_iterator end() const;
    virtual gcstring& front();
    virtual const gcstring& front() const;
    virtual size_t max_size() const;
    virtual size_t size() const;
    virtual iterator insert(iterator pos, const gcstring& str);
    virtual bool empty() const;
    virtual void pop_back();
    virtual void push_back(const gcstring& str);
    virtual void resize(size_t uiSize, const gcstring& str = gcstring());
    virtual void reserve(size_t uiSize);
    virtual bool contains(const gcstring& str) const;
    virtual gcstring_vector& assign(const gcstring_vector& obj);
    virtual void erase(size_t uiIndex);
    virtual void insert(size_t uiIndex, const gcstring& str);

    gcstring_vector& operator=(const gcstring_vector& obj);
    gcstring& operator[](size_t uiIndex);
    const gcstring& operator[](size_t uiIndex) const;
    void operator delete(void* pWhere);
    void* operator new(size_t uiSize);

  private:
    void* _pv;
};

}  // namespace GENICAM_NAMESPACE

#endif  // GCBASE_GCSTRINGVECTOR_H
