#include "producers/simulator/placeholders.h"

#include <stdexcept>

#include "producers/simulator/fragments.h"

namespace ZelSim {

namespace {

std::string Escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

bool IsFileName(std::string_view name) {
    constexpr std::string_view extension = ".xml";
    return name.size() > extension.size() &&
           name.substr(name.size() - extension.size()) == extension;
}

}  // namespace

Placeholders& Placeholders::Text(const std::string& name, std::string_view text) {
    values_[name] = {Escaped(text), false};
    return *this;
}

Placeholders& Placeholders::Xml(const std::string& name, std::string xml) {
    values_[name] = {std::move(xml), true};
    return *this;
}

Placeholders& Placeholders::List(const std::string& name, const std::string& element,
                                 std::initializer_list<std::string_view> texts) {
    std::string xml;
    for (const std::string_view text : texts)
        xml += "<" + element + ">" + Escaped(text) + "</" + element + ">";
    return Xml(name, std::move(xml));
}

std::string Placeholders::FillIn(std::string_view fileName) const {
    std::string out;
    Append(Fragment(fileName), out);
    return out;
}

void Placeholders::Append(std::string_view text, std::string& out) const {
    for (;;) {
        const size_t begin = text.find('@');
        out += text.substr(0, begin);
        if (begin == std::string_view::npos) return;
        const size_t end = text.find('@', begin + 1);
        if (end == std::string_view::npos) throw std::logic_error("a placeholder without an end");
        AppendValue(std::string(text.substr(begin + 1, end - begin - 1)), out);
        text.remove_prefix(end + 1);
    }
}

void Placeholders::AppendValue(const std::string& name, std::string& out) const {
    if (IsFileName(name)) return Append(Fragment(name), out);
    const auto found = values_.find(name);
    if (found == values_.end()) throw std::logic_error("no value for @" + name + "@");
    if (!found->second.hasPlaceholders) {
        out += found->second.text;
    } else {
        Append(found->second.text, out);
    }
}

}  // namespace ZelSim
