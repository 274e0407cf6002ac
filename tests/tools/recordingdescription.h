// The description of the recording camera (recordingcamera.cpp). A register of four bytes for each
// feature; registers that belong to a trigger are 0x10 apart.
#pragma once

namespace Recording {

constexpr const char* kDescription = R"(<?xml version="1.0" encoding="utf-8"?>
<RegisterDescription ModelName="Recording" VendorName="Tests" ToolTip="A camera that writes down what is done to it"
    StandardNameSpace="None" SchemaMajorVersion="1" SchemaMinorVersion="1" SchemaSubMinorVersion="0"
    MajorVersion="1" MinorVersion="0" SubMinorVersion="0"
    ProductGuid="5C2A3C11-7A53-4E5B-9B57-0D6C4E0E1F01" VersionGuid="5C2A3C11-7A53-4E5B-9B57-0D6C4E0E1F02"
    xmlns="http://www.genicam.org/GenApi/Version_1_1">
  <Category Name="Root">
    <pFeature>TLParamsLocked</pFeature>
    <pFeature>AcquisitionStart</pFeature>
    <pFeature>AcquisitionStop</pFeature>
    <pFeature>AcquisitionAbort</pFeature>
    <pFeature>PayloadSize</pFeature>
    <pFeature>AcquisitionMode</pFeature>
    <pFeature>AcquisitionFrameCount</pFeature>
    <pFeature>TriggerSelector</pFeature>
    <pFeature>TriggerMode</pFeature>
    <pFeature>TriggerSource</pFeature>
    <pFeature>ExposureTime</pFeature>
    <pFeature>Width</pFeature>
    <pFeature>Height</pFeature>
    <pFeature>EventSelector</pFeature>
  </Category>

  <Integer Name="TLParamsLocked">
    <Visibility>Invisible</Visibility>
    <pValue>TLParamsLockedReg</pValue>
    <Min>0</Min>
    <Max>1</Max>
  </Integer>
  <IntReg Name="TLParamsLockedReg">
    <Address>0x100</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>
  </IntReg>

  <Command Name="AcquisitionStart">
    <pValue>AcquisitionStartReg</pValue>
    <CommandValue>1</CommandValue>
  </Command>
  <IntReg Name="AcquisitionStartReg">
    <Address>0x104</Address><Length>4</Length><AccessMode>WO</AccessMode><pPort>Device</pPort>
    <Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>
  </IntReg>
  <Command Name="AcquisitionStop">
    <pIsAvailable>DevicePoweredReg</pIsAvailable>
    <pValue>AcquisitionStopReg</pValue>
    <CommandValue>1</CommandValue>
  </Command>
  <IntReg Name="AcquisitionStopReg">
    <Address>0x108</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>
  </IntReg>
  <IntReg Name="DevicePoweredReg">
    <Address>0x300</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>
    <Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>
  </IntReg>
  <Command Name="AcquisitionAbort">
    <pValue>AcquisitionAbortReg</pValue>
    <CommandValue>1</CommandValue>
  </Command>
  <IntReg Name="AcquisitionAbortReg">
    <Address>0x10C</Address><Length>4</Length><AccessMode>WO</AccessMode><pPort>Device</pPort>
    <Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>
  </IntReg>

  <IntReg Name="PayloadSize">
    <Address>0x110</Address><Length>4</Length><AccessMode>RO</AccessMode><pPort>Device</pPort>
    <Cachable>NoCache</Cachable><Endianess>LittleEndian</Endianess>
  </IntReg>

  <Enumeration Name="AcquisitionMode">
    <EnumEntry Name="EnumEntry_AcquisitionMode_Continuous"><Value>0</Value><Symbolic>Continuous</Symbolic></EnumEntry>
    <EnumEntry Name="EnumEntry_AcquisitionMode_MultiFrame"><Value>1</Value><Symbolic>MultiFrame</Symbolic></EnumEntry>
    <pValue>AcquisitionModeReg</pValue>
  </Enumeration>
  <IntReg Name="AcquisitionModeReg">
    <Address>0x114</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <IntReg Name="AcquisitionFrameCount">
    <Address>0x118</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>

  <Enumeration Name="TriggerSelector">
    <EnumEntry Name="EnumEntry_TriggerSelector_FrameStart"><Value>0</Value><Symbolic>FrameStart</Symbolic></EnumEntry>
    <EnumEntry Name="EnumEntry_TriggerSelector_LineStart"><Value>1</Value><Symbolic>LineStart</Symbolic></EnumEntry>
    <pValue>TriggerSelectorReg</pValue>
    <pSelected>TriggerMode</pSelected>
    <pSelected>TriggerSource</pSelected>
  </Enumeration>
  <IntReg Name="TriggerSelectorReg">
    <Address>0x120</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Enumeration Name="TriggerMode">
    <EnumEntry Name="EnumEntry_TriggerMode_Off"><Value>0</Value><Symbolic>Off</Symbolic></EnumEntry>
    <EnumEntry Name="EnumEntry_TriggerMode_On"><Value>1</Value><Symbolic>On</Symbolic></EnumEntry>
    <pValue>TriggerModeReg</pValue>
  </Enumeration>
  <IntReg Name="TriggerModeReg">
    <Address>0x200</Address><pIndex Offset="0x10">TriggerSelectorReg</pIndex>
    <Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Enumeration Name="TriggerSource">
    <EnumEntry Name="EnumEntry_TriggerSource_Line0"><Value>0</Value><Symbolic>Line0</Symbolic></EnumEntry>
    <EnumEntry Name="EnumEntry_TriggerSource_Line1"><Value>1</Value><Symbolic>Line1</Symbolic></EnumEntry>
    <pValue>TriggerSourceReg</pValue>
  </Enumeration>
  <IntReg Name="TriggerSourceReg">
    <Address>0x204</Address><pIndex Offset="0x10">TriggerSelectorReg</pIndex>
    <Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>

  <Float Name="ExposureTime">
    <Streamable>Yes</Streamable>
    <pValue>ExposureTimeReg</pValue>
    <Unit>us</Unit>
  </Float>
  <IntReg Name="ExposureTimeReg">
    <Address>0x124</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Integer Name="Width">
    <Streamable>Yes</Streamable>
    <pValue>WidthReg</pValue>
  </Integer>
  <IntReg Name="WidthReg">
    <Address>0x128</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>
  <Integer Name="Height">
    <Streamable>Yes</Streamable>
    <pValue>HeightReg</pValue>
  </Integer>
  <IntReg Name="HeightReg">
    <Address>0x12C</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>
    <Endianess>LittleEndian</Endianess>
  </IntReg>

  <Enumeration Name="EventSelector">
    <EnumEntry Name="EnumEntry_EventSelector_Test"><Value>0</Value><Symbolic>Test</Symbolic></EnumEntry>
    <Value>0</Value>
  </Enumeration>

  <Port Name="Device"/>
</RegisterDescription>
)";

}  // namespace Recording
