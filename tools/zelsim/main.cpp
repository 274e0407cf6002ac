// zelsim: simulated cameras on a network, for every GigE Vision program of the machine.

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <mutex>
#include <poll.h>
#include <stdexcept>
#include <sys/signalfd.h>
#include <unistd.h>

#include "producers/simulator/config/configfile.h"
#include "producers/simulator/config/configparser.h"
#include "producers/simulator/gige/networkserver.h"
#include "tools/zelsim/commands.h"
#include "tools/zelsim/controlsocket.h"
#include "tools/zelsim/options.h"

namespace ZelSimTool {

namespace {

// Lines from any thread, at once also where the output is a file or a pipe.
void Print(const std::string& line) {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    std::cout << line << std::endl;
}

// The signals that end the program, for poll. Blocked in all threads, if none was started yet.
int EndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, number);
    std::signal(SIGPIPE, SIG_IGN);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

void ServeUntil(const Descriptor& end, ControlSocket* control) {
    std::vector<pollfd> wanted;
    for (;;) {
        wanted = {{end.Number(), POLLIN, 0}};
        if (control != nullptr) control->AddTo(wanted);
        if (poll(wanted.data(), wanted.size(), -1) < 0 && errno != EINTR) {
            throw std::runtime_error("the program cannot wait for commands");
        }
        if (wanted.front().revents != 0) return;
        if (control != nullptr) control->Serve();
    }
}

void Serve(const Options& options) {
    const Descriptor end(EndSignals());
    const ZelSim::WorldConfig config =
        options.config.empty() ? ZelSim::DefaultConfig() : ZelSim::LoadConfigFile(options.config);
    ZelSim::NetworkServer server(
        config, ZelSim::AddressPool(options.on, ZelCti::ListHostAddresses()), Print);
    if (options.control.empty()) return ServeUntil(end, nullptr);
    ControlSocket control(options.control,
                          [&](const std::string& command) { return RunCommand(server, command); });
    Print("commands are taken from " + options.control);
    ServeUntil(end, &control);
}

ExitCode Run(const Options& options) {
    if (options.listsSwitches) {
        std::cout << ListSwitches();
    } else if (!options.tell.empty()) {
        std::cout << TellProgram(options.control, options.tell);
    } else {
        Serve(options);
    }
    return ExitCode::Ok;
}

}  // namespace

}  // namespace ZelSimTool

int main(int argc, char** argv) {
    using ZelSimTool::ExitCode;
    try {
        ZelSimTool::Options options;
        const auto end = ZelSimTool::ParseOptions(argc, argv, options);
        return static_cast<int>(end ? *end : ZelSimTool::Run(options));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zelsim: %s\n", error.what());
    } catch (...) {
        std::fputs("zelsim: the program failed\n", stderr);
    }
    return static_cast<int>(ExitCode::Failed);
}
