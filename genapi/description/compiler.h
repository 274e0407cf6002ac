// Turns the elements of each node, as written, into the data of its kind. compile.cpp has the
// kinds, compileformulas.cpp those that compute.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "genapi/description/nodedata.h"
#include "genapi/description/numbers.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class Compiler {
  public:
    Compiler(Description& description, NodeTables& tables, std::vector<NodeRecord>& records)
        : description_(description), tables_(tables), records_(records) {}

    // The data of one node; PropertyException or RuntimeException where the description is wrong.
    void compile(NodeId id);

  private:
    template <typename T>
    static std::uint32_t add(std::vector<T>& table, T data) {
        table.push_back(std::move(data));
        return static_cast<std::uint32_t>(table.size() - 1);
    }

    std::string_view text(const Property& property) const {
        return description_.text(property.text());
    }

    // The number that a text element says. A float was checked when it was read.
    void read(const Property& property, std::int64_t& value) const {
        value = integerOf(text(property), property.element);
    }
    void read(const Property& property, double& value) const { parse(text(property), value); }

    std::int64_t integer(const Property& property) const {
        return integerOf(text(property), property.element);
    }

    bool is(const Property& property, std::string_view word) const {
        return text(property) == word;
    }

    NodeKind kindOf(NodeId node) const { return records_[node].kind; }

    // The node, if a reference that needs something of that type may point to it, or if there is no
    // such node, which is reported later; RuntimeException otherwise.
    NodeId integerLike(NodeId node) const;
    NodeId conditionLike(NodeId node) const;
    NodeId floatLike(NodeId node) const;
    NodeId stringLike(NodeId node) const;

    NodeId like(const std::int64_t*, NodeId node) const { return integerLike(node); }
    NodeId like(const double*, NodeId node) const { return floatLike(node); }

    // A setting from a text element or a link, whichever the property is.
    template <typename T>
    Setting<T> setting(const Property& property) const {
        Setting<T> result;
        if (isLink(property.element)) {
            result.source = Setting<T>::Source::Node;
            result.node = like(static_cast<const T*>(nullptr), property.node());
        } else {
            result.source = Setting<T>::Source::Constant;
            read(property, result.constant);
        }
        return result;
    }

    Slice<Property> properties() const { return description_.properties(id_); }

    // The nodes that links of one element point to.
    Range links(Element element) {
        Range range{static_cast<std::uint32_t>(tables_.nodes.size()), 0};
        for (const Property& property : properties())
            if (property.element == element) {
                tables_.nodes.push_back(property.node());
                ++range.count;
            }
        return range;
    }

    void common(NodeRecord& record);
    void presentation(const Property& property, Presentation& result) const;
    CategoryData category();
    template <typename T>
    NumberData<T> number();
    template <typename T>
    void readValidValues(const Property& property, NumberData<T>& data);
    RegisterData registerData(const NodeRecord& record);
    void checkMask(const RegisterData& data) const;
    void readAddress(RegisterData& data);
    BooleanData boolean();
    CommandData command();
    EnumerationData enumeration();
    EnumEntryData entry();
    StringData string();
    SwissKnifeData swissKnife();
    ConverterData converter();
    PortData port();
    Range variables(bool integer);
    FormulaVariable variable(const Property& property) const;
    std::uint32_t formula(TextRef text, Range variables, bool integer, const char* input);

    std::vector<IndexedCase<std::int64_t>>& cases(const std::int64_t*) const {
        return tables_.integerCases;
    }
    std::vector<IndexedCase<double>>& cases(const double*) const { return tables_.floatCases; }

    Description& description_;
    NodeTables& tables_;
    std::vector<NodeRecord>& records_;
    NodeId id_ = kNoNode;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
