#include <algorithm>
#include <array>

#include "genapi/description/compiler.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

FormulaVariable Compiler::variable(const Property& property) const {
    struct Suffix {
        std::string_view text;
        VariableForm form;
    };
    static constexpr std::array<Suffix, 7> kSuffixes = {
        {{"Value", VariableForm::Value},
         {"Min", VariableForm::Min},
         {"Max", VariableForm::Max},
         {"Inc", VariableForm::Inc},
         {"AccessMode", VariableForm::AccessMode},
         {"Visibility", VariableForm::Visibility},
         {"CachingMode", VariableForm::CachingMode}}};
    FormulaVariable result;
    result.name = property.attribute;
    result.node = property.node();
    const std::string_view name = description_.text(property.attribute);
    const std::size_t dot = name.find('.');
    if (dot == std::string_view::npos) return result;
    const std::string_view suffix = name.substr(dot + 1);
    // Texts end with a NUL, so the rest of a text is one, too.
    result.suffix = property.attribute + static_cast<TextRef>(dot + 1);
    result.form = VariableForm::Unknown;
    for (const Suffix& known : kSuffixes)
        if (known.text == suffix) result.form = known.form;
    if (suffix.substr(0, 6) == "Entry.") {
        result.form = VariableForm::Entry;
        result.suffix += 6;
    }
    return result;
}

Range Compiler::variables(bool integer) {
    Range range{static_cast<std::uint32_t>(tables_.variables.size()), 0};
    for (const Property& property : properties())
        if (property.element == Element::pVariable) {
            const FormulaVariable found = variable(property);
            // What a variable says of its node beside the value any node has.
            if (integer)
                integerLike(found.node);
            else
                floatLike(found.node);
            tables_.variables.push_back(found);
            ++range.count;
        }
    // Variables are read in the order of their names.
    std::sort(tables_.variables.begin() + range.first, tables_.variables.end(),
              [this](const FormulaVariable& a, const FormulaVariable& b) {
                  return description_.text(a.name) < description_.text(b.name);
              });
    return range;
}

std::uint32_t Compiler::formula(TextRef text, Range variables, bool integer, const char* input) {
    return add(tables_.formulas, FormulaData{text, variables, id_, integer, input});
}

SwissKnifeData Compiler::swissKnife() {
    SwissKnifeData data;
    const bool integer = kindOf(id_) == NodeKind::IntSwissKnife;
    TextRef formulaText = 0;
    const char* input = nullptr;
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::Formula:
                formulaText = property.text();
                break;
            case Element::FormulaTo:
                formulaText = property.text();
                input = "FROM";
                break;
            case Element::FormulaFrom:
                formulaText = property.text();
                input = "TO";
                break;
            default:
                presentation(property, data.presentation);
                break;
        }
    }
    data.formula = formula(formulaText, variables(integer), integer, input);
    return data;
}

ConverterData Compiler::converter() {
    ConverterData data;
    const bool integer = kindOf(id_) == NodeKind::IntConverter;
    TextRef to = 0, from = 0;
    for (const Property& property : properties()) {
        switch (property.element) {
            case Element::FormulaTo:
                to = property.text();
                break;
            case Element::FormulaFrom:
                from = property.text();
                break;
            case Element::pValue:
                data.value = integer ? integerLike(property.node()) : floatLike(property.node());
                break;
            case Element::IsLinear:
                data.isLinear = is(property, "Yes");
                break;
            case Element::Slope:
                data.slope = is(property, "Increasing")   ? Increasing
                             : is(property, "Decreasing") ? Decreasing
                             : is(property, "Varying")    ? Varying
                                                          : Automatic;
                break;
            default:
                presentation(property, data.presentation);
                break;
        }
    }
    const Range names = variables(integer);
    data.formulaTo = formula(to, names, integer, "FROM");
    data.formulaFrom = formula(from, names, integer, "TO");
    return data;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
