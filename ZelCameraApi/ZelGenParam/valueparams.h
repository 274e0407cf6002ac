// Parameter objects of features with one plain value, and of commands.
#pragma once

#include "ZelCameraApi/ZelGenParam/paramimpl.h"

namespace ZelCameraApi::Internal {

class IntParamImpl final : public ZelGenParam::Int, public TypedParamImpl<GenApi::IInteger> {
  public:
    using TypedParamImpl::TypedParamImpl;
    ZelCamErr SetValue(int64_t value) override;
    int64_t GetValue(ZelCamErr* err) override;
    int64_t GetMin(ZelCamErr* err) override;
    int64_t GetMax(ZelCamErr* err) override;
    int64_t GetIncrement(ZelCamErr* err) override;
};

class FloatParamImpl final : public ZelGenParam::Float, public TypedParamImpl<GenApi::IFloat> {
  public:
    using TypedParamImpl::TypedParamImpl;
    ZelCamErr SetValue(double value) override;
    double GetValue(ZelCamErr* err) override;
    double GetMin(ZelCamErr* err) override;
    double GetMax(ZelCamErr* err) override;
    const char* GetUnit(ZelCamErr* err) override;
};

class StringParamImpl final : public ZelGenParam::String, public TypedParamImpl<GenApi::IString> {
  public:
    using TypedParamImpl::TypedParamImpl;
    int64_t GetMaxLength(ZelCamErr* err) override;
    const char* GetValue(size_t* length, ZelCamErr* err) override;
    ZelCamErr SetValue(const char* value) override;
};

class BooleanParamImpl final : public ZelGenParam::Boolean,
                               public TypedParamImpl<GenApi::IBoolean> {
  public:
    using TypedParamImpl::TypedParamImpl;
    ZelCamErr SetValue(bool value) override;
    bool GetValue(ZelCamErr* err) override;
};

class CommandParamImpl final : public ZelGenParam::Command,
                               public TypedParamImpl<GenApi::ICommand> {
  public:
    using TypedParamImpl::TypedParamImpl;
    ZelCamErr Execute() override;
    bool IsDone(ZelCamErr* err) override;
};

}  // namespace ZelCameraApi::Internal
