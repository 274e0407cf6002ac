// The texts of GenTL codes, and the exception that carries a code.
#include "ZelCameraApi/base/gentl_error.h"

#include <climits>
#include <utility>

#include <gtest/gtest.h>

#include "ZelCam/Error.h"

using namespace ZelCameraApi::Internal;

TEST(GentlError, TextsAreThoseOfTheStandard) {
    const std::pair<int, const char*> texts[] = {
        {0, "Success"},
        {-1001, "Unspecified runtime error."},
        {-1002, "Module or resource not initialized."},
        {-1003, "Requested operation not implemented."},
        {-1004, "Requested resource is already in use."},
        {-1005, "Requested operation is not allowed."},
        {-1006, "Given handle does not support the operation."},
        {-1007, "ID could not be connected to a resource"},
        {-1008, "The function has no data to work on."},
        {-1009, "One of the parameter given was not valid or out of range."},
        {-1010, "Communication error has occurred."},
        {-1011, "An operation's timeout time expired before it could be completed."},
        {-1012, "An operation has been aborted before it could be completed."},
        {-1013,
         "The GenTL Consumer has not announced enough buffers to start the acquisition in the "
         "currently active acquisition mode."},
        {-1014, "Resource or information is not available at a given time in a current state."},
        {-1015, "A given address is out of range or invalid for internal reasons"},
        {-1016, "Unknown error"},
        {1, "Unknown error"},
        {ZelCamErr_NotFound, "Unknown error"},
        {INT_MIN, "Unknown error"}};
    for (const auto& [code, text] : texts) {
        EXPECT_EQ(_gentl_error_category.message(code), text) << code;
        EXPECT_STREQ(zelcam_exception(code).what(), text) << code;
    }
    EXPECT_STREQ(_gentl_error_category.name(), "gentl");
}

TEST(GentlError, ExceptionCarriesTheCode) {
    const zelcam_exception e(-1011);
    const std::system_error& base = e;
    EXPECT_EQ(base.code().value(), -1011);
    EXPECT_STREQ(base.code().category().name(), "gentl");
    EXPECT_NO_THROW(ThrowOnError(0));
    EXPECT_THROW(ThrowOnError(1), zelcam_exception);  // any code but 0 is a failure
}
