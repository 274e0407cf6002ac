// A camera with features of every kind and with events, for targets whose input is something else.
#pragma once

#include <memory>
#include <string>

#include "ZelCameraApi/ZelGenParam/arrayimpl.h"
#include "tests/library/support/fakeport.h"

namespace Fuzz {

extern const char* const kCameraDescription;

struct Camera {
    explicit Camera(const std::string& tlType);

    FakePort port;
    std::unique_ptr<ZelCameraApi::Internal::ArrayImpl> features;
    GenApi::INodeMap* nodeMap;
};

}  // namespace Fuzz
