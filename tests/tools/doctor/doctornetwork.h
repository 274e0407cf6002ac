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

// This process lives in namespaces of its own with an adapter eth1, 10.77.0.1/24. A cable joins it
// to the adapter "cam" in another namespace. A test is skipped where that is not allowed, or the
// programs that it needs are not installed.
class DoctorTest : public ToolTest {
  protected:
    static constexpr const char* kCamera = "GEV-020000000001";

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

    // A file that stands in for one of the kernel, from now on and for this test only.
    void Replace(const std::string& file, const std::string& text);

    DoctorResult Doctor(std::vector<std::string> arguments = {});

    // As an ordinary user, who may have no larger buffers than the machine's limit.
    DoctorResult DoctorOfUser(std::vector<std::string> arguments = {});

  private:
    bool EnterNamespaces();
    void LayCable();
    void Stop(std::optional<pid_t>& process);

    std::optional<pid_t> far_;
    std::optional<pid_t> camera_;
    std::vector<std::string> replaced_;
};
