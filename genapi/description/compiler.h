// Turns the elements of each node, as written, into the data of its kind. compile.cpp and
// compileformulas.cpp share the kinds.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <type_traits>
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
    void Compile(NodeId id);

  private:
    template <typename T>
    static uint32_t Add(std::vector<T>& table, T data) {
        table.push_back(std::move(data));
        return static_cast<uint32_t>(table.size() - 1);
    }

    std::string_view Text(const Property& property) const {
        return description_.Text(property.Text());
    }

    // The number in a text element. Floats were checked when they were read.
    void Read(const Property& property, int64_t& value) const {
        value = IntegerOf(Text(property), property.element);
    }
    void Read(const Property& property, double& value) const { Parse(Text(property), value); }

    int64_t Integer(const Property& property) const {
        return IntegerOf(Text(property), property.element);
    }

    bool Is(const Property& property, std::string_view word) const {
        return Text(property) == word;
    }

    NodeKind KindOf(NodeId node) const { return records_[node].kind; }

    // The node, if a reference to such a type may point to it, or if the node does not exist, which
    // is reported later; RuntimeException otherwise.
    NodeId IntegerLike(NodeId node) const;
    NodeId ConditionLike(NodeId node) const;
    NodeId FloatLike(NodeId node) const;
    NodeId StringLike(NodeId node) const;
    NodeId OneOf(NodeId node, std::initializer_list<EInterfaceType> allowed,
                 const char* refusal) const;

    template <typename T>
    NodeId NumberLike(NodeId node) const {
        if constexpr (std::is_integral_v<T>)
            return IntegerLike(node);
        else
            return FloatLike(node);
    }

    // A setting from a text element or from a link.
    template <typename T>
    Setting<T> ReadSetting(const Property& property) const {
        Setting<T> result;
        if (IsLink(property.element)) {
            result.source = Setting<T>::Source::Node;
            result.node = NumberLike<T>(property.Target());
        } else {
            result.source = Setting<T>::Source::Constant;
            Read(property, result.constant);
        }
        return result;
    }

    Slice<Property> Properties() const { return description_.Properties(id_); }

    // The nodes that links of one element point to.
    Range Links(Element element) {
        Range range{static_cast<uint32_t>(tables_.nodes.size()), 0};
        for (const Property& property : Properties())
            if (property.element == element) {
                tables_.nodes.push_back(property.Target());
                ++range.count;
            }
        return range;
    }

    void Common(NodeRecord& record);
    void ReadPresentation(const Property& property, Presentation& result) const;
    CategoryData Category();
    template <typename T>
    NumberData<T> Number();
    template <typename T>
    void ReadValidValues(const Property& property, NumberData<T>& data);
    RegisterData ReadRegister(const NodeRecord& record);
    void CheckMask(const RegisterData& data) const;
    void ReadAddress(RegisterData& data);
    BooleanData Boolean();
    CommandData Command();
    EnumerationData Enumeration();
    EnumEntryData Entry();
    StringData String();
    SwissKnifeData SwissKnife();
    ConverterData Converter();
    PortData Port();
    Range Variables(bool integer);
    FormulaVariable Variable(const Property& property) const;
    uint32_t Formula(TextRef text, Range variables, bool integer, const char* input);

    Description& description_;
    NodeTables& tables_;
    std::vector<NodeRecord>& records_;
    NodeId id_ = kNoNode;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
