// Texts with gaps.
#ifndef ZELSIM_PLACEHOLDERS_H
#define ZELSIM_PLACEHOLDERS_H

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace ZelSim {

// Assembles the text of a description. In the fragments, @NAME@ stands for a value and @file.xml@
// for another fragment. Thread-bound.
class Placeholders {
  public:
    // A value that is plain text; what XML reserves is escaped.
    Placeholders& Text(const std::string& name, std::string_view text);

    // A value that is XML, and may hold placeholders itself.
    Placeholders& Xml(const std::string& name, std::string xml);

    // A value that is one element after the other, each with a text; for lists of links.
    Placeholders& List(const std::string& name, const std::string& element,
                       std::initializer_list<std::string_view> texts);

    // The fragment with all gaps filled; throws std::logic_error when one has no value.
    std::string FillIn(std::string_view fileName) const;

  private:
    struct Value {
        std::string text;
        bool hasPlaceholders;
    };

    void Append(std::string_view text, std::string& out) const;
    void AppendValue(const std::string& name, std::string& out) const;

    std::map<std::string, Value> values_;
};

}  // namespace ZelSim

#endif  // ZELSIM_PLACEHOLDERS_H
