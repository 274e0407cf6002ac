// Event messages of a hostile device, for all adapters.
//
// The first byte of an input chooses the adapter: 0 GigE Vision, 1 USB3 Vision, 2 generic with a
// number as id, 3 generic with a text. The generic ones take the id from the input: eight bytes, or
// the length of the text and the text. The rest is the message. GenericException is the only answer
// to a bad message; everything else is a finding.

#include <cstddef>
#include <cstdint>

#include <Base/GCException.h>
#include <GenApi/EventAdapterGEV.h>
#include <GenApi/EventAdapterGeneric.h>
#include <GenApi/EventAdapterU3V.h>
#include <GenApi/NodeMapRef.h>
#include <GenApi/Pointer.h>

#include "fuzz/message.h"

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::gcstring;

namespace {

const char kDescription[] = R"(<RegisterDescription ModelName="M" VendorName="V"
    StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="00000000-0000-0000-0000-000000000001"
    VersionGuid="00000000-0000-0000-0000-000000000002"
    xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root"><pFeature>Start</pFeature><pFeature>Far</pFeature></Category>
  <Integer Name="Note"><EventID>9001</EventID><Value>1</Value></Integer>
  <Port Name="One"><EventID>9001</EventID></Port>
  <Port Name="Padded"><EventID>00009001</EventID></Port>
  <Port Name="Other"><EventID>9c0A</EventID></Port>
  <Port Name="Zero"><EventID>0000</EventID></Port>
  <IntReg Name="Start"><Address>0</Address><Length>8</Length><AccessMode>RO</AccessMode>
    <pPort>One</pPort><Endianess>BigEndian</Endianess></IntReg>
  <IntReg Name="Far"><Address>0xFFF8</Address><Length>8</Length><AccessMode>RO</AccessMode>
    <pPort>Other</pPort><Endianess>LittleEndian</Endianess></IntReg>
  <IntReg Name="Nothing"><Address>16</Address><Length>4</Length><AccessMode>RO</AccessMode>
    <pPort>Zero</pPort><Endianess>LittleEndian</Endianess></IntReg>
</RegisterDescription>)";

template <class Adapter, class... Id>
void Deliver(INodeMap& map, const Fuzz::Message& message, const Id&... id) {
    Adapter adapter(&map);
    try {
        adapter.DeliverMessage(message.data, static_cast<uint32_t>(message.size), id...);
    } catch (const GENICAM_NAMESPACE::GenericException&) {
        // refusing the input is right; only a crash or a hang is a fault
    }
    for (const char* name : {"Start", "Far", "Nothing"}) {
        try {
            CIntegerPtr(map.GetNode(name))->GetValue();
        } catch (const GENICAM_NAMESPACE::GenericException&) {
            // likewise
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static CNodeMapRef map;
    if (map._Ptr == nullptr) map._LoadXMLFromString(kDescription);
    Fuzz::Message input{data, size};
    switch (input.Number(1) % 4) {
        case 0:
            Deliver<CEventAdapterGEV>(*map._Ptr, input);
            break;
        case 1:
            Deliver<CEventAdapterU3V>(*map._Ptr, input);
            break;
        case 2: {
            const uint64_t id = input.Number(8);
            Deliver<CEventAdapterGeneric>(*map._Ptr, input, id);
            break;
        }
        default: {
            const Fuzz::Message id = input.Take(input.Number(1));
            Deliver<CEventAdapterGeneric>(
                *map._Ptr, input, gcstring(reinterpret_cast<const char*>(id.data), id.size));
        }
    }
    return 0;
}
