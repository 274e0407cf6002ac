// zelcam doctor: finds out why there is no camera, no frame or a loss, and what to do.

#include <iomanip>
#include <iostream>

#include "tools/zelcam/camera/camerachoice.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/commands/commands.h"
#include "tools/zelcam/console/interrupt.h"
#include "tools/zelcam/console/jsontext.h"
#include "tools/zelcam/console/printable.h"
#include "tools/zelcam/console/texttable.h"
#include "tools/zelcam/doctor/adapterreader.h"
#include "tools/zelcam/doctor/camerareader.h"
#include "tools/zelcam/doctor/diagnosis.h"
#include "tools/zelcam/doctor/machinereader.h"
#include "tools/zelcam/doctor/trial.h"

namespace ZelTool {

namespace {

// Looks at everything before and after the search and the trial, which cause what is counted.
class Examination {
  public:
    explicit Examination(const CameraOptions& options)
        : countsBefore_(ReadKernelCounts()), options_(options) {
        snapshot_.machine = ReadMachine();
        snapshot_.wanted = options.camera;
        snapshot_.asksForSimulated = options.simulated;
        if (!options.simulated) snapshot_.adapters = ReadAdapters();
    }

    Snapshot Result() {
        const Session session(options_);
        snapshot_.machine.producerProblem =
            ProducerProblemOf(session, snapshot_.machine.searchedInterfaces);
        MarkSearched(session, snapshot_.adapters);
        snapshot_.cameras = ReadCameras(session, snapshot_.adapters);
        if (!options_.camera.empty()) Try(session);
        NoteCounts();
        return std::move(snapshot_);
    }

  private:
    void Try(const Session& session) {
        const Camera* camera = nullptr;
        const auto problem = FailureOf([&] { camera = &Choose(session); });
        if (problem) {
            // The cameras that it names follow on lines of their own.
            snapshot_.choiceProblem = LinesOf(problem->what()).front();
            return;
        }
        snapshot_.chosen = camera->number - 1;
        snapshot_.trial = TryCamera(*camera);
    }

    const Camera& Choose(const Session& session) const {
        if (session.Cameras().empty()) throw Failure(ExitCode::NoCamera, "no camera was found");
        return ChooseCamera(session.Cameras(), options_.camera);
    }

    void NoteCounts() {
        const KernelCounts now = ReadKernelCounts();
        snapshot_.machine.meanwhile = {now.backlogDrops - countsBefore_.backlogDrops,
                                       now.squeezes - countsBefore_.squeezes,
                                       now.reversePathDrops - countsBefore_.reversePathDrops};
        for (AdapterFacts& adapter : snapshot_.adapters) {
            const AdapterDrops drops = ReadDrops(adapter.name);
            adapter.dropsMeanwhile = {drops.dropped - adapter.drops.dropped,
                                      drops.missed - adapter.drops.missed,
                                      drops.overruns - adapter.drops.overruns};
        }
    }

    const KernelCounts countsBefore_;
    const CameraOptions& options_;
    Snapshot snapshot_;
};

void PrintDiagnosis(const Diagnosis& diagnosis) {
    constexpr int kStateWidth = 10;
    std::cout << std::left << std::setw(kStateWidth) << StateWords(diagnosis.state) << ' '
              << diagnosis.about << ", " << diagnosis.check << ": " << Printable(diagnosis.detail)
              << '\n';
    if (!diagnosis.advice.empty()) {
        std::cout << std::setw(kStateWidth) << ""
                  << "   -> " << Printable(diagnosis.advice) << '\n';
    }
}

void PrintDiagnoses(const std::vector<Diagnosis>& diagnoses, const Diagnosis* first) {
    for (const Diagnosis& diagnosis : diagnoses)
        PrintDiagnosis(diagnosis);
    if (first == nullptr) {
        std::cout << "\nNothing is wrong as far as this can be seen from here.\n";
    } else {
        std::cout << "\nDo this first, against \"" << EffectWords(first->effect)
                  << "\": " << Printable(first->advice) << '\n';
    }
}

void PrintDiagnosesAsJson(const std::vector<Diagnosis>& diagnoses, const Diagnosis* first) {
    Json list = Json::array();
    size_t found = 0;
    for (const Diagnosis& diagnosis : diagnoses) {
        const bool isFound = diagnosis.state == Diagnosis::State::Found;
        if (isFound) ++found;
        list.push_back({{"about", diagnosis.about},
                        {"check", diagnosis.check},
                        {"state", StateWords(diagnosis.state)},
                        {"effect", isFound ? EffectWords(diagnosis.effect) : ""},
                        {"detail", diagnosis.detail},
                        {"advice", diagnosis.advice}});
    }
    PrintJson({{"checks", std::move(list)},
               {"found", found},
               {"doFirst", first != nullptr ? first->advice : ""},
               {"interrupted", Interrupted()}});
}

ExitCode RunDoctor(const CameraOptions& options) {
    const std::vector<Diagnosis> diagnoses = Diagnose(Examination(options).Result());
    const Diagnosis* const first = FirstFinding(diagnoses);
    if (options.json) {
        PrintDiagnosesAsJson(diagnoses, first);
    } else {
        PrintDiagnoses(diagnoses, first);
    }
    if (Interrupted()) return ExitCode::Interrupted;
    return first == nullptr ? ExitCode::Ok : ExitCode::CheckFailed;
}

}  // namespace

void AddDoctorCommand(Command app, Invocation& invocation) {
    auto [command, options] =
        AddCommand(app, invocation, "doctor",
                   "Find out why there is no camera, no frame, or a loss", RunDoctor);
    command.AddOption("camera", "CAMERA", options.camera,
                      "Also open this camera, and let it send for two seconds at most: identifier, "
                      "serial number, user name, or its number in `zelcam list`");
    AddSessionOptions(command, options);
    command.Footer(
        "Examples:\n"
        "  zelcam doctor     why is a camera not found? Opens none\n"
        "  zelcam doctor 1   why does it send nothing, or not everything?\n\n"
        "Prints a line for each check, below each finding the one thing to do, and at the end what "
        "to do first. A camera that another program controls is only read. The exit code is 10 "
        "when something was found.");
}

}  // namespace ZelTool
