// The groups of benchmarks; each opens this program's cameras for itself and closes them again.
#pragma once

#include "bench/report.h"

namespace Bench {

void MeasureCameras(Report& report);   // cameras.cpp
void MeasureFrames(Report& report);    // frames.cpp
void MeasureCopies(Report& report);    // copies.cpp
void MeasureLatency(Report& report);   // latency.cpp
void MeasureEvents(Report& report);    // events.cpp
void MeasureOpening(Report& report);   // opening.cpp
void MeasureFeatures(Report& report);  // features.cpp
void MeasureLayer(Report& report);     // layer/layer.cpp
void MeasureDevices(Report& report);   // devices.cpp
void MeasureBuffers(Report& report);   // buffers.cpp
void MeasureWire(Report& report);      // wire.cpp
void MeasureImaging(Report& report);   // imaging/imaging.cpp
void MeasureHostile(Report& report);   // hostile.cpp

// gev.cpp; the long form takes hours.
void MeasureGevLoss(Report& report, bool isLong);
void MeasureGevFaults(Report& report);
void MeasureGevCost(Report& report);
void MeasureGevRate(Report& report);
void MeasureGevMany(Report& report);
void MeasureGevTimes(Report& report);

}  // namespace Bench
