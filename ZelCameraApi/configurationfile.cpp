#include "ZelCameraApi/configurationfile.h"

#include <sstream>

#include <tinyxml2.h>

namespace ZelCameraApi::Internal {

namespace {

constexpr const char* kCamera = "Camera";
constexpr const char* kConfig = "Config";

tinyxml2::XMLElement* AppendElement(tinyxml2::XMLDocument& document, tinyxml2::XMLNode& parent,
                                    const char* name) {
    tinyxml2::XMLElement* const element = document.NewElement(name);
    parent.InsertEndChild(element);
    return element;
}

bool ReadBag(std::istream& text, GenApi::CFeatureBag& bag) {
    try {
        text >> bag;
        return true;
    } catch (...) {  // a stream may throw anything, and each means the same
        return false;
    }
}

}  // namespace

void WriteConfigurationFile(const char* fileName, const char* ifaceId, const char* cameraId,
                            const std::string& features) {
    tinyxml2::XMLDocument document;
    tinyxml2::XMLElement* const camera = AppendElement(document, document, kCamera);
    camera->SetAttribute(kInterfaceId, ifaceId);
    camera->SetAttribute(kCameraId, cameraId);
    tinyxml2::XMLText* const text = document.NewText(features.c_str());
    text->SetCData(true);
    AppendElement(document, *camera, kConfig)->InsertEndChild(text);
    document.SaveFile(fileName, false);
}

const char* GetCameraAttribute(const tinyxml2::XMLDocument& document, const char* name) {
    const tinyxml2::XMLElement* const camera = document.FirstChildElement(kCamera);
    return camera != nullptr ? camera->Attribute(name) : nullptr;
}

const char* GetFeatureText(const tinyxml2::XMLDocument& document) {
    const tinyxml2::XMLElement* const camera = document.FirstChildElement(kCamera);
    if (camera == nullptr) return nullptr;
    const tinyxml2::XMLElement* const config = camera->FirstChildElement(kConfig);
    if (config == nullptr) return nullptr;
    const char* const text = config->GetText();
    return text != nullptr ? text : "";
}

std::string StoreFeatures(GenApi::INodeMap* nodeMap) {
    GenApi::CFeatureBag bag;
    bag.StoreToBag(nodeMap, -1, nullptr);
    std::ostringstream text;
    text << bag;
    return text.str();
}

ZelCamErr LoadFeatures(std::istream& text, GenApi::INodeMap* nodeMap) {
    GenApi::CFeatureBag bag;
    if (!ReadBag(text, bag)) return ZelCamErr_InvalidFile;
    try {
        GenICam::gcstring_vector errors;
        const bool loaded = bag.LoadFromBag(nodeMap, true, &errors);
        return loaded ? ZelCamErr_Success : ZelCamErr_LoadConfigFailed;
    } catch (const GenICam::GenericException&) {
        return ZelCamErr_LoadConfigFailed;
    }
}

}  // namespace ZelCameraApi::Internal
