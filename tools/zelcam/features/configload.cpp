#include "tools/zelcam/features/configload.h"

#include <iostream>
#include <sstream>

#include <GenApi/GenApi.h>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/features/featuresetting.h"
#include "tools/zelcam/features/featurevalue.h"

namespace ZelTool {

namespace {

constexpr const char* kUserNameFeature = "DeviceUserID";

// False when there is none.
bool RemoveUserName(std::string& text) {
    const std::string begin = std::string("\n") + kUserNameFeature + "\t";
    const size_t at = text.find(begin);
    if (at == std::string::npos) return false;
    const size_t end = text.find('\n', at + 1);
    text.erase(at, end == std::string::npos ? end : end - at);
    return true;
}

std::string Between(const std::string& text, size_t begin, const std::string& end) {
    const size_t at = text.find(end, begin);
    return text.substr(begin, at == std::string::npos ? at : at - begin);
}

// Extracts feature and reason from a message of the engine such as
// "Error while writing node 'Width': REASON : OutOfRangeException thrown in node ..."
LoadFailure Understood(const std::string& message) {
    const size_t quote = message.find('\'');
    if (quote == std::string::npos) return {"", message};
    const std::string feature = Between(message, quote + 1, "'");
    const size_t behind = quote + feature.size() + 2;
    if (behind >= message.size()) return {feature, message};
    std::string reason = message.substr(message.find_first_not_of(":. ", behind));
    const size_t source = reason.find("Exception thrown");
    if (source != std::string::npos) reason.resize(reason.rfind(" : ", source));
    return {feature, reason.substr(0, reason.find_last_not_of(' ') + 1)};
}

// Converts the values of a configuration, which may have units, to texts that the features accept.
class Translation {
  public:
    explicit Translation(ZelGenParam::Array& features) : features_(features) {}

    void Line(const std::string& line) {
        const size_t tab = line.find('\t');
        if (line.empty() || line.front() == '#' || tab == std::string::npos) {
            text_ += line + '\n';
            return;
        }
        const std::string name = line.substr(0, tab);
        ZelGenParam::Param* const feature = features_.GetParam(name.c_str(), nullptr);
        const std::string value = line.substr(tab + 1);
        try {
            text_ +=
                name + '\t' + (feature == nullptr ? value : SettingText(*feature, value)) + '\n';
        } catch (const Failure& failure) {
            // Without the selector, the following settings would go to the wrong place.
            if (IsSelector(*feature)) {
                throw Failure(ExitCode::FeatureFailed, "nothing was loaded: the value of " + name +
                                                           " is not valid: " + failure.what());
            }
            failures_.push_back({name, failure.what()});
        }
    }

    const std::string& Text() const { return text_; }
    std::vector<LoadFailure>& Failures() { return failures_; }

  private:
    ZelGenParam::Array& features_;
    std::string text_;
    std::vector<LoadFailure> failures_;  // settings that the text leaves out
};

}  // namespace

std::vector<LoadFailure> LoadSettings(OpenedCamera& camera, Configuration configuration,
                                      bool withUserName) {
    const bool isOther = configuration.camera != camera.Info().id;
    if (isOther && !withUserName && RemoveUserName(configuration.text)) {
        std::cerr << "zelcam: note: " << kUserNameFeature << " is not loaded because "
                  << (configuration.camera.empty() ? "the file may come from another camera"
                                                   : "it is the name of another camera")
                  << "; --user-name loads it\n";
    }
    Translation translation(camera.Features(Module::Camera));
    for (const std::string& line : LinesOf(configuration.text))
        translation.Line(line);
    std::vector<LoadFailure>& failures = translation.Failures();
    try {
        GenApi::CFeatureBag bag;
        std::istringstream(translation.Text()) >> bag;
        GenICam::gcstring_vector messages;
        bag.LoadFromBag(&NodeMapOf(camera), true, &messages);
        for (size_t i = 0; i < messages.size(); ++i)
            failures.push_back(Understood(messages[i].c_str()));
        return failures;
    } catch (const GenICam::GenericException& error) {
        throw Failure(ExitCode::FeatureFailed,
                      std::string("the configuration cannot be loaded: ") + error.GetDescription());
    }
}

}  // namespace ZelTool
