#include "producers/simulator/config/configparser.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <type_traits>

#include <tinyxml2.h>

#include "gentl/GenTL.h"
#include "producers/server/base/error.h"
#include "producers/simulator/config/poweronsettings.h"

namespace ZelSim {

using ZelCti::Error;
using ZelCti::IpSettings;
using ZelCti::ParseIpAddress;

namespace {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

constexpr const char* kDefaultConfig = R"(<ZelSim>
  <Interface id="GEV0" type="GEV" displayName="Simulated network adapter">
    <Camera id="GEV0-CAM0" model="Mono VGA" serial="1001" userName="Left" pixelFormat="Mono8"/>
    <Camera id="GEV0-CAM1" model="Colour VGA" serial="1002" userName="Right" pixelFormat="BayerRG8"/>
  </Interface>
  <Interface id="U3V0" type="U3V" displayName="Simulated USB3 host">
    <Camera id="U3V0-CAM0" model="Colour VGA USB3" serial="2001" pixelFormat="BGR8"/>
  </Interface>
</ZelSim>)";

// Where in a text the parser is, for its messages.
struct Place {
    const std::string& source;
    int line;

    [[noreturn]] void Fail(const std::string& reason) const {
        throw Error(GenTL::GC_ERR_INVALID_PARAMETER,
                    source + ":" + std::to_string(line) + ": " + reason);
    }
};

// The text of one attribute, and where it stands.
struct Value {
    std::string_view key;
    std::string_view text;
    Place place;

