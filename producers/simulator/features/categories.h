// The features of simulated cameras, one function for each category.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "producers/server/registers/featuretable.h"

namespace ZelSim {

class BootstrapRows;
class Camera;
class DeviceFiles;
class UserSets;

// The rows refer to the objects, which must outlive the register space. State that only registers
// show belongs to the rows.
void AddDeviceControl(ZelCti::FeatureTable& features, Camera& camera,
                      std::function<void()> powerCycle);
void AddImageFormatControl(ZelCti::FeatureTable& features, Camera& camera);
void AddAcquisitionControl(ZelCti::FeatureTable& features, Camera& camera);
void AddAnalogControl(ZelCti::FeatureTable& features, Camera& camera);
void AddDigitalIOControl(ZelCti::FeatureTable& features, ZelCti::RegisterSpace& space);
void AddUserSetControl(ZelCti::FeatureTable& features, UserSets& userSets);
void AddTransportLayerControl(ZelCti::FeatureTable& features, Camera& camera);
void AddGigEVision(ZelCti::FeatureTable& features, BootstrapRows& rows, Camera& camera);
void AddPtpControl(ZelCti::FeatureTable& features, BootstrapRows& rows, Camera& camera);
void AddActionControl(ZelCti::FeatureTable& features, BootstrapRows& rows);
void AddEventControl(ZelCti::FeatureTable& features, Camera& camera);
void AddChunkDataControl(ZelCti::FeatureTable& features, Camera& camera);
void AddFileAccessControl(ZelCti::FeatureTable& features, ZelCti::RegisterSpace& space,
                          DeviceFiles& files);
void AddTestControl(ZelCti::FeatureTable& features, Camera& camera);

// For features that show a pixel format.
std::vector<ZelCti::Entry> PixelFormatEntries();

}  // namespace ZelSim
