#include "fuzz/library/camera.h"

#include <cstdlib>

namespace Fuzz {

const char* const kCameraDescription = R"(<RegisterDescription ModelName="M" VendorName="V"
    StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="00000000-0000-0000-0000-000000000001"
    VersionGuid="00000000-0000-0000-0000-000000000002"
    xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root">
    <pFeature>Width</pFeature><pFeature>Gain</pFeature><pFeature>Selector</pFeature>
    <pFeature>UserId</pFeature><pFeature>Reverse</pFeature><pFeature>Frame</pFeature>
  </Category>
  <Integer Name="Width"><Streamable>Yes</Streamable><pValue>WidthReg</pValue>
    <Min>16</Min><Max>4096</Max><Inc>16</Inc></Integer>
  <IntReg Name="WidthReg"><Address>0x0</Address><Length>4</Length><AccessMode>RW</AccessMode>
    <pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>
  <Float Name="Gain"><Streamable>Yes</Streamable><pValue>GainReg</pValue><Min>0</Min><Max>24</Max>
  </Float>
  <FloatReg Name="GainReg"><Address>0x8</Address><pIndex Offset="8">SelectorReg</pIndex>
    <Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess></FloatReg>
  <Enumeration Name="Selector"><Streamable>Yes</Streamable>
    <EnumEntry Name="All"><Value>0</Value></EnumEntry><EnumEntry Name="Red"><Value>1</Value></EnumEntry>
    <pValue>SelectorReg</pValue><pSelected>Gain</pSelected></Enumeration>
  <IntReg Name="SelectorReg"><Address>0x80</Address><Length>4</Length>
    <AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess></IntReg>
  <StringReg Name="UserId"><Streamable>Yes</Streamable><Address>0x100</Address><Length>16</Length>
    <AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>
  <Boolean Name="Reverse"><Streamable>Yes</Streamable><pValue>ReverseReg</pValue></Boolean>
  <MaskedIntReg Name="ReverseReg"><Address>0x120</Address><Length>4</Length>
    <AccessMode>RW</AccessMode><pPort>Device</pPort><Bit>3</Bit><Sign>Unsigned</Sign>
    <Endianess>LittleEndian</Endianess></MaskedIntReg>
  <Port Name="Device"/>
  <Port Name="Event"><EventID>9001</EventID></Port>
  <IntReg Name="Frame"><Address>8</Address><Length>8</Length><AccessMode>RO</AccessMode>
    <pPort>Event</pPort><Endianess>LittleEndian</Endianess></IntReg>
</RegisterDescription>)";

Camera::Camera(const std::string& tlType) {
    port.texts[GenTL::PORT_INFO_TLTYPE] = tlType;
    port.Announce(kCameraDescription);
    features = ZelCameraApi::Internal::CreateArray(port.Module(), nullptr, nullptr);
    if (features == nullptr) std::abort();
    nodeMap = features->GetNodeMap(nullptr);
}

}  // namespace Fuzz
