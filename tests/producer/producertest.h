// The fixture of all tests of the server side.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "producers/server/base/error.h"
#include "tests/producer/scriptedtransport.h"
#include "tests/support/gentlclient.h"

// A system of a producer with one scripted transport, its interface "I" and the camera "C" there.
class ProducerTest : public ::testing::Test, protected ZelTest::Client {
  protected:
    ProducerTest();
    ~ProducerTest() override;  // nothing stays open

    // Makes a producer of these transports and opens its system.
    void Use(std::vector<std::shared_ptr<ZelCti::Transport>> transports);

    void OpenCamera() { Client::OpenCamera("I", "C"); }

    static size_t NumHandles();
    static const ZelTest::GenTLFunctions& Functions();

    ZelTest::ScriptedStream& Stream() { return *camera->streams.at(0); }
    std::vector<std::string> Steps() { return script.Take(); }

    ZelTest::Script& script = ZelTest::Script::Instance();
    std::shared_ptr<ZelTest::ScriptedCamera> camera =
        std::make_shared<ZelTest::ScriptedCamera>("C");
    std::shared_ptr<ZelTest::ScriptedInterface> host =
        std::make_shared<ZelTest::ScriptedInterface>("I", ZelCti::CameraList{camera});
};
