#include "producers/simulator/features/cameradescription.h"

#include <string>

#include "producers/simulator/camera/camera.h"

namespace ZelSim {

using ZelCti::Description;
using ZelCti::DescriptionHeader;
using ZelCti::FeatureTable;

namespace {

// A text as a name that descriptions and file systems take.
std::string NameOf(std::string text) {
    for (char& c : text) {
        const bool plain =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        if (!plain) c = '_';
    }
    return text;
}

Description::Form FormOf(const CameraConfig& config) {
    const bool isArchive =
        config.network && (config.network->zip || config.network->urlForm == UrlForm::UpperCaseZip);
    return isArchive ? Description::Form::Zip : Description::Form::Xml;
}

const char* StandardNameSpace(const std::string& tlType) {
    if (tlType == TLTypeGEVName) return "GEV";
    if (tlType == TLTypeU3VName) return "USB";
    if (tlType == TLTypeCLName) return "CL";
    return "None";
}

}  // namespace

std::unique_ptr<const Description> DescribeCamera(const Camera& camera,
                                                  const FeatureTable& features) {
    DescriptionHeader header;
    header.modelName = NameOf(camera.Config().model);
    header.vendorName = NameOf(camera.Config().vendor);
    header.toolTip = "Features of a simulated camera";
    header.standardNameSpace = StandardNameSpace(camera.TlType());
    header.productGuid = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D50";
    header.versionGuid = "6D1C4B70-52A8-4E0F-9C31-0A7E5B2F9D5F";
    return std::make_unique<Description>(header.modelName, features.Describe(header),
                                         FormOf(camera.Config()));
}

}  // namespace ZelSim
