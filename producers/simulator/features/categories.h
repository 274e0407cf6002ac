// The features of simulated cameras, one function for each category.
#pragma once

#include <string>
#include <vector>

#include "producers/server/registers/featuretable.h"

namespace ZelSim {

class Camera;
class UserSets;

// The rows refer to the objects, which must outlive the register space. State that only registers
// show belongs to the rows.
void AddDeviceControl(FeatureTable& features, Camera& camera, UserSets& userSets);
void AddImageFormatControl(FeatureTable& features, Camera& camera);
void AddAcquisitionControl(FeatureTable& features, Camera& camera);
void AddAnalogControl(FeatureTable& features, Camera& camera);
void AddDigitalIOControl(FeatureTable& features, RegisterSpace& space);
void AddUserSetControl(FeatureTable& features, UserSets& userSets);
void AddTransportLayerControl(FeatureTable& features, Camera& camera);
void AddEventControl(FeatureTable& features, Camera& camera);
void AddChunkDataControl(FeatureTable& features, Camera& camera);
void AddTestControl(FeatureTable& features, Camera& camera);

// For features that show a pixel format.
std::vector<Entry> PixelFormatEntries();

}  // namespace ZelSim
