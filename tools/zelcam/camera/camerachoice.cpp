#include "tools/zelcam/camera/camerachoice.h"

#include <algorithm>
#include <iostream>

#include "tools/zelcam/console/failure.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

std::string Lines(const std::vector<const Camera*>& cameras) {
    std::string text;
    for (const Camera* camera : cameras) {
        text += "\n  " + std::to_string(camera->number) + "  " + camera->Description() + " on " +
                Printable(camera->interfaceId);
        if (!camera->producerName.empty()) text += " of " + Printable(camera->producerName);
    }
    return text;
}

bool IsNamed(const Camera& camera, const std::string& wanted) {
    return camera.id == wanted || camera.serial == wanted || camera.userName == wanted;
}

// The rest of `wanted` after "PRODUCER/" for the camera's own producer; empty without such a
// prefix.
std::string InProducer(const Camera& camera, const std::string& wanted) {
    for (const std::string& producer : {camera.producerName, camera.producer}) {
        const std::string prefix = producer + "/";
        if (!producer.empty() && wanted.compare(0, prefix.size(), prefix) == 0) {
            return wanted.substr(prefix.size());
        }
    }
    return "";
}

std::vector<const Camera*> Named(const std::vector<Camera>& cameras, const std::string& wanted) {
    std::vector<const Camera*> found;
    for (const Camera& camera : cameras) {
        const std::string inProducer = InProducer(camera, wanted);
        const bool named =
            IsNamed(camera, wanted) || (!inProducer.empty() && IsNamed(camera, inProducer));
        if (wanted.empty() || named) found.push_back(&camera);
    }
    return found;
}

std::vector<const Camera*> Matching(const std::vector<Camera>& cameras, const std::string& wanted) {
    std::vector<const Camera*> found = Named(cameras, wanted);
    if (!found.empty()) return found;
    const auto numbered = std::find_if(cameras.begin(), cameras.end(), [&](const Camera& camera) {
        return std::to_string(camera.number) == wanted;
    });
    if (numbered != cameras.end()) found.push_back(&*numbered);
    return found;
}

// Whether this can be the name of a feature, or a glob for it.
bool MayBeFeature(const std::string& word) {
    constexpr const char* kDigits = "0123456789";
    constexpr const char* kPossible =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_:*?[]!";
    return word.find_first_of(kDigits) != 0 &&
           word.find_first_not_of(kPossible) == std::string::npos;
}

bool IsEnoughFor(const Session& session, const std::string& wanted) {
    if (!Named(session.Cameras(), wanted).empty()) return true;
    return !session.MayLackCameras() && !Matching(session.Cameras(), wanted).empty();
}

// Throws for a failed producer that the user named, and warns of one from a folder.
void ReportFailedProducers(const Session& session) {
    for (const Producer& producer : session.Producers()) {
        if (producer.state != Producer::State::Failed) continue;
        const std::string message = "producer " + producer.file + ": " + producer.reason;
        if (producer.origin != Producer::Origin::Environment) {
            throw Failure(ExitCode::NoProducer, message);
        }
        std::cerr << "zelcam: warning: " << PrintableLines(message) << '\n';
    }
}

[[noreturn]] void FailWithoutCamera(const Session& session) {
    std::string message = "no camera was found; `zelcam list` shows what to check";
    if (session.CouldAskForSimulated()) {
        message += ". --simulated uses a simulated camera (in other programs: ZELSIM=1)";
    }
    throw Failure(ExitCode::NoCamera, message);
}

const Camera& SelectOne(const Session& session, const std::string& wanted) {
    if (session.Cameras().empty()) FailWithoutCamera(session);
    const Camera& camera = ChooseCamera(session.Cameras(), wanted);
    if (!camera.simulated || session.AsksForSimulated()) return camera;
    if (wanted.empty() && session.HasRealProducer()) {
        throw Failure(ExitCode::NoCamera,
                      "no real camera was found, only simulated ones; `zelcam list` shows what to "
                      "check. --simulated uses a simulated camera");
    }
    if (wanted.empty() || wanted == std::to_string(camera.number)) {
        std::cerr << "zelcam: note: camera " << Printable(camera.id) << " is simulated\n";
    }
    return camera;
}

}  // namespace

const Camera& ChooseCamera(const std::vector<Camera>& cameras, const std::string& wanted) {
    const std::vector<const Camera*> found = Matching(cameras, wanted);
    if (found.empty()) {
        throw Failure(ExitCode::NoCamera,
                      "there is no camera \"" + wanted +
                          "\"; these were found:" + Lines(Matching(cameras, "")));
    }
    if (found.size() > 1 && !wanted.empty()) {
        throw Failure(ExitCode::NoCamera, "\"" + wanted +
                                              "\" matches several cameras; choose one by its "
                                              "number here, or as PRODUCER/CAMERA:" +
                                              Lines(found));
    }
    return *found.front();
}

Session::Enough EnoughToSelect(const std::vector<std::string>& wanted) {
    if (wanted.empty()) return EnoughToSelect({""});
    return [wanted](const Session& session) {
        return std::all_of(wanted.begin(), wanted.end(),
                           [&](const std::string& name) { return IsEnoughFor(session, name); });
    };
}

Session::Enough EnoughToTake(const std::vector<std::string>& words, size_t others) {
    if (words.empty()) return EnoughToSelect({});
    const std::string& first = words.front();
    return EnoughToSelect({words.size() > others || !MayBeFeature(first) ? first : ""});
}

std::string TakeCamera(const std::vector<Camera>& cameras, std::vector<std::string>& words,
                       size_t others) {
    if (words.empty()) return "";
    if (words.size() <= others && Matching(cameras, words.front()).empty()) return "";
    std::string camera = words.front();
    words.erase(words.begin());
    return camera;
}

const Camera& SelectCamera(const Session& session, const std::string& wanted) {
    ReportFailedProducers(session);
    return SelectOne(session, wanted);
}

std::vector<const Camera*> SelectCameras(const Session& session,
                                         const std::vector<std::string>& wanted) {
    ReportFailedProducers(session);
    if (wanted.empty()) return {&SelectOne(session, "")};
    std::vector<const Camera*> cameras;
    for (const std::string& name : wanted) {
        const Camera* const camera = &SelectOne(session, name);
        if (std::find(cameras.begin(), cameras.end(), camera) != cameras.end()) {
            throw Failure(ExitCode::Usage, "camera \"" + name + "\" is given twice");
        }
        cameras.push_back(camera);
    }
    return cameras;
}

}  // namespace ZelTool
