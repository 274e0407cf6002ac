// The inside of a ProducerTrial: what its process does with the producer.
#ifndef ZELCAM_TOOLS_ZELCAM_PRODUCEREXAM_H
#define ZELCAM_TOOLS_ZELCAM_PRODUCEREXAM_H

#include <string>

#include "tools/zelcam/producertrial.h"

// The first character of a record, which a text and a zero follow.
enum TrialRecord : char {
    TrialStep = 's',       // the function that is called next
    TrialSearch = 'u',     // the same, for one that searches for cameras
    TrialInterface = 'i',  // identifier of an interface
    TrialSimulated = 'm',  // the same, of simulated cameras
    TrialFailed = 'f',     // why the producer cannot be used
    TrialDone = 'd'
};

// Loads the producer and does with it what the library does until the cameras are listed; writes
// records to the file descriptor.
void ExamineProducer(const std::string& file, const TrialOptions& options, int records);

#endif  // ZELCAM_TOOLS_ZELCAM_PRODUCEREXAM_H
