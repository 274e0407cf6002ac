// gcstring: the text type of the interface. It behaves like std::string but has a layout of its
// own, so that libraries and applications built with different standard libraries can exchange
// texts. Reentrant.
#ifndef GCBASE_GCSTRING_H
#define GCBASE_GCSTRING_H

#include <iostream>  // which sources rely on

#include <Base/GCTypes.h>

#define GCSTRING_NPOS size_t(-1)

namespace GENICAM_NAMESPACE {

// A counted sequence of bytes, which may include NULs. A null pointer counts as the empty text.
class GCBASE_RTTI_CLASS_API gcstring {
  public:
    gcstring() noexcept;
    gcstring(const char* pc);
    gcstring(const char* pc, size_t n);
    gcstring(size_t count, char ch);
    gcstring(const gcstring& str);
    virtual ~gcstring();

    virtual gcstring& append(const gcstring& str);
    virtual gcstring& append(size_t count, char ch);
    virtual gcstring& assign(const gcstring& str);
    virtual gcstring& assign(size_t count, char ch);
    virtual gcstring& assign(const char* pc);
    virtual gcstring& assign(const char* pc, size_t n);
    // The sign of the lexical comparison.
    virtual int compare(const gcstring& str) const;
    virtual const char* c_str() const;
    virtual bool empty() const;
    virtual size_t find(char ch, size_t offset = 0) const;
    virtual size_t find(const gcstring& str, size_t offset = 0) const;
    virtual size_t find(const gcstring& str, size_t offset, size_t count) const;
    virtual size_t find(const char* pc, size_t offset = 0) const;
    virtual size_t find(const char* pc, size_t offset, size_t count) const;
    virtual size_t length() const;
    virtual size_t size() const;
    // Cuts the text, or extends it with NULs.
    virtual void resize(size_t n);
    virtual void reserve(size_t n = 0);
    // std::out_of_range if pos is beyond the end.
    virtual gcstring& erase(size_t pos, size_t len = GCSTRING_NPOS);
    virtual size_t max_size() const;
    // std::out_of_range if offset is beyond the end.
    virtual gcstring substr(size_t offset = 0, size_t count = GCSTRING_NPOS) const;
    virtual size_t find_first_of(const gcstring& str, size_t offset = 0) const;
    virtual size_t find_first_not_of(const gcstring& str, size_t offset = 0) const;
    virtual size_t find_last_of(const gcstring& str, size_t offset = GCSTRING_NPOS) const;
    virtual size_t find_last_of(char c, size_t offset = GCSTRING_NPOS) const;
    virtual size_t find_last_not_of(const gcstring& str, size_t offset = GCSTRING_NPOS) const;
    virtual size_t find_last_not_of(char c, size_t offset = GCSTRING_NPOS) const;
    static size_t _npos();
    virtual void swap(gcstring& Right);

    bool operator!=(const gcstring& str) const;
    bool operator!=(const char* pc) const;
    gcstring& operator+=(const gcstring& str);
    // The const forms leave this text unchanged and return the longer one.
    gcstring operator+=(const gcstring& str) const;
    gcstring& operator+=(const char* pc);
    gcstring& operator+=(char ch);
    gcstring operator+=(char ch) const;
    gcstring& operator=(const gcstring& str);
    bool operator==(const gcstring& str) const;
    bool operator==(const char* pc) const;
    bool operator<(const gcstring& str) const;
    bool operator>(const gcstring& str) const;
    operator const char*() const;

    // This library allocates and frees all objects, whichever library uses new and delete.
    void operator delete(void* pWhere);
    void operator delete(void* pWhere, void* pNewWhere);
    void* operator new(size_t uiSize);
    void* operator new(size_t uiSize, void* pWhere);

    GCBASE_RTTI_CLASS_API friend gcstring operator+(const gcstring& left, const gcstring& right);
    GCBASE_RTTI_CLASS_API friend gcstring operator+(const gcstring& left, const char* right);
    GCBASE_RTTI_CLASS_API friend gcstring operator+(const char* left, const gcstring& right);

    static const size_t npos;

  private:
    // Short texts are stored in the object: most names of features and most values.
    static constexpr size_t kShort = 64 - 2 * sizeof(size_t) - 1;

    void grow(size_t capacity);
    void replace(const char* pc, size_t n);
    void appendBytes(const char* pc, size_t n);
    bool isShort() const { return m_psz == m_short; }
    void setLength(size_t n) {
        m_length = n;
        m_psz[n] = '\0';
    }

    char* m_psz;
    size_t m_length;
    size_t m_capacity;
    char m_short[kShort + 1];
};

// Throws BadAllocException, or std::bad_alloc if there is no memory for its texts either.
GCBASE_RTTI_CLASS_API void ThrowBadAlloc(const char* source, int line);

GCBASE_RTTI_CLASS_API std::istream& getline(std::istream& is, gcstring& str);
GCBASE_RTTI_CLASS_API std::istream& getline(std::istream& is, gcstring& str, char delim);

}  // namespace GENICAM_NAMESPACE

GCBASE_RTTI_CLASS_API std::ostream& operator<<(std::ostream& ostr,
                                               const GENICAM_NAMESPACE::gcstring& str);
// Reads one word, up to the next blank.
GCBASE_RTTI_CLASS_API std::istream& operator>>(std::istream& istr,
                                               GENICAM_NAMESPACE::gcstring& str);

#endif  // GCBASE_GCSTRING_H
