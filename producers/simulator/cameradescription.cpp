#include "producers/simulator/cameradescription.h"

#include <set>
#include <string>

#include "producers/simulator/camera.h"
#include "producers/simulator/eventmessage.h"
#include "producers/simulator/placeholders.h"

namespace ZelSim {

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

const char* StandardNameSpace(const std::string& tlType) {
    if (tlType == TLTypeGEVName) return "GEV";
    if (tlType == TLTypeU3VName) return "USB";
    if (tlType == TLTypeCLName) return "CL";
    return "None";
}

const char* Endianess(ByteOrder order) {
    return order == ByteOrder::Big ? "BigEndian" : "LittleEndian";
}

void DescribeEvents(const std::string& tlType, Placeholders& values) {
    const EventForm form = EventFormOf(tlType);
    values.Text("EVENT_ENDIANESS", Endianess(form.order));
    values.Text("EVENT_TIMESTAMP_ADDRESS", std::to_string(form.timestampAddress));
    values.Text("EVENT_FRAME_ID_ADDRESS", std::to_string(form.frameIdAddress));
}

std::string EnumEntry(const std::string& name, const std::string& toolTip, uint64_t value) {
    return "<EnumEntry Name=\"" + name + "\"><ToolTip>" + toolTip + "</ToolTip><Value>" +
           std::to_string(value) + "</Value></EnumEntry>\n";
}

void DescribePixels(Placeholders& values) {
    std::string formats;
    std::set<unsigned> sizes;
    for (const PixelFormat& format : AllPixelFormats()) {
        const std::string toolTip = std::to_string(format.BitsPerPixel()) + " bits a pixel.";
        formats += EnumEntry(format.name, toolTip, format.value);
        sizes.insert(format.BitsPerPixel());
    }
    std::string sizeEntries;
    for (const unsigned size : sizes) {
        const std::string bits = std::to_string(size);
        sizeEntries += EnumEntry("Bpp" + bits, bits + " bits.", size);
    }
    values.Xml("PIXEL_FORMATS", formats);
    values.Xml("PIXEL_SIZES", sizeEntries);
}

// The fragment cameragev.xml holds more features for the category of the transport.
void DescribeTransport(const std::string& tlType, Placeholders& values) {
    const bool gev = tlType == TLTypeGEVName;
    values.Xml("GEV_FEATURES", "");
    if (gev) {
        values.List(
            "GEV_FEATURES", "pFeature",
            {"GevSCPSPacketSize", "GevSCPD", "GevHeartbeatTimeout", "GevTimestampTickFrequency"});
    }
    values.Xml("GEV_NODES", gev ? "@cameragev.xml@" : "");
}

}  // namespace

std::unique_ptr<const Description> MakeCameraDescription(const Camera& camera) {
    const CameraConfig& config = camera.Config();
    Placeholders values;
    values.Text("VENDOR", NameOf(config.vendor));
    values.Text("MODEL", NameOf(config.model));
    values.Text("STANDARD", StandardNameSpace(camera.TlType()));
    values.Text("ENDIANESS", Endianess(camera.Registers()->Order()));
    DescribePixels(values);
    DescribeTransport(camera.TlType(), values);
    DescribeEvents(camera.TlType(), values);
    return std::make_unique<Description>(NameOf(config.model), values.FillIn("camera.xml"),
                                         Description::Form::Xml);
}

}  // namespace ZelSim
