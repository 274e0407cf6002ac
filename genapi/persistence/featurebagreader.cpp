// Parses the text of a feature bag into names and values.
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <GenApi/Persistence.h>

#include "genapi/persistence/entrylist.h"

namespace GENAPI_NAMESPACE {

using GENICAM_NAMESPACE::gcstring;

namespace {

using Entry = std::pair<std::string_view, std::string_view>;

constexpr const char* kBlanks = " \t\r\v\f";

std::string_view Trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool IsName(std::string_view text) {
    const auto isNameCharacter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == ':';
    };
    return !text.empty() && std::all_of(text.begin(), text.end(), isNameCharacter);
}

[[noreturn]] void ThrowIncomplete() {
    throw RUNTIME_EXCEPTION("The stream holds incomplete key - value - set");
}

// Removes "{Selector=value<tab>...}<tab>" from the front of a value. A value may be any text,
// except that one with a brace at its beginning and a tab is taken for selectors.
std::vector<Entry> TakeSelectors(std::string_view& value) {
    if (value.empty() || value[0] != '{' || value.find('\t') == std::string_view::npos) return {};
    const size_t end = value.find("}\t");
    if (end == std::string_view::npos) ThrowIncomplete();
    std::vector<Entry> selectors;
    for (std::string_view list = value.substr(1, end - 1); !list.empty();) {
        const std::string_view item = list.substr(0, list.find('\t'));
        const size_t sign = item.find('=');
        if (sign == std::string_view::npos || !IsName(item.substr(0, sign))) return {};
        selectors.emplace_back(item.substr(0, sign), item.substr(sign + 1));
        list.remove_prefix(std::min(list.size(), item.size() + 1));
    }
    value.remove_prefix(end + 2);
    return selectors;
}

gcstring ToText(std::string_view text) {
    return gcstring(text.data(), text.size());
}

void CheckMagic(std::string_view line) {
    if (line.find(GENAPI_PERSISTENCE_MAGIC_FEATUREBAGGER) != std::string_view::npos)
        throw RUNTIME_EXCEPTION(
            "The stream has been created using the CFeatureBagger class thus must be restored "
            "using the CFeatureBagger class as well");
    if (line.find(GENAPI_PERSISTENCE_MAGIC) == std::string_view::npos)
        throw RUNTIME_EXCEPTION(
            "The stream is not a GenApi feature stream since it is missing the magic GUID in the "
            "first line");
}

}  // namespace

CFeatureBag::CReader::CReader(CFeatureBag& bag)
    : m_Bag(bag), m_HasMagic(false), m_HasReturns(false), m_Finished(false) {
    m_Bag.m_Names.clear();
    m_Bag.m_Values.clear();
}

CFeatureBag::CReader::~CReader() {
    if (m_Finished) return;
    m_Bag.m_Names.clear();
    m_Bag.m_Values.clear();
}

void CFeatureBag::CReader::Line(const char* pText, size_t Length) {
    std::string_view line(pText, Length);
    if (!m_HasMagic) {
        CheckMagic(line);
        m_HasMagic = true;
        m_HasReturns = line.back() == '\r';
        return;
    }
    if (m_HasReturns && !line.empty() && line.back() == '\r') line.remove_suffix(1);
    const size_t first = line.find_first_not_of(kBlanks);
    if (first == std::string_view::npos || line[first] == '#') return;
    const std::string_view entry = line.substr(first);
    const size_t tab = entry.find('\t');
    if (tab == std::string_view::npos) ThrowIncomplete();
    std::string_view value = entry.substr(tab + 1);
    Engine::EntryList entries(m_Bag.m_Names, m_Bag.m_Values);
    for (const Entry& selector : TakeSelectors(value))
        entries.Append(ToText(selector.first), ToText(selector.second));
    entries.Append(ToText(Trimmed(entry.substr(0, tab))), ToText(value));
}

void CFeatureBag::CReader::Finish() {
    m_Finished = true;
}

void CFeatureBag::CReader::ThrowTooLong() {
    throw RUNTIME_EXCEPTION("The stream is too long for a GenApi feature stream");
}

}  // namespace GENAPI_NAMESPACE
