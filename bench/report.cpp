#include "bench/report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "bench/measure.h"

namespace Bench {

namespace {

using Row = std::array<std::string, 6>;

// Three significant digits, without an exponent.
std::string Number(double value) {
    const double size = std::abs(value);
    const int decimals = size == 0 || size >= 100 ? 0 : size >= 10 ? 1 : size >= 1 ? 2 : 3;
    std::ostringstream text;
    text << std::fixed << std::setprecision(decimals) << value;
    return text.str();
}

Row RowOf(const Figure& figure) {
    Row row;
    row[0] = figure.name;
    row[1] = Number(figure.Value()) + " " + figure.unit;
    if (!figure.baseName.empty()) {
        row[2] = figure.baseName;
        row[3] = Number(figure.Base()) + " " + figure.unit;
        row[4] = Number(*figure.Ratio());
    }
    if (figure.limit) {
        row[5] = "<= " + Number(*figure.limit) + (figure.IsMissed() ? "  MISSED" : "");
    }
    return row;
}

void WriteRow(std::ostream& out, const Row& row, const std::array<size_t, 6>& widths) {
    // Texts stand left, numbers right.
    constexpr std::array<bool, 6> kIsText = {true, false, true, false, false, true};
    std::ostringstream line;
    for (size_t i = 0; i < row.size(); ++i) {
        line << (kIsText[i] ? std::left : std::right) << std::setw(static_cast<int>(widths[i]))
             << row[i] << "  ";
    }
    const std::string text = line.str();
    out << text.substr(0, text.find_last_not_of(' ') + 1) << '\n';
}

}  // namespace

double Figure::Value() const {
    return Median(rounds);
}

double Figure::Base() const {
    return Median(baseRounds);
}

std::optional<double> Figure::Ratio() const {
    if (baseName.empty()) return std::nullopt;
    std::vector<double> ratios;
    for (size_t i = 0; i < rounds.size(); ++i)
        ratios.push_back(rounds[i] / baseRounds[i]);
    return Median(std::move(ratios));
}

bool Figure::IsMissed() const {
    return limit && Ratio().value_or(Value()) > *limit;
}

void Report::Add(Figure figure) {
    if (figure.rounds.empty()) throw std::logic_error(figure.name + ": nothing was measured");
    if (!figure.baseName.empty() && figure.baseRounds.size() != figure.rounds.size()) {
        throw std::logic_error(figure.name + ": rounds without their base");
    }
    figures_.push_back(std::move(figure));
}

void Report::WriteTable(std::ostream& out) const {
    const Row head = {"", "value", "compared with", "", "ratio", "wanted"};
    std::vector<Row> rows;
    std::array<size_t, 6> widths{};
    const auto widen = [&](const Row& row) {
        for (size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    };
    widen(head);
    for (const Figure& figure : figures_)
        widen(rows.emplace_back(RowOf(figure)));
    WriteRow(out, head, widths);
    for (size_t i = 0; i < rows.size(); ++i) {
        if (i == 0 || figures_[i].group != figures_[i - 1].group) {
            out << '\n' << figures_[i].group << '\n';
        }
        WriteRow(out, rows[i], widths);
    }
}

void Report::WriteJson(std::ostream& out) const {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const Figure& figure : figures_) {
        nlohmann::ordered_json entry = {{"group", figure.group},
                                        {"name", figure.name},
                                        {"unit", figure.unit},
                                        {"value", figure.Value()},
                                        {"rounds", figure.rounds}};
        if (const std::optional<double> ratio = figure.Ratio()) {
            entry["comparedWith"] = figure.baseName;
            entry["base"] = figure.Base();
            entry["baseRounds"] = figure.baseRounds;
            entry["ratio"] = *ratio;
        }
        if (figure.limit) {
            entry["wantedAtMost"] = *figure.limit;
            entry["missed"] = figure.IsMissed();
        }
        list.push_back(std::move(entry));
    }
    out << nlohmann::ordered_json{{"figures", std::move(list)}}.dump(2) << '\n';
}

bool Report::HasErrors() const {
    return std::any_of(figures_.begin(), figures_.end(),
                       [](const Figure& figure) { return figure.must && figure.IsMissed(); });
}

}  // namespace Bench
