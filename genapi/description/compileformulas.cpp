// Compiles the kinds that compute: SwissKnives, converters and the variables of their formulas.
#include <algorithm>
#include <array>

#include "genapi/description/compiler.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

FormulaVariable Compiler::Variable(const Property& property) const {
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
    result.node = property.Target();
    const std::string_view name = description_.Text(property.attribute);
    const size_t dot = name.find('.');
    if (dot == std::string_view::npos) return result;
    const std::string_view suffix = name.substr(dot + 1);
    // The name ends with a NUL, so its tail is a text of the pool as well.
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

Range Compiler::Variables(bool integer) {
    Range range{static_cast<uint32_t>(tables_.variables.size()), 0};
    for (const Property& property : Properties())
        if (property.element == Element::pVariable) {
            const FormulaVariable found = Variable(property);
            // Checks that the node may stand in such a formula.
            if (integer)
                IntegerLike(found.node);
            else
                FloatLike(found.node);
            tables_.variables.push_back(found);
            ++range.count;
        }
    // Variables are read in the order of their names.
    std::sort(tables_.variables.begin() + range.first, tables_.variables.end(),
              [this](const FormulaVariable& a, const FormulaVariable& b) {
                  return description_.Text(a.name) < description_.Text(b.name);
              });
    return range;
}

uint32_t Compiler::Formula(TextRef text, Range variables, bool integer, const char* input) {
    return Add(tables_.formulas, FormulaData{text, variables, id_, integer, input});
}

SwissKnifeData Compiler::SwissKnife() {
    SwissKnifeData data;
    const bool integer = KindOf(id_) == NodeKind::IntSwissKnife;
    TextRef formulaText = 0;
    const char* input = nullptr;
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::Formula:
                formulaText = property.Text();
                break;
            case Element::FormulaTo:
                formulaText = property.Text();
                input = "FROM";
                break;
            case Element::FormulaFrom:
                formulaText = property.Text();
                input = "TO";
                break;
            default:
                ReadPresentation(property, data.presentation);
                break;
        }
    }
    data.formula = Formula(formulaText, Variables(integer), integer, input);
    return data;
}

ConverterData Compiler::Converter() {
    ConverterData data;
    const bool integer = KindOf(id_) == NodeKind::IntConverter;
    TextRef to = 0, from = 0;
    for (const Property& property : Properties()) {
        switch (property.element) {
            case Element::FormulaTo:
                to = property.Text();
                break;
            case Element::FormulaFrom:
                from = property.Text();
                break;
            case Element::pValue:
                data.value =
                    integer ? IntegerLike(property.Target()) : FloatLike(property.Target());
                break;
            case Element::IsLinear:
                data.isLinear = Is(property, "Yes");
                break;
            case Element::Slope:
                data.slope = Is(property, "Increasing")   ? Increasing
                             : Is(property, "Decreasing") ? Decreasing
                             : Is(property, "Varying")    ? Varying
                                                          : Automatic;
                break;
            default:
                ReadPresentation(property, data.presentation);
                break;
        }
    }
    const Range names = Variables(integer);
    data.formulaTo = Formula(to, names, integer, "FROM");
    data.formulaFrom = Formula(from, names, integer, "TO");
    return data;
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
