// Which selectors a feature has.
#pragma once

#include <GenApi/IValue.h>
#include <GenApi/SelectorSet.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// The selectors of a feature and their own, the outer ones before those that they select.
// RuntimeException if there are more than any camera has.
FeatureList_t SelectorsOf(IBase* feature);

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
