// Networks in namespaces of the test, with a camera at the far end of a cable: nothing is sent
// anywhere else.
#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "tests/tools/toolrun.h"

// What `zelcam doctor` said.
struct DoctorResult : ToolResult {
    // "adapter eth1, link -> sudo ip link set eth1 up" of each finding.
    std::vector<std::string> Findings() const;
    // The detail of a finding; empty when that was not found.
    std::string Detail(const std::string& aboutAndCheck) const;
    std::string DoFirst() const { return Json().at("doFirst"); }
};

constexpr const char* kCamera = "GEV-020000000001";

// This process lives in namespaces of its own with an adapter eth1, 10.77.0.1/24. A cable joins it
// to the adapter "cam" in another namespace. A test is skipped where that is not allowed, or the
// programs that it needs are not installed.
class DoctorTest : public ToolTest {
  protected:
    void SetUp() override;
    void TearDown() override;

    // Runs a shell command here, or at the far end; it must succeed.
    void Here(const std::string& command) const;
    void Far(const std::string& command) const;

    // Switches on a camera at the far end.
    void PlugCamera(const std::string& address = "10.77.0.11/24", const std::string& switches = "",
                    const std::string& attributes = "");

    // The same with several: elements of the configuration, which get the addresses in turn.
    void PlugCameras(const std::vector<std::string>& addresses, const std::string& cameras);

    // Gives the camera that is switched on a command.
    void Tell(const std::string& command) const;

    // From now on and for this test only: a file that stands in for one of the kernel, or an empty
    // folder for one of the machine.
    void Replace(const std::string& file, const std::string& text);
    void Cover(const std::string& folder);

    // Covers /etc, but for what programs need to start.
    void CoverEtc();

    // Whether the doctor may have larger buffers than the machine's limit: not as the root of a
    // user namespace.
    static bool MayExceedLimits();

    DoctorResult Doctor(const std::vector<std::string>& arguments = {});

    // As an ordinary user, who may open no files of others, and have no larger buffers than the
    // machine's limit.
    DoctorResult DoctorOfUser(const std::vector<std::string>& arguments = {});

    // A file of /proc/net that holds `then` after the doctor has begun to read `first` in it.
    DoctorResult DoctorWhile(const std::string& file, const std::string& first,
                             const std::string& then);

    // While the camera sends, it stops for as long as packets find room in its socket.
    DoctorResult DoctorWithPause(bool ofUser);

    // The thread that takes the frames stops until so many bytes more have come.
    DoctorResult DoctorWithPausedThread(uint64_t bytes);

  private:
    bool EnterNamespaces();
    void LayCable();
    void Stop(std::optional<pid_t>& process);
    int StartDoctor(const std::vector<std::string>& arguments, bool ofUser);

    std::optional<pid_t> far_;
    std::optional<pid_t> camera_;
    std::vector<std::string> mounted_;
};
