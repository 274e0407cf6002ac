// The two kinds of numbers by one set of names, for code that serves Integer and Float nodes alike:
// how they are read from and written to any node with a number, and their limits.
#pragma once

#include "genapi/nodes/node.h"
#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename T>
struct NumberOf;

template <>
struct NumberOf<std::int64_t> {
    static std::int64_t read(Node& node, ReadOptions options) { return node.getInt(options); }
    static void write(Node& node, std::int64_t value, bool verify) { node.setInt(value, verify); }
    // AccessException where the node has no limits because it is not available.
    static std::int64_t min(Node& node) { return node.requireAvailable(), node.minInt(); }
    static std::int64_t max(Node& node) { return node.requireAvailable(), node.maxInt(); }
    static std::int64_t inc(Node& node) { return node.incInt(); }
    static constexpr std::int64_t kLowest = kInt64Min, kHighest = kInt64Max;
};

template <>
struct NumberOf<double> {
    static double read(Node& node, ReadOptions options) { return node.getFloat(options); }
    static void write(Node& node, double value, bool verify) { node.setFloat(value, verify); }
    static double min(Node& node) { return node.requireAvailable(), node.minFloat(); }
    static double max(Node& node) { return node.requireAvailable(), node.maxFloat(); }
    static double inc(Node& node) { return node.incFloat(); }
    static constexpr double kLowest = -kDoubleMax, kHighest = kDoubleMax;
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
