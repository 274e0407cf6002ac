#include "tools/zelcam/listing.h"

#include <ostream>

#include "tools/zelcam/printable.h"
#include "tools/zelcam/texttable.h"
#include "tools/zelcam/words.h"

namespace {

std::string CameraKind(bool simulated) {
    return simulated ? "simulated" : "real";
}

void PrintProducers(std::ostream& out, const Session& session) {
    out << "Producers\n";
    TextTable table({"STATE", "FROM", "FILE"});
    for (const Producer& producer : session.Producers()) {
        table.AddRow({producer.StateWords(), producer.OriginWords(), producer.file});
    }
    table.Print(out);
    for (const Producer& producer : session.Producers()) {
        if (producer.reason.empty()) continue;
        out << "  " << producer.file << ": " << PrintableLines(producer.reason) << '\n';
    }
}

void PrintInterfaces(std::ostream& out, const Session& session) {
    if (session.Interfaces().empty()) return;
    out << "\nInterfaces\n";
    TextTable table({"ID", "TYPE", "CAMERAS", "KIND", "DESCRIPTION", "PRODUCER"});
    for (const InterfaceEntry& entry : session.Interfaces()) {
        table.AddRow({entry.id, InterfaceTypeWords(entry.type), std::to_string(entry.cameras),
                      CameraKind(entry.simulated), entry.description, entry.producerName});
    }
    table.Print(out);
    for (const InterfaceEntry& entry : session.Interfaces()) {
        if (entry.problem.empty()) continue;
        out << "  " << Printable(entry.id) << ": " << Printable(entry.problem) << '\n';
    }
}

void PrintCameras(std::ostream& out, const Session& session) {
    if (session.Cameras().empty()) return;
    out << "\nCameras\n";
    TextTable table({"#", "ID", "VENDOR", "MODEL", "SERIAL", "USER NAME", "ACCESS", "KIND",
                     "INTERFACE", "PRODUCER"});
    for (const Camera& camera : session.Cameras()) {
        table.AddRow({std::to_string(camera.number), camera.id, camera.vendor, camera.model,
                      camera.serial, camera.userName, AccessWords(camera.accessStatus),
                      CameraKind(camera.simulated), camera.interfaceId, camera.producerName});
    }
    table.Print(out);
}

}  // namespace

void PrintSession(std::ostream& out, const Session& session) {
    PrintProducers(out, session);
    PrintInterfaces(out, session);
    PrintCameras(out, session);
}
