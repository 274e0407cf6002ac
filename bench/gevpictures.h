// Programs that receive the pictures of simulated cameras, measured from outside.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/gevsender.h"

namespace Bench {

enum class GevProgram {
    Library,  // ZelCam: zelcam_bench_receiver library
    Aravis,   // arv-camera-test-0.8
    Floor     // zelcam_bench_receiver floor: the kernel alone
};

struct GevReception {
    GevProgram program = GevProgram::Library;
    double seconds = 2;
    double warmUp = 0.5;      // of these, before and after what is measured
    bool withRights = false;  // or else those of an ordinary user
    // Memory for packets, in bytes as Linux counts them; 0: as much as the program gets. aravis has
    // its default in any other case.
    unsigned socketBuffer = 0;
    std::string method{};    // GevStreamReceiveMethod of ours; empty: as it is
    std::string arrivals{};  // file for the times of frames, not of aravis
    bool untilLost = false;  // until the camera is lost
};

struct GevPictures {
    double sent = 0;            // frames, by the cameras
    double lost = 0;            // share of frames that are not complete; of packets for the floor
    double rate = 0;            // frames a second that the cameras sent
    double cpuPerGigabyte = 0;  // seconds of the program
    double interruptsPerGigabyte = 0;  // seconds of soft interrupts of the whole machine
    std::vector<double> complete{};    // frames, of each camera
    std::vector<std::string> outputs{};

    double CompleteFrames() const;
};

bool IsAravisInstalled();

// `name` and what follows it, with "=" and spaces between, wherever a line begins so.
std::vector<double> NumbersOf(const std::string& output, const std::string& name);

// Starts the program, or one for each camera, as they are made for.
std::vector<std::unique_ptr<Process>> StartReceivers(const BenchNetwork& network,
                                                     const GevSender& sender,
                                                     const GevReception& reception);

// Receives for the time. Throws with the output of a program that fails.
GevPictures Receive(const BenchNetwork& network, const GevSender& sender,
                    const GevReception& reception);

}  // namespace Bench
