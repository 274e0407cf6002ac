#include <algorithm>

#include <GenApi/SelectorState.h>

namespace GENAPI_NAMESPACE {

using GENICAM_NAMESPACE::gcstring;

void CSelectorState::Append(const gcstring& Name, const gcstring& Value) {
    m_Names.push_back(Name);
    m_Values.push_back(Value);
}

void CSelectorState::Clear() {
    m_Names.clear();
    m_Values.clear();
}

size_t CSelectorState::GetSize() const {
    return m_Names.size();
}

const gcstring& CSelectorState::GetName(size_t Index) const {
    return m_Names.at(Index);
}

const gcstring& CSelectorState::GetValue(size_t Index) const {
    return m_Values.at(Index);
}

gcstring CSelectorState::ToString() const {
    gcstring text;
    for (size_t i = 0; i < m_Names.size(); ++i) {
        if (i > 0) text += '\t';
        text += m_Names[i];
        text += '=';
        text += m_Values[i];
    }
    return text;
}

bool CSelectorState::operator==(const CSelectorState& rhs) const {
    return std::equal(m_Names.begin(), m_Names.end(), rhs.m_Names.begin(), rhs.m_Names.end()) &&
           std::equal(m_Values.begin(), m_Values.end(), rhs.m_Values.begin(), rhs.m_Values.end());
}

}  // namespace GENAPI_NAMESPACE
