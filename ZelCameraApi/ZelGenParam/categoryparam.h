// Parameter object of a category.
#pragma once

#include "ZelCameraApi/ZelGenParam/paramimpl.h"

namespace ZelCameraApi::Internal {

// Its features are the Array's objects, looked up by name.
class CategoryParamImpl final : public ZelGenParam::Category,
                                public TypedParamImpl<GenApi::ICategory> {
  public:
    using TypedParamImpl::TypedParamImpl;
    uint32_t GetCount() override;
    ZelGenParam::Param* GetParamByIndex(uint32_t index, ZelCamErr* err) override;
};

}  // namespace ZelCameraApi::Internal
