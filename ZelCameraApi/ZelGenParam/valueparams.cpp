#include "ZelCameraApi/ZelGenParam/valueparams.h"

#include "ZelCameraApi/ZelGenParam/paramaccess.h"

namespace ZelCameraApi::Internal {

using GenApi::IBoolean;
using GenApi::ICommand;
using GenApi::IFloat;
using GenApi::IInteger;
using GenApi::IString;

ZelCamErr IntParamImpl::SetValue(int64_t value) {
    return ParamSetter(value_, [=](IInteger& i) { i.SetValue(value, true); });
}

int64_t IntParamImpl::GetValue(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IInteger& i) { return i.GetValue(); });
}

int64_t IntParamImpl::GetMin(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IInteger& i) { return i.GetMin(); });
}

int64_t IntParamImpl::GetMax(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IInteger& i) { return i.GetMax(); });
}

int64_t IntParamImpl::GetIncrement(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IInteger& i) { return i.GetInc(); });
}

ZelCamErr FloatParamImpl::SetValue(double value) {
    return ParamSetter(value_, [=](IFloat& f) { f.SetValue(value, true); });
}

double FloatParamImpl::GetValue(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IFloat& f) { return f.GetValue(); });
}

double FloatParamImpl::GetMin(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IFloat& f) { return f.GetMin(); });
}

double FloatParamImpl::GetMax(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IFloat& f) { return f.GetMax(); });
}

const char* FloatParamImpl::GetUnit(ZelCamErr* err) {
    return ParamGetterWithError(value_, err,
                                [this](IFloat& f) { return texts_.Keep("GetUnit", f.GetUnit()); });
}

int64_t StringParamImpl::GetMaxLength(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IString& s) { return s.GetMaxLength(); });
}

const char* StringParamImpl::GetValue(size_t* length, ZelCamErr* err) {
    size_t read = 0;
    const char* const text = ParamGetterWithError(value_, err, [&](IString& s) {
        const GenICam::gcstring value = s.GetValue();
        read = value.size();
        return texts_.Keep("GetValue", value);
    });
    if (length != nullptr) *length = read;
    return text;
}

ZelCamErr StringParamImpl::SetValue(const char* value) {
    return ParamSetter(value_, [=](IString& s) { s.SetValue(value, true); });
}

ZelCamErr BooleanParamImpl::SetValue(bool value) {
    return ParamSetter(value_, [=](IBoolean& b) { b.SetValue(value, true); });
}

bool BooleanParamImpl::GetValue(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](IBoolean& b) { return b.GetValue(); });
}

ZelCamErr CommandParamImpl::Execute() {
    return ParamSetter(value_, [](ICommand& c) { c.Execute(true); });
}

bool CommandParamImpl::IsDone(ZelCamErr* err) {
    return ParamGetterWithError(value_, err, [](ICommand& c) { return c.IsDone(true); });
}

}  // namespace ZelCameraApi::Internal
