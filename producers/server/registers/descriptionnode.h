// Nodes of GenApi descriptions as XML.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ZelCti {

// A node of a description, or an element of one, which holds a text or other elements.
struct DescriptionNode {
    std::string_view kind;  // in the words of the schema, as a literal
    std::pair<std::string_view, std::string> attribute = {};
    std::string text = {};
    std::vector<DescriptionNode> elements = {};  // in the order of the schema
    size_t place = 0;                            // in that order

    static DescriptionNode Named(std::string_view kind, std::string name) {
        return {kind, {"Name", std::move(name)}};
    }

    // Puts an element where the schema wants it; throws std::logic_error when nodes of this kind
    // have no such element.
    void Add(DescriptionNode element);
    void Add(std::string_view element, std::string value) { Add({element, {}, std::move(value)}); }

    bool Has(std::string_view element) const;
};

// Whether nodes of this kind are registers themselves.
bool IsRegisterKind(std::string_view kind);

// Appends a node as XML.
void AppendXml(const DescriptionNode& node, size_t depth, std::string& out);

// Appends a text; what XML reserves is escaped.
void AppendXml(std::string_view text, std::string& out);

}  // namespace ZelCti
