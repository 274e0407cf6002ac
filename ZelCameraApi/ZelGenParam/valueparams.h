// Parameter objects of features with one plain value, and of commands.
#pragma once

#include "ZelCameraApi/ZelGenParam/paramimpl.h"

namespace ZelCameraApi::Internal {

class IntParamImpl final : public ZelGenParam::Int, public ParamImpl {
  public:
    using ParamImpl::ParamImpl;
    ZelCamErr SetValue(int64_t value) override;
    int64_t GetValue(ZelCamErr* err) override;
    int64_t GetMin(ZelCamErr* err) override;
    int64_t GetMax(ZelCamErr* err) override;
    int64_t GetIncrement(ZelCamErr* err) override;
};

class FloatParamImpl final : public ZelGenParam::Float, public ParamImpl {
  public:
    using ParamImpl::ParamImpl;
    ZelCamErr SetValue(double value) override;
    double GetValue(ZelCamErr* err) override;
    double GetMin(ZelCamErr* err) override;
    double GetMax(ZelCamErr* err) override;
    const char* GetUnit(ZelCamErr* err) override;
};

class StringParamImpl final : public ZelGenParam::String, public ParamImpl {
  public:
    using ParamImpl::ParamImpl;
    int64_t GetMaxLength(ZelCamErr* err) override;
    const char* GetValue(size_t* length, ZelCamErr* err) override;
    ZelCamErr SetValue(const char* value) override;
};

class BooleanParamImpl final : public ZelGenParam::Boolean, public ParamImpl {
  public:
    using ParamImpl::ParamImpl;
    ZelCamErr SetValue(bool value) override;
    bool GetValue(ZelCamErr* err) override;
};

class CommandParamImpl final : public ZelGenParam::Command, public ParamImpl {
  public:
    using ParamImpl::ParamImpl;
    ZelCamErr Execute() override;
    bool IsDone(ZelCamErr* err) override;
};

}  // namespace ZelCameraApi::Internal
