// What malformed messages are refused with; what the others show, the adapters' tests say.
#include "genapi/adapters/eventmessages.h"

#include <algorithm>
#include <memory>
#include <string>

#include <Base/GCException.h>
#include <gmock/gmock.h>

#include "tests/genapi/adapters/messages.h"

using namespace GENAPI_NAMESPACE;
using namespace GENAPI_NAMESPACE::Engine;

namespace {

using namespace test;

// The text of the RuntimeException, empty without one. The message lies at the end of a heap block
// of its own, where a sanitizer sees what is read behind it.
template <class Parse>
std::string Refusal(Parse parse, const Bytes& message) {
    const auto copy = std::make_unique<uint8_t[]>(message.size());
    std::copy(message.begin(), message.end(), copy.get());
    try {
        parse(copy.get(), static_cast<uint32_t>(message.size()));
    } catch (const GENICAM_NAMESPACE::RuntimeException& e) {
        return e.GetDescription();
    }
    return {};
}

std::string GevRefusal(const Bytes& message) {
    return Refusal(ParseGevMessage, message);
}

std::string U3vRefusal(const Bytes& message) {
    return Refusal(ParseU3vMessage, message);
}

const char kTooSmall[] = "Malformed message - too small";

Bytes With(Bytes message, size_t at, uint8_t value) {
    message.at(at) = value;
    return message;
}

Bytes Cut(Bytes message, size_t size) {
    message.resize(size);
    return message;
}

TEST(EventMessagesTest, GevRefusals) {
    EXPECT_EQ(GevRefusal({}), kTooSmall);
    EXPECT_THROW(ParseGevMessage(nullptr, 24), GENICAM_NAMESPACE::RuntimeException);
    for (size_t size = 0; size < kGevEvents.size(); ++size) {
        EXPECT_EQ(GevRefusal(Cut(kGevEvents, size)), kTooSmall) << size;
    }
    EXPECT_EQ(GevRefusal(With(kGevEvents, 5, 0x0F)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevEvents, 0, 0x43)),
              "Malformed message - wrong magic 43 (42 expected)");
    EXPECT_EQ(GevRefusal(With(kGevEvents, 3, 0x80)), "Malformed message - unknown tag 8000");
    // Items that end too early or too late.
    EXPECT_EQ(GevRefusal(With(kGevEvents, 25, 0x01)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevEvents, 25, 0x15)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevEvents, 8, 0xFF)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevExtended, 5, 0x17)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevExtended, 9, 0x10)), kTooSmall);  // an item of 16 bytes
    EXPECT_EQ(GevRefusal(With(kGevEventData, 5, 0x13)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevEventData, 1, 0x10)), kTooSmall);  // extended wants 28
}

TEST(EventMessagesTest, GevItemsFollowEachOtherBySize) {
    Bytes message = kGevEvents;
    std::rotate(message.begin() + 8, message.begin() + 24, message.end());  // the longer one first
    const auto items = ParseGevMessage(message.data(), static_cast<uint32_t>(message.size()));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].id, 0x9C0A);
    EXPECT_EQ(items[1].id, 0x9001);
}

TEST(EventMessagesTest, GevIgnoresWhatFollows) {
    Bytes longer = kGevEvents;
    longer.resize(100, 0xFF);
    EXPECT_EQ(ParseGevMessage(longer.data(), 100).size(), 2u);
    // Half an item at the end of the items themselves.
    EXPECT_EQ(ParseGevMessage(With(kGevEvents, 5, 0x14).data(), 44).size(), 1u);
}

TEST(EventMessagesTest, U3vRefusals) {
    EXPECT_THROW(ParseU3vMessage(nullptr, 26), GENICAM_NAMESPACE::RuntimeException);
    for (size_t size = 0; size < 24; ++size) {
        EXPECT_EQ(U3vRefusal(Cut(kU3vEvent, size)), kTooSmall) << size;
    }
    EXPECT_EQ(U3vRefusal(With(kU3vEvent, 8, 0x0B)), kTooSmall);
    EXPECT_EQ(U3vRefusal(With(kU3vEvent, 0, 0x00)),
              "Malformed message - wrong prefix 45563300 (45563355 expected)");
    EXPECT_EQ(U3vRefusal(With(kU3vEvent, 6, 0x01)),
              "Malformed message - wrong command ID c01 (c00 expected)");
    EXPECT_EQ(U3vRefusal(Cut(kU3vEvent, 25)),
              "Malformed message - reported length larger than message size");
}

}  // namespace
