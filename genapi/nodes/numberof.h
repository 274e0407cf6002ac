// One set of names for both types of numbers, for code that serves Integer and Float nodes alike:
// their interface and tables, access to the number of any node, and limits.
#pragma once

#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>

#include "genapi/nodes/node.h"
#include "genapi/values/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename T>
struct NumberOf;

template <>
struct NumberOf<int64_t> {
    using Interface = IInteger;
    static const IntegerData& Data(const NodeTables& tables, uint32_t index) {
        return tables.integers[index];
    }
    static int64_t Read(Node& node, ReadOptions options) { return node.GetInt(options); }
    static void Write(Node& node, int64_t value, bool verify) { node.SetInt(value, verify); }
    // AccessException if the node is not available and thus has no limits.
    static int64_t Min(Node& node) { return node.RequireAvailable(), node.MinInt(); }
    static int64_t Max(Node& node) { return node.RequireAvailable(), node.MaxInt(); }
    static int64_t Inc(Node& node) { return node.IncInt(); }
    static constexpr int64_t kLowest = kInt64Min, kHighest = kInt64Max;
    static constexpr const char* kName = "int";
};

template <>
struct NumberOf<double> {
    using Interface = IFloat;
    static const FloatData& Data(const NodeTables& tables, uint32_t index) {
        return tables.floats[index];
    }
    static double Read(Node& node, ReadOptions options) { return node.GetFloat(options); }
    static void Write(Node& node, double value, bool verify) { node.SetFloat(value, verify); }
    static double Min(Node& node) { return node.RequireAvailable(), node.MinFloat(); }
    static double Max(Node& node) { return node.RequireAvailable(), node.MaxFloat(); }
    static double Inc(Node& node) { return node.IncFloat(); }
    static constexpr double kLowest = -kDoubleMax, kHighest = kDoubleMax;
    static constexpr const char* kName = "double";
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
