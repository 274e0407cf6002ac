#include "ZelCameraApi/configurationfile.h"

#include <cstdio>
#include <memory>
#include <sstream>

#include <tinyxml2.h>

#include "utils/replacefile.h"

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

// A CDATA section ends at the first "]]>", so a "]]>" of the text is split between two sections.
void AppendCData(tinyxml2::XMLDocument& document, tinyxml2::XMLNode& parent,
                 const std::string& text) {
    for (size_t begin = 0, end = 0; end != std::string::npos; begin = end) {
        end = text.find("]]>", begin);
        if (end != std::string::npos) end += 2;
        const std::string part = text.substr(begin, end - begin);
        tinyxml2::XMLText* const section = document.NewText(part.c_str());
        section->SetCData(true);
        parent.InsertEndChild(section);
    }
}

bool ReadBag(std::istream& text, GenApi::CFeatureBag& bag) {
    try {
        text >> bag;
        return true;
    } catch (...) {  // a stream may throw anything, always for the same reason
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
    AppendCData(document, *AppendElement(document, *camera, kConfig), features);
    tinyxml2::XMLPrinter printer;
    document.Print(&printer);
    ZelUtil::ReplaceFile(fileName, {printer.CStr(), static_cast<size_t>(printer.CStrSize() - 1)});
}

tinyxml2::XMLError LoadXmlFile(const char* fileName, tinyxml2::XMLDocument& document) {
    if (fileName == nullptr) return tinyxml2::XML_ERROR_FILE_COULD_NOT_BE_OPENED;
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(fileName, "rb"), &std::fclose);
    return file != nullptr ? document.LoadFile(file.get()) : tinyxml2::XML_ERROR_FILE_NOT_FOUND;
}

const char* GetCameraAttribute(const tinyxml2::XMLDocument& document, const char* name) {
    const tinyxml2::XMLElement* const camera = document.FirstChildElement(kCamera);
    return camera != nullptr ? camera->Attribute(name) : nullptr;
}

std::optional<std::string> GetFeatureText(const tinyxml2::XMLDocument& document) {
    const tinyxml2::XMLElement* const camera = document.FirstChildElement(kCamera);
    if (camera == nullptr) return std::nullopt;
    const tinyxml2::XMLElement* const config = camera->FirstChildElement(kConfig);
    if (config == nullptr) return std::nullopt;
    std::string text;
    for (auto* part = config->FirstChild(); part != nullptr; part = part->NextSibling())
        if (part->ToText() != nullptr) text += part->Value();
    return text;
}

std::string StoreFeatures(GenApi::INodeMap* nodeMap) {
    GenApi::CFeatureBag bag;
    bag.StoreToBag(nodeMap, -1, nullptr);
    std::ostringstream text;
    text.exceptions(std::ios_base::badbit);  // or a truncated text would be saved
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
