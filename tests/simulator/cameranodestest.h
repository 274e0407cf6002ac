// The features of an open simulated camera.
#pragma once

#include <memory>
#include <string>

#include "tests/simulator/producer.h"
#include "tests/support/portnodemap.h"

using ZelTest::PortNodeMap;

// An open camera with the node map of its remote side.
class CameraNodesTest : public CameraTest {
  protected:
    void Open(const std::string& keys, const std::string& type) {
        OpenCamera(keys, type);
        nodes = std::make_unique<PortNodeMap>(p, Remote());
    }

    std::unique_ptr<PortNodeMap> nodes;
};
