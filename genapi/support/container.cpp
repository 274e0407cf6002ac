#include <Base/GCException.h>
#include <GenApi/Container.h>

namespace GENAPI_NAMESPACE {

namespace {

template <class T>
size_t Checked(const std::vector<T>& values, size_t index) {
    if (index >= values.size()) throw OUT_OF_RANGE_EXCEPTION("vector::_M_range_check");
    return index;
}

}  // namespace

template <class T>
CPointerVector<T>::CPointerVector() : _pv(new std::vector<T>) {}

template <class T>
CPointerVector<T>::CPointerVector(size_t uiSize) : _pv(new std::vector<T>(uiSize)) {}

template <class T>
CPointerVector<T>::CPointerVector(const CPointerVector& obj) : _pv(new std::vector<T>(*obj._pv)) {}

template <class T>
CPointerVector<T>::~CPointerVector() {
    delete _pv;
}

template <class T>
void CPointerVector<T>::assign(size_t n, const T& val) {
    _pv->assign(n, val);
}

template <class T>
void CPointerVector<T>::clear() {
    _pv->clear();
}

template <class T>
typename CPointerVector<T>::iterator CPointerVector<T>::erase(iterator pos) {
    const intptr_t index = pos - begin();
    _pv->erase(_pv->begin() + index);
    return begin() + index;
}

template <class T>
T& CPointerVector<T>::at(size_t uiIndex) {
    return (*_pv)[Checked(*_pv, uiIndex)];
}

template <class T>
const T& CPointerVector<T>::at(size_t uiIndex) const {
    return (*_pv)[Checked(*_pv, uiIndex)];
}

template <class T>
T& CPointerVector<T>::back() {
    return _pv->back();
}

template <class T>
const T& CPointerVector<T>::back() const {
    return _pv->back();
}

template <class T>
typename CPointerVector<T>::iterator CPointerVector<T>::begin() {
    return iterator(_pv->data());
}

template <class T>
typename CPointerVector<T>::const_iterator CPointerVector<T>::begin() const {
    return const_iterator(_pv->data());
}

template <class T>
size_t CPointerVector<T>::capacity() const {
    return _pv->capacity();
}

template <class T>
typename CPointerVector<T>::iterator CPointerVector<T>::end() {
    return iterator(_pv->data() + _pv->size());
}

template <class T>
typename CPointerVector<T>::const_iterator CPointerVector<T>::end() const {
    return const_iterator(_pv->data() + _pv->size());
}

template <class T>
T& CPointerVector<T>::front() {
    return _pv->front();
}

template <class T>
const T& CPointerVector<T>::front() const {
    return _pv->front();
}

template <class T>
size_t CPointerVector<T>::max_size() const {
    return _pv->max_size();
}

template <class T>
size_t CPointerVector<T>::size() const {
    return _pv->size();
}

template <class T>
typename CPointerVector<T>::iterator CPointerVector<T>::insert(iterator pos, const T& val) {
    const intptr_t index = pos - begin();  // insert may move the storage
    _pv->insert(_pv->begin() + index, val);
    return begin() + index;
}

template <class T>
bool CPointerVector<T>::empty() const {
    return _pv->empty();
}

template <class T>
void CPointerVector<T>::pop_back() {
    _pv->pop_back();
}

template <class T>
void CPointerVector<T>::push_back(const T& val) {
    _pv->push_back(val);
}

template <class T>
void CPointerVector<T>::resize(size_t uiSize, const T& val) {
    _pv->resize(uiSize, val);
}

template <class T>
void CPointerVector<T>::reserve(size_t uiSize) {
    _pv->reserve(uiSize);
}

template <class T>
void CPointerVector<T>::erase(size_t uiIndex) {
    erase(begin() + static_cast<intptr_t>(uiIndex));
}

template <class T>
void CPointerVector<T>::insert(size_t uiIndex, const T& val) {
    insert(begin() + static_cast<intptr_t>(uiIndex), val);
}

template <class T>
CPointerVector<T>& CPointerVector<T>::operator=(const CPointerVector& obj) {
    if (this != &obj) *_pv = *obj._pv;
    return *this;
}

template <class T>
void CPointerVector<T>::operator delete(void* pWhere) {
    ::operator delete(pWhere);
}

template <class T>
void* CPointerVector<T>::operator new(size_t uiSize) {
    return ::operator new(uiSize);
}

template class CPointerVector<INode*>;
template class CPointerVector<IValue*>;

}  // namespace GENAPI_NAMESPACE
