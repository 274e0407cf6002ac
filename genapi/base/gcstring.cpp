#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <Base/GCException.h>
#include <Base/GCString.h>

namespace GENICAM_NAMESPACE {

namespace {

std::string_view View(const gcstring& text) {
    return {text.c_str(), text.length()};
}

std::string_view View(const char* text) {
    return text ? std::string_view(text) : std::string_view();
}

}  // namespace

const size_t gcstring::npos = GCSTRING_NPOS;

gcstring::gcstring() noexcept : m_psz(m_short), m_length(0), m_capacity(kShort) {
    m_short[0] = '\0';
}

gcstring::gcstring(const char* pc) : gcstring() {
    replace(pc, pc ? std::strlen(pc) : 0);
}

gcstring::gcstring(const char* pc, size_t n) : gcstring() {
    replace(pc, n);
}

gcstring::gcstring(size_t count, char ch) : gcstring() {
    assign(count, ch);
}

gcstring::gcstring(const gcstring& str) : gcstring() {
    replace(str.m_psz, str.m_length);
}

gcstring::~gcstring() {
    if (!isShort()) std::free(m_psz);
}

void gcstring::grow(size_t capacity) {
    if (capacity <= m_capacity) return;
    if (capacity > max_size()) ThrowBadAlloc(__FILE__, __LINE__);
    // Doubling keeps appending linear.
    if (capacity < 2 * m_capacity) capacity = 2 * m_capacity;
    char* larger = static_cast<char*>(std::malloc(capacity + 1));
    if (!larger) ThrowBadAlloc(__FILE__, __LINE__);
    std::memcpy(larger, m_psz, m_length + 1);
    if (!isShort()) std::free(m_psz);
    m_psz = larger;
    m_capacity = capacity;
}

void gcstring::replace(const char* pc, size_t n) {
    if (!pc) n = 0;
    if (n > m_capacity) {
        m_length = 0;  // nothing to copy over
        m_psz[0] = '\0';
        grow(n);
    }
    if (n > 0) std::memmove(m_psz, pc, n);
    setLength(n);
}

void gcstring::appendBytes(const char* pc, size_t n) {
    if (n == 0) return;
    if (m_length + n > m_capacity) {
        // pc may point into this text.
        const std::string copy(pc, n);
        grow(m_length + n);
        std::memcpy(m_psz + m_length, copy.data(), n);
    } else {
        std::memmove(m_psz + m_length, pc, n);
    }
    setLength(m_length + n);
}

gcstring& gcstring::append(const gcstring& str) {
    appendBytes(str.m_psz, str.m_length);
    return *this;
}

gcstring& gcstring::append(size_t count, char ch) {
    if (count > max_size() - m_length) ThrowBadAlloc(__FILE__, __LINE__);
    grow(m_length + count);
    std::memset(m_psz + m_length, ch, count);
    setLength(m_length + count);
    return *this;
}

gcstring& gcstring::assign(const gcstring& str) {
    if (&str != this) replace(str.m_psz, str.m_length);
    return *this;
}

gcstring& gcstring::assign(size_t count, char ch) {
    setLength(0);
    return append(count, ch);
}

gcstring& gcstring::assign(const char* pc) {
    return assign(pc, pc ? std::strlen(pc) : 0);
}

gcstring& gcstring::assign(const char* pc, size_t n) {
    if (pc && n > m_capacity) {
        const std::string copy(pc, n);  // pc may point into this text
        replace(copy.data(), n);
    } else {
        replace(pc, n);
    }
    return *this;
}

int gcstring::compare(const gcstring& str) const {
    const int order = View(*this).compare(View(str));
    return (order > 0) - (order < 0);
}

const char* gcstring::c_str() const {
    return m_psz;
}

bool gcstring::empty() const {
    return m_length == 0;
}

size_t gcstring::find(char ch, size_t offset) const {
    return View(*this).find(ch, offset);
}

size_t gcstring::find(const gcstring& str, size_t offset) const {
    return View(*this).find(View(str), offset);
}

size_t gcstring::find(const gcstring& str, size_t offset, size_t count) const {
    return View(*this).find(View(str).substr(0, count), offset);
}

size_t gcstring::find(const char* pc, size_t offset) const {
    return View(*this).find(View(pc), offset);
}

size_t gcstring::find(const char* pc, size_t offset, size_t count) const {
    return View(*this).find(View(pc).substr(0, count), offset);
}

size_t gcstring::length() const {
    return m_length;
}

size_t gcstring::size() const {
    return m_length;
}

void gcstring::resize(size_t n) {
    if (n > m_length)
        append(n - m_length, '\0');
    else
        setLength(n);
}

void gcstring::reserve(size_t n) {
    grow(n);
}

gcstring& gcstring::erase(size_t pos, size_t len) {
    std::string text(m_psz, m_length);
    text.erase(pos, len);
    replace(text.data(), text.size());
    return *this;
}

size_t gcstring::max_size() const {
    return size_t(-1) / 4;
}

gcstring gcstring::substr(size_t offset, size_t count) const {
    const std::string_view part = View(*this).substr(offset, count);
    return gcstring(part.data(), part.size());
}

size_t gcstring::find_first_of(const gcstring& str, size_t offset) const {
    return View(*this).find_first_of(View(str), offset);
}

size_t gcstring::find_first_not_of(const gcstring& str, size_t offset) const {
    return View(*this).find_first_not_of(View(str), offset);
}

size_t gcstring::find_last_of(const gcstring& str, size_t offset) const {
    return View(*this).find_last_of(View(str), offset);
}

size_t gcstring::find_last_of(char c, size_t offset) const {
    return View(*this).find_last_of(c, offset);
}

size_t gcstring::find_last_not_of(const gcstring& str, size_t offset) const {
    return View(*this).find_last_not_of(View(str), offset);
}

size_t gcstring::find_last_not_of(char c, size_t offset) const {
    return View(*this).find_last_not_of(c, offset);
}

size_t gcstring::_npos() {
    return npos;
}

void gcstring::swap(gcstring& Right) {
    const bool wasShort = isShort();
    const bool rightWasShort = Right.isShort();
    std::swap(m_psz, Right.m_psz);
    std::swap(m_length, Right.m_length);
    std::swap(m_capacity, Right.m_capacity);
    std::swap(m_short, Right.m_short);
    if (wasShort) Right.m_psz = Right.m_short;
    if (rightWasShort) m_psz = m_short;
}

bool gcstring::operator!=(const gcstring& str) const {
    return View(*this) != View(str);
}

bool gcstring::operator!=(const char* pc) const {
    return View(*this) != View(pc);
}

gcstring& gcstring::operator+=(const gcstring& str) {
    return append(str);
}

gcstring gcstring::operator+=(const gcstring& str) const {
    return *this + str;
}

gcstring& gcstring::operator+=(const char* pc) {
    appendBytes(pc, View(pc).size());
    return *this;
}

gcstring& gcstring::operator+=(char ch) {
    return append(1, ch);
}

gcstring gcstring::operator+=(char ch) const {
    gcstring result(*this);
    result.append(1, ch);
    return result;
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assign handles it
gcstring& gcstring::operator=(const gcstring& str) {
    return assign(str);
}

bool gcstring::operator==(const gcstring& str) const {
    return View(*this) == View(str);
}

bool gcstring::operator==(const char* pc) const {
    return View(*this) == View(pc);
}

bool gcstring::operator<(const gcstring& str) const {
    return View(*this) < View(str);
}

bool gcstring::operator>(const gcstring& str) const {
    return View(*this) > View(str);
}

gcstring::operator const char*() const {
    return m_psz;
}

void gcstring::operator delete(void* pWhere) {
    ::operator delete(pWhere);
}

void gcstring::operator delete(void*, void*) {}

void* gcstring::operator new(size_t uiSize) {
    return ::operator new(uiSize);
}

void* gcstring::operator new(size_t, void* pWhere) {
    return pWhere;
}

gcstring operator+(const gcstring& left, const gcstring& right) {
    gcstring result;
    result.reserve(left.length() + right.length());
    return result.append(left).append(right);
}

gcstring operator+(const gcstring& left, const char* right) {
    gcstring result(left);
    result += right;
    return result;
}

gcstring operator+(const char* left, const gcstring& right) {
    return gcstring(left).append(right);
}

// The exception holds strings. If there is no memory for them either, building it would throw again
// and never end.
void ThrowBadAlloc(const char* source, int line) {
    constexpr size_t kRoomForTexts = 2048;
    void* const room = std::malloc(kRoomForTexts);
    if (!room) throw std::bad_alloc();
    std::free(room);
    throw BadAllocException("Out of memory", source, line, "BadAllocException");
}

std::istream& getline(std::istream& is, gcstring& str) {
    return getline(is, str, '\n');
}

std::istream& getline(std::istream& is, gcstring& str, char delim) {
    std::string line;
    std::getline(is, line, delim);
    str.assign(line.data(), line.size());
    return is;
}

}  // namespace GENICAM_NAMESPACE

std::ostream& operator<<(std::ostream& ostr, const GENICAM_NAMESPACE::gcstring& str) {
    return ostr << std::string_view(str.c_str(), str.length());
}

std::istream& operator>>(std::istream& istr, GENICAM_NAMESPACE::gcstring& str) {
    std::string word;
    istr >> word;
    str.assign(word.data(), word.size());
    return istr;
}
