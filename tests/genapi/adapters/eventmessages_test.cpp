#include "genapi/adapters/eventmessages.h"

#include <functional>
#include <memory>
#include <string>

#include <Base/GCException.h>
#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterU3V.h>
#include <gmock/gmock.h>

using namespace GENAPI_NAMESPACE;
using namespace GENAPI_NAMESPACE::Engine;

namespace {

using Bytes = std::vector<uint8_t>;

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
    return Refusal(parseGevMessage, message);
}

std::string U3vRefusal(const Bytes& message) {
    return Refusal(parseU3vMessage, message);
}

const char kTooSmall[] = "Malformed message - too small";

// Two items: one of 16 bytes that does not state its size, one that states 20.
const Bytes kGevEvents = {0x42, 0x01, 0x00, 0xC0, 0x00, 0x24, 0x12, 0x34,  //
                          0x00, 0x00, 0x90, 0x01, 0xFF, 0xFF, 0x00, 0x07,  //
                          0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x02,  //
                          0x00, 0x14, 0x90, 0x02, 0x00, 0x00, 0x00, 0x08,  //
                          0x00, 0x00, 0x00, 0x03, 0x00, 0x00, 0x00, 0x04,  //
                          0xDE, 0xAD, 0xBE, 0xEF};
const Bytes kGevEventData = {0x42, 0x00, 0x00, 0xC2, 0x00, 0x14, 0x00, 0x01,  //
                             0x00, 0x00, 0x00, 0x05, 0x00, 0x00, 0x00, 0x09,  //
                             0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x2A,  //
                             0x01, 0x02, 0x03, 0x04};
const Bytes kU3vEvent = {0x55, 0x33, 0x56, 0x45, 0x00, 0x00, 0x00, 0x0C,  //
                         0x0E, 0x00, 0x07, 0x00,                          //
                         0x00, 0x00, 0x43, 0x9C,                          //
                         0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01,  //
                         0xAA, 0xBB};

Bytes With(Bytes message, size_t at, uint8_t value) {
    message.at(at) = value;
    return message;
}

Bytes Cut(Bytes message, size_t size) {
    message.resize(size);
    return message;
}

TEST(EventMessagesTest, StructuresAreAsOnTheWire) {
    EXPECT_EQ(sizeof(GVCP_REQUEST_HEADER), 8u);
    EXPECT_EQ(sizeof(GVCP_EVENT_ITEM_BASIC), 4u);
    EXPECT_EQ(sizeof(GVCP_EVENT_ITEM), 16u);
    EXPECT_EQ(sizeof(GVCP_EVENT_ITEM_EXTENDED_ID), 24u);
    EXPECT_EQ(offsetof(GVCP_EVENTDATA_REQUEST, Data), 24u);
    EXPECT_EQ(offsetof(GVCP_EVENTDATA_REQUEST_EXTENDED_ID, Data), 32u);
    EXPECT_EQ(sizeof(U3V_COMMAND_HEADER), 12u);
    EXPECT_EQ(sizeof(U3V_EVENT_MESSAGE), 24u);
}

TEST(EventMessagesTest, GevItemsOfDifferentSizes) {
    const auto items = parseGevMessage(kGevEvents.data(), static_cast<uint32_t>(kGevEvents.size()));
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].id, 0x9001);
    EXPECT_EQ(items[0].data, kGevEvents.data() + 8);
    EXPECT_EQ(items[0].size, 16u);
    EXPECT_FALSE(items[0].statesSize);
    EXPECT_EQ(items[1].id, 0x9002);
    EXPECT_EQ(items[1].data, kGevEvents.data() + 24);
    EXPECT_EQ(items[1].size, 20u);
    EXPECT_TRUE(items[1].statesSize);
}

TEST(EventMessagesTest, GevItemsWithExtendedIds) {
    Bytes message = {0x42, 0x10, 0x00, 0xC0, 0x00, 0x18, 0x00, 0x01, 0x00, 0x00, 0x90, 0x03};
    message.resize(8 + 24);
    const auto items = parseGevMessage(message.data(), 32);
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].id, 0x9003);
    EXPECT_EQ(items[0].size, 24u);

    EXPECT_EQ(GevRefusal(With(message, 5, 0x17)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(message, 9, 0x10)), kTooSmall);  // an item of 16 bytes
}

TEST(EventMessagesTest, GevEventDataIsOneEvent) {
    const auto items =
        parseGevMessage(kGevEventData.data(), static_cast<uint32_t>(kGevEventData.size()));
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].id, 5);
    EXPECT_EQ(items[0].size, 20u);

    EXPECT_EQ(GevRefusal(With(kGevEventData, 5, 0x13)), kTooSmall);
    EXPECT_EQ(GevRefusal(With(kGevEventData, 1, 0x10)), kTooSmall);  // extended wants 28
}

TEST(EventMessagesTest, GevRefusals) {
    EXPECT_EQ(GevRefusal({}), kTooSmall);
    EXPECT_THROW(parseGevMessage(nullptr, 24), GENICAM_NAMESPACE::RuntimeException);
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
}

TEST(EventMessagesTest, GevIgnoresWhatFollows) {
    Bytes longer = kGevEvents;
    longer.resize(100, 0xFF);
    EXPECT_EQ(parseGevMessage(longer.data(), 100).size(), 2u);
    // Half an item at the end of the items themselves.
    EXPECT_EQ(parseGevMessage(With(kGevEvents, 5, 0x14).data(), 44).size(), 1u);
}

TEST(EventMessagesTest, U3vMessageIsOneEvent) {
    const EventItem item =
        parseU3vMessage(kU3vEvent.data(), static_cast<uint32_t>(kU3vEvent.size()));
    EXPECT_EQ(item.id, 0x9C43);
    EXPECT_EQ(item.data, kU3vEvent.data() + 12);
    EXPECT_EQ(item.size, 14u);
    // The first field is no size.
    EXPECT_TRUE(item.statesSize);
}

TEST(EventMessagesTest, U3vRefusals) {
    EXPECT_THROW(parseU3vMessage(nullptr, 26), GENICAM_NAMESPACE::RuntimeException);
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