    [[noreturn]] void Refuse(const std::string& expected) const {
        place.Fail(std::string(key) + "=\"" + std::string(text) + "\": " + expected + " expected");
    }
};

template <typename T>
T Number(const Value& value, T lowest, T highest) {
    T number{};
    const char* const end = value.text.data() + value.text.size();
    const auto [stop, error] = std::from_chars(value.text.data(), end, number);
    // The negated form also refuses "nan".
    if (error != std::errc{} || stop != end || !(number >= lowest && number <= highest)) {
        std::ostringstream range;
        range << "a number from " << lowest << " to " << highest;
        value.Refuse(range.str());
    }
    return number;
}

bool Boolean(const Value& value) {
    if (value.text != "true" && value.text != "false") value.Refuse("true or false");
    return value.text == "true";
}

Pattern PatternOf(const Value& value) {
    constexpr std::pair<std::string_view, Pattern> kNames[] = {
        {"ColorBars", Pattern::ColorBars},
        {"GradientHorizontal", Pattern::GradientHorizontal},
        {"GradientDiagonal", Pattern::GradientDiagonal},
        {"Black", Pattern::Black},
        {"White", Pattern::White}};
    for (const auto& [name, pattern] : kNames) {
        if (value.text == name) return pattern;
    }
    value.Refuse("ColorBars, GradientHorizontal, GradientDiagonal, Black or White");
}

PayloadForm PayloadOf(const Value& value) {
    constexpr std::pair<std::string_view, PayloadForm> kNames[] = {
        {"Image", PayloadForm::Image},
        {"MultiPart", PayloadForm::MultiPart},
        {"GenDC", PayloadForm::GenDc}};
    for (const auto& [name, form] : kNames) {
        if (value.text == name) return form;
    }
    value.Refuse("Image, MultiPart or GenDC");
}

bool IsFreeRunning(const Value& value) {
    if (value.text != "on-command" && value.text != "free-running") {
        value.Refuse("on-command or free-running");
    }
    return value.text == "free-running";
}

const PixelFormat* FormatOf(const Value& value) {
    const PixelFormat* const format = FindPixelFormat(value.text);
    if (format == nullptr) value.Refuse("the PFNC name of a supported format");
    return format;
}

std::string TransportType(const Value& value) {
    constexpr std::string_view kTypes[] = {TLTypeGEVName, TLTypeU3VName, TLTypeCLName,
                                           TLTypeCXPName, "HDSDI",       TLTypeCustomName};
    if (std::find(std::begin(kTypes), std::end(kTypes), value.text) == std::end(kTypes)) {
        value.Refuse("GEV, U3V, CL, CXP, HDSDI or Custom");
    }
    return std::string(value.text);
}

template <typename Config>
struct Key {
    std::string_view name;
    std::function<void(Config&, const Value&)> set;
};

template <typename Config>
Key<Config> Text(std::string_view name, std::string Config::*member) {
    return {name, [=](Config& c, const Value& v) { c.*member = std::string(v.text); }};
}

template <typename T, typename Owner>
Key<CameraConfig> Numeric(std::string_view name, T Owner::*member, T lowest, T highest) {
    return {name, [=](CameraConfig& c, const Value& v) { c.*member = Number(v, lowest, highest); }};
}

Key<CameraConfig> Flag(std::string_view name, bool CameraConfig::*member) {
    return {name, [=](CameraConfig& c, const Value& v) { c.*member = Boolean(v); }};
}

Key<CameraConfig> IpAddress(std::string_view name, uint32_t IpSettings::*member) {
    return {name, [=](CameraConfig& c, const Value& v) {
                const std::optional<uint32_t> address = ParseIpAddress(v.text);
                if (!address) v.Refuse("an address like 192.168.0.1");
                c.ip.*member = *address;
            }};
}

void SetAlignment(CameraConfig& camera, const Value& value) {
    camera.bufAlignment = Number(value, 1U, 1U << 20);
    if ((camera.bufAlignment & (camera.bufAlignment - 1)) != 0) value.Refuse("a power of two");
}

std::vector<Key<CameraConfig>> CameraKeys() {
    using C = CameraConfig;
    constexpr uint32_t kAny = std::numeric_limits<uint32_t>::max();
    return {
        Text("id", &C::id),
        Text("vendor", &C::vendor),
        Text("model", &C::model),
        Text("serial", &C::serial),
        Text("userName", &C::userName),
        Text("version", &C::version),
        Text("usbHostInfo", &C::usbHostInfo),
        Numeric("width", &C::width, 1U, 65536U),
        Numeric("height", &C::height, 1U, 65536U),
        Numeric("offsetX", &C::offsetX, 0U, 65536U),
        Numeric("offsetY", &C::offsetY, 0U, 65536U),
        Numeric("xPadding", &C::xPadding, 0U, 65536U),
        Numeric("yPadding", &C::yPadding, 0U, 65536U),
        Numeric("imageOffset", &C::imageOffset, 0U, 1U << 20),
        {"pixelFormat", [](C& c, const Value& v) { c.pixelFormat = FormatOf(v); }},
        {"pattern", [](C& c, const Value& v) { c.pattern = PatternOf(v); }},
        {"payload", [](C& c, const Value& v) { c.payload = PayloadOf(v); }},
        Numeric("frameRate", &C::frameRate, 0.0, 1e6),
        {"acquisition", [](C& c, const Value& v) { c.freeRunning = IsFreeRunning(v); }},
        Numeric("linkSpeed", &C::linkSpeed, uint64_t{1000000}, uint64_t{1000000000000}),
        Numeric("incompleteEvery", &C::incompleteEvery, 0U, kAny),
        Numeric("dropEvery", &C::dropEvery, 0U, kAny),
        Flag("noFill", &C::noFill),
        Flag("framePairs", &C::framePairs),
        Flag("definesPayloadSize", &C::definesPayloadSize),
        Flag("bigEndian", &C::bigEndian),
        Numeric("streams", &C::streams, 0U, 16U),
        Numeric("bufAnnounceMin", &C::bufAnnounceMin, 1U, 1024U),
        {"bufAlignment", SetAlignment},
        Numeric("flashBusyTime", &C::flashBusyTime, 0U, 60000U),
        Numeric("timestampFrequency", &C::timestampFrequency, uint64_t{1}, uint64_t{1000000000}),
        IpAddress("ip", &IpSettings::address),
        IpAddress("mask", &IpSettings::mask),
        IpAddress("gateway", &IpSettings::gateway),
        Text("descriptionFile", &C::descriptionFile),
        Text("descriptionUrl", &C::descriptionUrl)};
}

std::vector<Key<InterfaceConfig>> InterfaceKeys() {
    using I = InterfaceConfig;
    return {Text("id", &I::id),
            {"type", [](I& i, const Value& v) { i.type = TransportType(v); }},
            Text("displayName", &I::displayName),
            Text("version", &I::version)};
}

template <typename Config>
void ReadAttributes(const XMLElement& element, const std::vector<Key<Config>>& keys,
                    const std::string& source, Config& config) {
    for (const XMLAttribute* a = element.FirstAttribute(); a != nullptr; a = a->Next()) {
        const Place place{source, a->GetLineNum()};
        const std::string_view name = a->Name();
        const auto key = std::find_if(keys.begin(), keys.end(),
                                      [&](const Key<Config>& k) { return k.name == name; });
        if (key == keys.end()) {
            place.Fail(std::string(element.Name()) + " has no key \"" + a->Name() + "\"");
        }
        key->set(config, Value{name, a->Value(), place});
    }
    if (config.id.empty()) {
        Place{source, element.GetLineNum()}.Fail(std::string(element.Name()) + " without id");
    }
}

// Calls `visit` for each child element, all of which must have this name.
void ForEachChild(const XMLElement& parent, const char* name, const std::string& source,
                  const std::function<void(const XMLElement&)>& visit) {
    for (const XMLNode* n = parent.FirstChild(); n != nullptr; n = n->NextSibling()) {
        if (n->ToComment() != nullptr) continue;
        const XMLElement* const element = n->ToElement();
        if (element == nullptr || std::string_view(element->Name()) != name) {
            Place{source, n->GetLineNum()}.Fail(std::string(parent.Name()) + " holds only " + name +
                                                " elements");
        }
        visit(*element);
    }
}

NetworkSettings NetworkOf(const XMLElement& element, const std::string& source) {
    NetworkSettings settings;
    for (const XMLAttribute* a = element.FirstAttribute(); a != nullptr; a = a->Next()) {
        try {
            NetworkSwitches::Set(settings, a->Name(), a->Value());
        } catch (const Error& error) {
            Place{source, a->GetLineNum()}.Fail(error.what());
        }
    }
    if (!element.NoChildren()) Place{source, element.GetLineNum()}.Fail("Network holds nothing");
    return settings;
}

CameraConfig CameraOf(const XMLElement& element, const std::string& source) {
    static const auto kKeys = CameraKeys();
    CameraConfig camera;
    ReadAttributes(element, kKeys, source, camera);
    const Place place{source, element.GetLineNum()};
    ForEachChild(element, "Network", source, [&](const XMLElement& network) {
        if (camera.network) {
            Place{source, network.GetLineNum()}.Fail("Camera holds one Network element only");
        }
        camera.network = NetworkOf(network, source);
    });
    const PixelFormat& format = *camera.pixelFormat;
    if (!format.AcceptsWidth(camera.width)) {
        place.Fail("width=\"" + std::to_string(camera.width) + "\": lines of " + format.name +
                   " are not whole bytes at this width");
    }
    if (camera.payload != PayloadForm::Image && camera.imageOffset != 0)
        place.Fail("imageOffset: frames with parts begin with the first of them");
    if (PowerOnSettings(camera).PayloadSize() > kMaxPayload)
        place.Fail("a frame is larger than 1 GiB");
    return camera;
}

// Refuses the second use of an identifier.
void ClaimId(std::set<std::string>& used, const std::string& id, const XMLElement& element,
             const std::string& source) {
    if (used.insert(id).second) return;
    Place{source, element.GetLineNum()}.Fail("id=\"" + id + "\" is used twice");
}

// The root element of a text.
const XMLElement& Parse(XMLDocument& document, const std::string& text, const char* name,
                        const std::string& source) {
    if (document.Parse(text.c_str(), text.size()) != tinyxml2::XML_SUCCESS) {
        Place{source, document.ErrorLineNum()}.Fail(std::string("not well-formed XML: ") +
                                                    document.ErrorName());
    }
    const XMLElement* const root = document.RootElement();
    if (root == nullptr || std::string_view(root->Name()) != name) {
        Place{source, root == nullptr ? 1 : root->GetLineNum()}.Fail(
            std::string("the root element must be ") + name);
    }
    return *root;
}

}  // namespace

