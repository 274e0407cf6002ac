// The base class of nodes, by the type of their number, for kinds that exist for both types.
#pragma once

#include "genapi/nodes/floatbase.h"
#include "genapi/nodes/integerbase.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

template <typename Number>
struct FamilyOf;
template <>
struct FamilyOf<int64_t> {
    using Base = IntegerBase;
};
template <>
struct FamilyOf<double> {
    using Base = FloatBase;
};
template <typename Number>
using Family = typename FamilyOf<Number>::Base;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
