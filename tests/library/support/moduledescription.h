// A description that serves every module of the scripted producer: the features of an interface of
// GigE Vision cameras, and those of a camera with an event.
#pragma once

#include <cstring>

#include "tests/genapi/support/description.h"
#include "tests/library/support/fixture.h"

namespace Description {

// Registers of 4 bytes, little endian. Two cameras can be selected; `Camera` is the configuration
// of the first, 16 bytes each.
enum Register : uint64_t {
    Selector = 0x100,
    Camera = 0x110,  // address, mask, gateway
    Force = 0x140,   // likewise
    ForceCommand = 0x14C,
    Identifier = 0x180,  // of the first camera, 16 bytes each
    Width = 0x200,
    Height = 0x204,
    PixelFormat = 0x208,
    PayloadSize = 0x20C
};

inline std::string Feature(const std::string& name, int address, const std::string& limits = "",
                           const std::string& kind = "Integer") {
    return test::IntReg(name + "Reg", address) +
           test::Named(
               kind, name,
               test::Element("Streamable", "Yes") + test::Element("pValue", name + "Reg") + limits);
}

inline std::string OfSelected(const std::string& name, int address) {
    return test::IntReg(name, address, "<pIndex Offset='16'>DeviceSelector</pIndex>");
}

// The fields of an event message, big endian or as `order` says.
inline std::string EventField(const std::string& name, int address, int length,
                              const std::string& order) {
    return test::Named("IntReg", name,
                       test::RegisterAt(address, length, "RO", "EventPort") + order);
}

// The identifier of the selected camera, which not every interface tells.
inline std::string DeviceID() {
    return test::Named("StringReg", "DeviceID",
                       test::RegisterAt(test::Element("Address", static_cast<int>(Identifier)) +
                                            "<pIndex Offset='16'>DeviceSelector</pIndex>",
                                        16, "RO"));
}

// `payloadSize` is the name of the feature that tells it, `more` are further nodes.
inline std::string Xml(const std::string& payloadSize = "PayloadSize",
                       const std::string& more = "") {
    const std::string interface = Feature("DeviceSelector", Selector, "<Min>0</Min><Max>1</Max>") +
                                  OfSelected("GevDeviceIPAddress", Camera) +
                                  OfSelected("GevDeviceSubnetMask", Camera + 4) +
                                  OfSelected("GevDeviceGateway", Camera + 8) +
                                  test::IntReg("GevDeviceForceIPAddress", Force) +
                                  test::IntReg("GevDeviceForceSubnetMask", Force + 4) +
                                  test::IntReg("GevDeviceForceGateway", Force + 8) +
                                  test::IntReg("GevDeviceForceIPReg", ForceCommand) +
                                  test::Over("GevDeviceForceIP", "GevDeviceForceIPReg",
                                             "<CommandValue>1</CommandValue>", "Command");
    const std::string camera =
        "<Category Name='Root'><pFeature>Width</pFeature><pFeature>Height</pFeature>"
        "<pFeature>PixelFormat</pFeature></Category>" +
        Feature("Width", Width, "<Min>0</Min><Max>1000</Max>") + Feature("Height", Height) +
        test::IntReg("PixelFormatReg", PixelFormat) +
        test::Named("Enumeration", "PixelFormat",
                    "<Streamable>Yes</Streamable>" + test::Entry("Mono8", 0x01080001) +
                        test::Entry("Mono12p", 0x010C0047) + "<pValue>PixelFormatReg</pValue>") +
        test::IntReg(payloadSize, PayloadSize);
    const std::string event = "<Port Name='EventPort'><EventID>9001</EventID></Port>" +
                              EventField("GevBlock", 6, 2, test::kBig) +
                              EventField("U3vTimestamp", 4, 8, test::kLittle);
    return test::Document(interface + camera + event + test::kPort + more);
}

inline void Poke(Scripted::Control& producer, uint64_t address, uint32_t value) {
    std::memcpy(producer.GetRegisters().data() + address, &value, sizeof value);
}

inline uint32_t Peek(Scripted::Control& producer, uint64_t address) {
    uint32_t value = 0;
    std::memcpy(&value, producer.GetRegisters().data() + address, sizeof value);
    return value;
}

}  // namespace Description