WorldConfig ParseConfig(const std::string& text, const std::string& source) {
    static const auto kKeys = InterfaceKeys();
    XMLDocument document;
    const XMLElement& root = Parse(document, text, "ZelSim", source);
    WorldConfig world;
    std::set<std::string> interfaceIds;
    std::set<std::string> cameraIds;
    ForEachChild(root, "Interface", source, [&](const XMLElement& element) {
        InterfaceConfig& interface = world.interfaces.emplace_back();
        ReadAttributes(element, kKeys, source, interface);
        ClaimId(interfaceIds, interface.id, element, source);
        if (interface.type.empty()) {
            Place{source, element.GetLineNum()}.Fail("Interface without type");
        }
        if (interface.displayName.empty()) interface.displayName = interface.id;
        ForEachChild(element, "Camera", source, [&](const XMLElement& camera) {
            interface.cameras.push_back(CameraOf(camera, source));
            ClaimId(cameraIds, interface.cameras.back().id, camera, source);
        });
    });
    return world;
}

CameraConfig ParseCamera(const std::string& text, const std::string& source) {
    XMLDocument document;
    return CameraOf(Parse(document, text, "Camera", source), source);
}

WorldConfig DefaultConfig() {
    return ParseConfig(kDefaultConfig, "built-in configuration");
}

}  // namespace ZelSim
