#include <algorithm>
#include <new>
#include <stdexcept>
#include <vector>

#include <Base/GCException.h>
#include <Base/GCStringVector.h>

namespace GENICAM_NAMESPACE {

namespace {

using Strings = std::vector<gcstring>;

Strings& StringsOf(void* vector) {
    return *static_cast<Strings*>(vector);
}

}  // namespace

gcstring_vector::gcstring_vector() : _pv(new Strings) {}

gcstring_vector::gcstring_vector(size_t uiSize, const gcstring& str)
    : _pv(new Strings(uiSize, str)) {}

gcstring_vector::gcstring_vector(const gcstring_vector& obj)
    : _pv(new Strings(StringsOf(obj._pv))) {}

gcstring_vector::~gcstring_vector() {
    delete static_cast<Strings*>(_pv);
}

void gcstring_vector::assign(size_t n, const gcstring& val) {
    StringsOf(_pv).assign(n, val);
}

void gcstring_vector::clear() {
    StringsOf(_pv).clear();
}

gcstring_vector::iterator gcstring_vector::erase(iterator pos) {
    const intptr_t index = pos - begin();
    StringsOf(_pv).erase(StringsOf(_pv).begin() + index);
    return begin() + index;
}

gcstring& gcstring_vector::at(size_t uiIndex) {
    if (uiIndex >= size()) throw OUT_OF_RANGE_EXCEPTION("vector::_M_range_check");
    return StringsOf(_pv)[uiIndex];
}

const gcstring& gcstring_vector::at(size_t uiIndex) const {
    return const_cast<gcstring_vector*>(this)->at(uiIndex);
}

gcstring& gcstring_vector::back() {
    return StringsOf(_pv).back();
}

const gcstring& gcstring_vector::back() const {
    return StringsOf(_pv).back();
}

gcstring_vector::iterator gcstring_vector::begin() {
    return iterator(StringsOf(_pv).data());
}

gcstring_vector::const_iterator gcstring_vector::begin() const {
    return const_iterator(StringsOf(_pv).data());
}

size_t gcstring_vector::capacity() const {
    return StringsOf(_pv).capacity();
}

gcstring_vector::iterator gcstring_vector::end() {
    return begin() + static_cast<intptr_t>(size());
}

gcstring_vector::const_iterator gcstring_vector::end() const {
    return begin() + static_cast<intptr_t>(size());
}

gcstring& gcstring_vector::front() {
    return StringsOf(_pv).front();
}

const gcstring& gcstring_vector::front() const {
    return StringsOf(_pv).front();
}

size_t gcstring_vector::max_size() const {
    return StringsOf(_pv).max_size();
}

size_t gcstring_vector::size() const {
    return StringsOf(_pv).size();
}

gcstring_vector::iterator gcstring_vector::insert(iterator pos, const gcstring& str) {
    const intptr_t index = pos - begin();
    StringsOf(_pv).insert(StringsOf(_pv).begin() + index, str);
    return begin() + index;
}

bool gcstring_vector::empty() const {
    return StringsOf(_pv).empty();
}

void gcstring_vector::pop_back() {
    StringsOf(_pv).pop_back();
}

void gcstring_vector::push_back(const gcstring& str) {
    StringsOf(_pv).push_back(str);
}

void gcstring_vector::resize(size_t uiSize, const gcstring& str) {
    StringsOf(_pv).resize(uiSize, str);
}

void gcstring_vector::reserve(size_t uiSize) {
    StringsOf(_pv).reserve(uiSize);
}

bool gcstring_vector::contains(const gcstring& str) const {
    return std::find(StringsOf(_pv).begin(), StringsOf(_pv).end(), str) != StringsOf(_pv).end();
}

gcstring_vector& gcstring_vector::assign(const gcstring_vector& obj) {
    if (&obj != this) StringsOf(_pv) = StringsOf(obj._pv);
    return *this;
}

void gcstring_vector::erase(size_t uiIndex) {
    StringsOf(_pv).erase(StringsOf(_pv).begin() + static_cast<intptr_t>(uiIndex));
}

void gcstring_vector::insert(size_t uiIndex, const gcstring& str) {
    StringsOf(_pv).insert(StringsOf(_pv).begin() + static_cast<intptr_t>(uiIndex), str);
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assign handles it
gcstring_vector& gcstring_vector::operator=(const gcstring_vector& obj) {
    return assign(obj);
}

gcstring& gcstring_vector::operator[](size_t uiIndex) {
    return StringsOf(_pv)[uiIndex];
}

const gcstring& gcstring_vector::operator[](size_t uiIndex) const {
    return StringsOf(_pv)[uiIndex];
}

void gcstring_vector::operator delete(void* pWhere) {
    ::operator delete(pWhere);
}

void* gcstring_vector::operator new(size_t uiSize) {
    return ::operator new(uiSize);
}

}  // namespace GENICAM_NAMESPACE
