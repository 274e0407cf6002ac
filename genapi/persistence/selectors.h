// Finds the selectors of a feature.
#pragma once

#include <GenApi/IValue.h>
#include <GenApi/SelectorSet.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The selectors of a feature and their own selectors, the outer ones first. RuntimeException if
// there are more than any camera has.
FeatureList_t SelectorsOf(IBase* feature);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
