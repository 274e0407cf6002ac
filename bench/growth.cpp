#include "bench/growth.h"

#include <stdexcept>

namespace Bench {

namespace {

// values[size][quantity], one value a round
using Rounds = std::vector<std::vector<std::vector<double>>>;

void AddRound(std::vector<std::vector<double>>& quantities, const std::vector<double>& values) {
    if (values.size() != quantities.size()) throw std::logic_error("not a value for each quantity");
    for (size_t i = 0; i < values.size(); ++i)
        quantities[i].push_back(values[i]);
}

}  // namespace

void AddGrowth(Report& report, const std::string& group, const std::string& thing,
               const std::vector<size_t>& sizes, int rounds,
               const std::vector<GrowingQuantity>& quantities,
               const std::function<std::vector<double>(size_t size)>& measure) {
    Rounds measured(sizes.size(), std::vector<std::vector<double>>(quantities.size()));
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < sizes.size(); ++i)
            AddRound(measured[i], measure(sizes[i]));
    }
    const auto named = [&](size_t i) {
        return std::to_string(sizes[i]) + " " + thing + (sizes[i] == 1 ? "" : "s");
    };
    for (size_t q = 0; q < quantities.size(); ++q) {
        for (size_t i = 0; i < sizes.size(); ++i) {
            Figure figure{group,
                          quantities[q].name + ", " + named(i),
                          quantities[q].unit,
                          measured[i][q],
                          "",
                          {},
                          {}};
            if (i > 0) {
                figure.baseName = named(0);
                figure.baseRounds = measured[0][q];
            }
            if (i > 0 && i == sizes.size() - 1) figure.limit = quantities[q].limit;
            report.Add(std::move(figure));
        }
    }
}

}  // namespace Bench
