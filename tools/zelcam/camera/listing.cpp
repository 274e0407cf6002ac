#include "tools/zelcam/camera/listing.h"

#include <ostream>

#include "tools/zelcam/camera/reachability.h"
#include "tools/zelcam/camera/words.h"
#include "tools/zelcam/console/printable.h"

namespace ZelTool {

namespace {

std::string CameraKind(bool simulated) {
    return simulated ? "simulated" : "real";
}

void PrintProducers(std::ostream& out, const Session& session, size_t width,
                    const TextFilter& filter) {
    out << "Producers\n";
    TextTable table({"STATE", "FROM", "FILE"}, filter);
    for (const Producer& producer : session.Producers()) {
        table.AddRow({producer.StateWords(), producer.OriginWords(), producer.file});
    }
    table.Print(out, width);
    for (const Producer& producer : session.Producers()) {
        if (producer.reason.empty()) continue;
        PrintIndented(out, producer.file + ": " + PrintableLines(producer.reason), width);
    }
}

void PrintInterfaces(std::ostream& out, const Session& session, size_t width,
                     const TextFilter& filter) {
    if (session.Interfaces().empty()) return;
    out << "\nInterfaces\n";
    TextTable table({"ID", "TYPE", "CAMERAS", "KIND", "DESCRIPTION", "PRODUCER"}, filter);
    for (const InterfaceEntry& entry : session.Interfaces()) {
        table.AddRow({entry.id, InterfaceTypeWords(entry.type), std::to_string(entry.cameras),
                      CameraKind(entry.simulated), entry.description, entry.producerName});
    }
    table.Print(out, width);
    for (const InterfaceEntry& entry : session.Interfaces()) {
        if (entry.problem.empty()) continue;
        PrintIndented(out, Printable(entry.id) + ": " + Printable(entry.problem), width);
    }
}

// Why cameras cannot be opened, and what helps.
void PrintReasons(std::ostream& out, const Session& session, size_t width,
                  const TextFilter& filter) {
    for (const Camera& camera : session.Cameras()) {
        std::string text = AccessReasonOf(camera);
        if (NeedsAnAddress(camera)) {
            text += (text.empty() ? "" : "; ") + ("`" + ForceCommand(camera)) +
                    "` gives it an address in the network of the adapter";
        }
        if (text.empty()) continue;
        text = Printable(camera.id + ": " + text);
        PrintIndented(out, filter ? filter(text) : text, width);
    }
}

void PrintCameras(std::ostream& out, const Session& session, size_t width,
                  const TextFilter& filter) {
    if (session.Cameras().empty()) return;
    out << "\nCameras\n";
    TextTable table({"#", "ID", "VENDOR", "MODEL", "SERIAL", "USER NAME", "ADDRESS", "ACCESS",
                     "KIND", "INTERFACE", "PRODUCER"},
                    filter);
    for (const Camera& camera : session.Cameras()) {
        table.AddRow({std::to_string(camera.number), camera.id, camera.vendor, camera.model,
                      camera.serial, camera.userName, AddressOf(camera),
                      AccessWords(camera.accessStatus), CameraKind(camera.simulated),
                      camera.interfaceId, camera.producerName});
    }
    table.Print(out, width);
    PrintReasons(out, session, width, filter);
}

Json ProducersAsJson(const Session& session) {
    Json producers = Json::array();
    for (const Producer& producer : session.Producers()) {
        producers.push_back({{"file", producer.file},
                             {"origin", producer.OriginWords()},
                             {"state", producer.StateWords()},
                             {"reason", producer.reason}});
    }
    return producers;
}

Json InterfacesAsJson(const Session& session) {
    Json interfaces = Json::array();
    for (const InterfaceEntry& entry : session.Interfaces()) {
        interfaces.push_back({{"id", entry.id},
                              {"type", InterfaceTypeName(entry.type)},
                              {"description", entry.description},
                              {"producer", entry.producer},
                              {"simulated", entry.simulated},
                              {"problem", entry.problem},
                              {"cameras", entry.cameras}});
    }
    return interfaces;
}

Json CamerasAsJson(const Session& session) {
    Json cameras = Json::array();
    for (const Camera& camera : session.Cameras()) {
        Json entry = {{"number", camera.number},
                      {"id", camera.id},
                      {"vendor", camera.vendor},
                      {"model", camera.model},
                      {"serial", camera.serial},
                      {"userName", camera.userName},
                      {"version", camera.version},
                      {"access", AccessWords(camera.accessStatus)},
                      {"accessStatus", camera.accessStatus},
                      {"accessReason", AccessReasonOf(camera)},
                      {"address", AddressOf(camera)}};
        entry.update(OriginAsJson(camera));
        cameras.push_back(std::move(entry));
    }
    return cameras;
}

}  // namespace

void PrintSession(std::ostream& out, const Session& session, size_t width,
                  const TextFilter& filter) {
    PrintProducers(out, session, width, filter);
    PrintInterfaces(out, session, width, filter);
    PrintCameras(out, session, width, filter);
}

Json OriginAsJson(const Camera& camera) {
    return {{"interface", camera.interfaceId},
            {"producer", camera.producer},
            {"simulated", camera.simulated}};
}

Json SessionAsJson(const Session& session) {
    return {{"producers", ProducersAsJson(session)},
            {"interfaces", InterfacesAsJson(session)},
            {"cameras", CamerasAsJson(session)}};
}

}  // namespace ZelTool
