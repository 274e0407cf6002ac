// Names every type of the public headers, so that their binary interface can be read in the debug
// information of this source: see docs/abi.md.

#include "ZelCam/PixelType.h"
#include "ZelCam/ZelCam.h"
#include "ZelGenParam/Array.h"
#include "ZelImage/ZelImage.h"

// Objects behind pointers: what is compared is their tables.
struct PublicTypes {
    ZelCam::System* system;
    ZelCam::Interface* interface;
    ZelCam::DeviceInfo* deviceInfo;
    ZelCam::Device* device;
    ZelCam::Stream* stream;
    ZelCam::Buffer* buffer;
    ZelCam::List<ZelCam::Interface>* interfaces;
    ZelCam::List<ZelCam::DeviceInfo>* deviceInfos;
    ZelGenParam::Array* array;
    ZelGenParam::Param* param;
    ZelGenParam::Int* integer;
    ZelGenParam::Float* floating;
    ZelGenParam::String* text;
    ZelGenParam::Enum* enumeration;
    ZelGenParam::EnumEntry* entry;
    ZelGenParam::Boolean* boolean;
    ZelGenParam::Command* command;
    ZelGenParam::Category* category;
    ZelGenParam::ParamEventSink* sink;
    ZelImageInfo image;
    ZelBufferPart part;
    ZelCam::Device::UploadEventData uploadEvent;
    ZelCam::Device::UploadEventType uploadEventType;
    ZelCam::DeviceAccess access;
    ZelCam::AccessStatus accessStatus;
    ZelCam::EventType eventType;
    ZelCam::InterfaceType interfaceType;
    ZelCam::FlushOperation flushOperation;
    ZelCam::StartFlag startFlag;
    ZelCam::StopFlag stopFlag;
    ZelGenParam::ParamType paramType;
    ZelGenParam::Visibility visibility;
    ZelCamErr error;
    II_PIXEL_TYPE_DEFINES pixelType;
    ZelTrueSensePattern trueSensePattern;
    decltype(&ZelCam_GetSystem) getSystem;
    decltype(&ZelCam_CreateDevice) createDevice;
    ZelImage::FormatInfo formatInfo;
    ZelImage::ConvertOptions convertOptions;
    ZelImage::SaveOptions saveOptions;
    ZelImage::FileType fileType;
    decltype(&ZelImage::FormatName) formatName;
    decltype(&ZelImage::FormatByName) formatByName;
    decltype(&ZelImage::DescribeFormat) describeFormat;
    decltype(&ZelImage::FormatAt) formatAt;
    decltype(&ZelImage::LineBytes) lineBytes;
    decltype(&ZelImage::ImageSize) imageSize;
    decltype(&ZelImage::ConvertedSize) convertedSize;
    decltype(&ZelImage::Convert) convert;
    decltype(&ZelImage::UnpackedSize) unpackedSize;
    decltype(&ZelImage::Unpack) unpack;
    decltype(&ZelImage::FileTypeOf) fileTypeOf;
    decltype(&ZelImage::Encode) encode;
    decltype(&ZelImage::Save) save;
    decltype(&ZelImage::LastReason) lastReason;
};

PublicTypes publicTypes;

// Nothing else asks for their members.
template class ZelCam::List<ZelCam::Interface>;
template class ZelCam::List<ZelCam::DeviceInfo>;
