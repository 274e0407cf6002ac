// Configuration files: the features of a camera, and which camera they were taken from.
//
//     <Camera ifaceId="..." cameraId="...">
//         <Config><![CDATA[...]]></Config>     the features, as the text of a GenApi feature bag
//     </Camera>
//
// Where the text has "]]>" in it, there are several sections one behind the other.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include <GenApi/GenApi.h>
#include <tinyxml2.h>

#include "ZelCam/Error.h"

namespace ZelCameraApi::Internal {

// Writes a configuration file, see ReplaceFile. Whether that works is not reported.
void WriteConfigurationFile(const char* fileName, const char* ifaceId, const char* cameraId,
                            const std::string& features);

// Like XMLDocument::LoadFile of a name, which leaves the file open where there is no memory for its
// content.
tinyxml2::XMLError LoadXmlFile(const char* fileName, tinyxml2::XMLDocument& document);

// Names of the attributes.
constexpr const char* kInterfaceId = "ifaceId";
constexpr const char* kCameraId = "cameraId";

// An attribute of "Camera"; null when the document has none.
const char* GetCameraAttribute(const tinyxml2::XMLDocument& document, const char* name);

// All text in "Config", which may be empty; nothing when the document has no such element.
std::optional<std::string> GetFeatureText(const tinyxml2::XMLDocument& document);

// The streamable features of a camera as text. Throws what GenApi throws.
std::string StoreFeatures(GenApi::INodeMap* nodeMap);

// Sets the features that a text tells, and verifies them. ZelCamErr_InvalidFile when the text
// cannot be read, ZelCamErr_LoadConfigFailed when a feature does not take its value; the others are
// set all the same.
ZelCamErr LoadFeatures(std::istream& text, GenApi::INodeMap* nodeMap);

}  // namespace ZelCameraApi::Internal
