// The codes of failures, through access by name and through a parameter object.
#include "ZelCameraApi/ZelGenParam/genapierrors.h"

#include <stdexcept>

#include "tests/library/support/camera.h"

using namespace ZelCameraApi::Internal;
using namespace ZelGenParam;

namespace {

// The codes of a failure by name and of a parameter object.
struct Codes {
    ZelCamErr byName;
    ZelCamErr byParam;
};

void ExpectCodes(void (*fail)(), ValueAccess access, const Codes& expected) {
    try {
        fail();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::exception&) {
        EXPECT_EQ(CodeOfParamAccess(access), expected.byParam);
        EXPECT_THROW(CodeOfNamedAccess(access), std::exception);
    } catch (const GenICam::GenericException& e) {
        EXPECT_EQ(CodeOfNamedAccess(access), expected.byName) << e.what();
        EXPECT_EQ(CodeOfParamAccess(access), expected.byParam) << e.what();
    }
}

}  // namespace

TEST(GenApiErrors, OneExceptionHasACodeEachWay) {
    const struct {
        void (*fail)();
        Codes reading;
        Codes writing;
    } rows[] = {{[] { throw ACCESS_EXCEPTION("refused"); },
                 {ZelCamErr_AccessDenied, ZelCamErr_AccessDenied},
                 {ZelCamErr_AccessDenied, ZelCamErr_AccessDenied}},
                {[] { throw OUT_OF_RANGE_EXCEPTION("refused"); },
                 {ZelCamErr_GenApiError, ZelCamErr_Error},
                 {ZelCamErr_OutOfRange, ZelCamErr_OutOfRange}},
                {[] { throw INVALID_ARGUMENT_EXCEPTION("refused"); },
                 {ZelCamErr_InvalidValue, ZelCamErr_InvalidArgument},
                 {ZelCamErr_InvalidValue, ZelCamErr_InvalidArgument}},
                {[] { throw TIMEOUT_EXCEPTION("refused"); },
                 {ZelCamErr_GenApiError, ZelCamErr_Error},
                 {ZelCamErr_GenApiError, ZelCamErr_Error}},
                {[] { throw std::runtime_error("refused"); },
                 {ZelCamErr_Success, ZelCamErr_Error},
                 {ZelCamErr_Success, ZelCamErr_Error}}};
    for (const auto& row : rows) {
        ExpectCodes(row.fail, ValueAccess::Read, row.reading);
        ExpectCodes(row.fail, ValueAccess::Write, row.writing);
    }
}

// A null `err` changes nothing else.
TEST_F(CameraTest, FailedAccessesHaveACodeEachWay) {
    Int* const param = array->GetInt("Int", &err);
    port.result = GenTL::GC_ERR_INVALID_HANDLE;
    EXPECT_EQ(array->GetIntegerValue("Int", nullptr), 0);
    EXPECT_EQ(array->GetIntegerValue("Int", &err), 0);
    EXPECT_EQ(err, ZelCamErr_InvalidValue);
    EXPECT_EQ(param->GetValue(nullptr), 0);
    EXPECT_EQ(param->GetValue(&err), 0);
    EXPECT_EQ(err, ZelCamErr_InvalidArgument);
    port.result = GenTL::GC_ERR_IO;
    EXPECT_EQ(array->SetIntegerValue("Int", 20), ZelCamErr_GenApiError);
    EXPECT_EQ(param->SetValue(20), ZelCamErr_Error);
}

// Whatever is out of range then, it is not the caller's value.
TEST_F(CameraTest, ReadingHasNoOutOfRange) {
    EXPECT_EQ(array->GetIntegerValue("NoLength", &err), 0);
    EXPECT_EQ(err, ZelCamErr_GenApiError);
    Int* const param = array->GetInt("NoLength", nullptr);
    EXPECT_EQ(param->GetValue(&err), 0);
    EXPECT_EQ(err, ZelCamErr_Error);
    EXPECT_EQ(array->SetIntegerValue("NoLength", 0), ZelCamErr_OutOfRange);
    EXPECT_EQ(param->SetValue(0), ZelCamErr_OutOfRange);
}

TEST_F(CameraTest, RefusedValuesHaveACodeEachWay) {
    for (const int64_t value : {9, 101, 52}) {
        EXPECT_EQ(array->SetIntegerValue("Int", value), ZelCamErr_OutOfRange);
        EXPECT_EQ(array->GetInt("Int", nullptr)->SetValue(value), ZelCamErr_OutOfRange);
    }
    EXPECT_EQ(array->SetFloatValue("Float", 2.5), ZelCamErr_OutOfRange);
    EXPECT_EQ(array->SetStringValue("String", "too long for it"), ZelCamErr_OutOfRange);
    EXPECT_EQ(array->GetString("String", nullptr)->SetValue("too long for it"),
              ZelCamErr_OutOfRange);

    Enum* const choice = array->GetEnum("Enum", nullptr);
    EXPECT_EQ(array->SetEnumValue("Enum", 3), ZelCamErr_InvalidValue);
    EXPECT_EQ(choice->SetValue(3), ZelCamErr_InvalidArgument);
    for (const char* const name : {"Three", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(array->SetEnumValueStr("Enum", name), ZelCamErr_InvalidValue);
        EXPECT_EQ(choice->SetValueStr(name), ZelCamErr_InvalidArgument);
    }

    EXPECT_EQ(array->SetIntegerValue("ReadOnly", 3), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetInt("ReadOnly", nullptr)->SetValue(3), ZelCamErr_AccessDenied);
    array->GetIntegerValue("Hidden", &err);
    EXPECT_EQ(err, ZelCamErr_AccessDenied);
    array->GetInt("Hidden", nullptr)->GetMin(&err);
    EXPECT_EQ(err, ZelCamErr_AccessDenied);
}
