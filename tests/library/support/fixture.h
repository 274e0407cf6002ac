// What the tests of this folder share: the scripted producer, a session of opened modules on it,
// and a subscriber to wait for events with.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ZelCam/ZelCam.h"
#include "tests/library/scriptedproducer/scriptedproducer.h"
#include "tests/support/holder.h"

// Path of a file in the scripted producer's folder.
std::string ProducerPath(const std::string& file);

// Path of a temporary file that no other test uses: tests run in processes of their own at once.
std::string TempPath(const std::string& file);

// A temporary file, for as long as the object lives.
class TemporaryFile {
  public:
    TemporaryFile(const std::string& name, const std::string& content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return path_; }

  private:
    std::string path_;
};

// Loads a scripted producer for the rest of the program and returns its control.
Scripted::Control& LoadControl(const std::string& file = "libZelCTI.cti");

bool IsLoaded(const std::string& path);

// A copy of a producer file that nothing else in the program has loaded.
class ProducerCopy {
  public:
    explicit ProducerCopy(const std::string& file);
    ~ProducerCopy();
    ProducerCopy(const ProducerCopy&) = delete;
    ProducerCopy& operator=(const ProducerCopy&) = delete;

    const std::string& Path() const { return path_; }

  private:
    std::string path_;
};

using ZelTest::Holder;

// A code that nothing gives: no operation stored one.
constexpr auto kUntouched = static_cast<ZelCamErr>(77);

std::vector<std::string> TextsOf(const std::vector<Scripted::Call>& calls);

// Collects the events given to its callbacks; pass a pointer to it as the private pointer.
class Subscriber {
  public:
    struct Event {
        uint32_t type;  // 0 from the form without a type
        std::vector<uint8_t> data;
    };

    static void Form1(const void* data, size_t size, void* self);
    static void Form2(uint32_t type, const void* data, size_t size, void* self);

    // Waits until `count` events came, and returns all that came.
    std::vector<Event> Await(size_t count);

  private:
    void Add(uint32_t type, const void* data, size_t size);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<Event> events_;  // guarded by mutex_
};

// Each test starts with a fresh producer, and fails when it leaves a handle open or used one that
// was closed.
class ScriptedTest : public testing::Test {
  protected:
    ScriptedTest() { producer.Reset(); }
    void TearDown() override;

    // Calls of `function` (with `command`) fail, after the first `skip`, `count` times.
    void Fail(const std::string& function, int32_t code, int64_t command = Scripted::kAnyCommand,
              size_t skip = 0, size_t count = SIZE_MAX);
    void Answer(const std::string& function, int64_t command, const Scripted::Reply& reply);

    // The calls since the last Calls, as Scripted::Call::Text gives them.
    std::vector<std::string> Calls();

    // The same with one EventKill for several in a row: a thread that ends late is killed again.
    std::vector<std::string> CallsWithoutRepeatedKills();

    Scripted::Control& producer = LoadControl();
    Subscriber subscriber;

    // What a test leaves open on purpose.
    std::vector<std::string> expectedOpen;
};

// A System and what is opened below it, released in TearDown.
class SessionTest : public ScriptedTest {
  protected:
    void TearDown() override;

    void OpenSystem();
    void OpenInterface(const char* id = "if0");
    void OpenDevice(ZelCam::DeviceAccess access = ZelCam::DeviceAccess::Exclusive);
    void OpenStream();

    // The handle the producer gave, by the name Control::GetOpenHandles uses.
    void* HandleOf(const std::string& name);

    Holder<ZelCam::System> system;
    ZelCam::Interface* iface = nullptr;
    ZelCam::DeviceInfo* info = nullptr;
    ZelCam::Device* device = nullptr;
    ZelCam::Stream* stream = nullptr;
};

// What a wait may take before a test fails.
constexpr std::chrono::seconds kPatience{30};
