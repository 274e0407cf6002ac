// Runs in the child process of a ProducerTrial: uses a producer and writes records of what happens.
#pragma once

#include <string>

#include "tools/zelcam/camera/producertrial.h"

namespace ZelTool {

// A record is one of these characters, a text and a zero.
enum TrialRecord : char {
    TrialStep = 's',       // the function that is called next
    TrialSearch = 'u',     // the same for a function that searches for cameras
    TrialInterface = 'i',  // identifier of an interface
    TrialSimulated = 'm',  // the same for an interface of simulated cameras
    TrialFailed = 'f',     // why the producer cannot be used
    TrialDone = 'd'
};

// Loads the producer and calls what the library calls until the cameras are listed. `records` is
// the file descriptor for the records.
void ExamineProducer(const std::string& file, const TrialOptions& options, int records);

}  // namespace ZelTool
