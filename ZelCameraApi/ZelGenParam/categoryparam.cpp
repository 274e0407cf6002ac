#include "ZelCameraApi/ZelGenParam/categoryparam.h"

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "ZelCameraApi/ZelGenParam/paramaccess.h"

namespace ZelCameraApi::Internal {

namespace {

GenApi::FeatureList_t FeaturesOf(const GenApi::ICategory& category) {
    GenApi::FeatureList_t features;
    category.GetFeatures(features);
    return features;
}

}  // namespace

uint32_t CategoryParamImpl::GetCount() {
    return ParamGetterWithError(value_, nullptr, [](const GenApi::ICategory& category) {
        return static_cast<uint32_t>(FeaturesOf(category).size());
    });
}

ZelGenParam::Param* CategoryParamImpl::GetParamByIndex(uint32_t index, ZelCamErr* err) {
    const auto find = [&](const GenApi::ICategory& category) -> ZelGenParam::Param* {
        const GenApi::FeatureList_t features = FeaturesOf(category);
        if (index < features.size()) {
            return Owner()->GetParam(features[index]->GetNode()->GetName().c_str(), err);
        }
        StoreError(err, ZelCamErr_IndexOutOfRange);
        return nullptr;
    };
    return ParamGetterWithError(value_, err, find);
}

}  // namespace ZelCameraApi::Internal
