// Configuration files: the features of a camera, and the identifiers of this camera.
//
//     <Camera ifaceId="..." cameraId="...">
//         <Config><![CDATA[...]]></Config>     the features, as the text of a GenApi feature bag
//     </Camera>
//
// If the text contains "]]>", there are several sections one after the other.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include <GenApi/GenApi.h>
#include <tinyxml2.h>

#include "ZelCam/Error.h"

namespace ZelCameraApi::Internal {

// Writes a configuration file, see ZelUtil::ReplaceFile. It does not report failures.
void WriteConfigurationFile(const char* fileName, const char* ifaceId, const char* cameraId,
                            const std::string& features);

// Like XMLDocument::LoadFile with a name, which would leave the file open if there is no memory for
// its content.
tinyxml2::XMLError LoadXmlFile(const char* fileName, tinyxml2::XMLDocument& document);

// Names of the attributes.
constexpr const char* kInterfaceId = "ifaceId";
constexpr const char* kCameraId = "cameraId";

// An attribute of "Camera"; null if the document has no such attribute.
const char* GetCameraAttribute(const tinyxml2::XMLDocument& document, const char* name);

// All text in "Config", which may be empty; nothing if the document has no such element.
std::optional<std::string> GetFeatureText(const tinyxml2::XMLDocument& document);

// The streamable features of a camera as text. Throws what GenApi throws.
std::string StoreFeatures(GenApi::INodeMap* nodeMap);

// Sets the features of a text and verifies them. ZelCamErr_InvalidFile if the text cannot be read,
// ZelCamErr_LoadConfigFailed if a feature refuses its value; the others are still set.
ZelCamErr LoadFeatures(std::istream& text, GenApi::INodeMap* nodeMap);

}  // namespace ZelCameraApi::Internal
