// Several threads at once. Where a test asserts little, ThreadSanitizer is what looks on.
#include <atomic>
#include <cstdlib>
#include <functional>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "tests/library/support/camera.h"
#include "tests/library/support/moduledescription.h"
#include "tests/library/support/sink.h"

using namespace ZelGenParam;

namespace {

// Two threads do `steps` side by side. Neither begins a step before the other one does, but memory
// is not ordered by that: what the library leaves unordered, ThreadSanitizer sees even where one
// thread happens to be through with a step before the other one gets to it.
void RunAtOnce(const std::vector<std::function<void(size_t thread)>>& steps) {
    std::atomic<size_t> begun[2] = {};
    const auto run = [&](size_t thread) {
        for (size_t i = 0; i < steps.size(); ++i) {
            begun[thread].store(i + 1, std::memory_order_relaxed);
            while (begun[1 - thread].load(std::memory_order_relaxed) <= i)
                std::this_thread::yield();
            steps[i](thread);
        }
    };
    std::thread other(run, 1);
    run(0);
    other.join();
}

using TwoThreads = SessionTest;

}  // namespace

TEST_F(CameraTest, ThreadsFindTheSameObjects) {
    std::vector<void*> found[2];
    RunAtOnce({
        [&](size_t) { array->GetIntegerValue("Int", nullptr); },
        [&](size_t) { array->GetStringValue("String", nullptr); },
        [&](size_t) { array->GetCount(); },
        [&](size_t thread) { found[thread].push_back(array->GetParamByIndex(0, nullptr)); },
        [&](size_t thread) { found[thread].push_back(array->GetParam("Enum", nullptr)); },
        [&](size_t thread) {
            found[thread].push_back(array->GetEnum("Enum", nullptr)->GetEnumEntryByValue(2));
        },
    });
    EXPECT_EQ(found[0], found[1]);
    EXPECT_THAT(found[0], testing::Each(testing::NotNull()));
}

// A sink is called on the thread that changes the feature, as it is on that of the events.
TEST_F(CameraTest, SinksMayReadWhatTheApplicationReads) {
    Enum* const choice = array->GetEnum("Enum", &err);
    int calls = 0;
    const auto read = [&](Param* param) {
        EXPECT_STREQ(param->GetName(), "Enum");
        EXPECT_NE(param->ToEnum()->GetValueStr(nullptr), nullptr);
        ++calls;
    };
    Sink sinks[] = {Sink(read), Sink(read)};
    RunAtOnce({
        [&](size_t thread) { choice->RegisterEventSink(&sinks[thread]); },
        [&](size_t) { EXPECT_STREQ(choice->GetName(), "Enum"); },
        [&](size_t thread) {
            thread == 0 ? void(choice->SetValue(2)) : void(choice->GetValueStr(nullptr));
        },
        [&](size_t thread) { choice->UnregisterEventSink(&sinks[thread]); },
    });
    EXPECT_EQ(choice->SetValue(1), ZelCamErr_Success);
    EXPECT_EQ(calls, 2);
}

TEST_F(CameraTest, ATextStaysWhateverOtherThreadsRead) {
    Enum* const choice = array->GetEnum("Enum", &err);
    EnumEntry* const entry = choice->GetEnumEntryByValue(1);
    array->SetStringValue("String", "before");
    const char* const byName = array->GetStringValue("String", &err);
    const char* const ofParam = choice->GetValueStr(&err);
    const char* const ofEntry = entry->GetValueStr(&err);
    std::thread([&] {
        array->SetStringValue("String", "behind");
        EXPECT_STREQ(array->GetStringValue("String", nullptr), "behind");
        choice->SetValue(2);
        EXPECT_STREQ(choice->GetValueStr(nullptr), "Two");
        EXPECT_NE(entry->GetValueStr(nullptr), ofEntry);
    }).join();
    EXPECT_STREQ(byName, "before");
    EXPECT_STREQ(ofParam, "One");
    EXPECT_STREQ(ofEntry, "One");
    EXPECT_STREQ(array->GetStringValue("String", &err), "behind");
}

// Their environment is the process's: two at a time would leave it changed.
TEST(ArrayImpl, NodeMapsAreMadeOneAtATimeInTheirEnvironment) {
    const auto root = [] {
        const char* const value = std::getenv("GENICAM_ROOT");
        return std::string(value != nullptr ? value : "");
    };
    const std::string before = root();
    std::atomic<int> inside{0};
    std::atomic<bool> overlapped{false};
    std::atomic<bool> unprepared{false};
    FakePort ports[2];
    for (FakePort& port : ports) {
        port.Announce(CameraDescription());
        port.whenUrlIsAsked = [&] {
            if (root() == before) unprepared = true;
            if (++inside > 1) overlapped = true;
            for (int i = 0; i < 1000 && !overlapped; ++i)
                std::this_thread::yield();
            --inside;
        };
    }
    const auto make = [&](size_t thread) {
        EXPECT_NE(ZelCameraApi::Internal::CreateArray(ports[thread].Module(), nullptr, nullptr),
                  nullptr);
    };
    RunAtOnce({make, make, make, make, make});
    EXPECT_FALSE(overlapped);
    EXPECT_FALSE(unprepared);
    EXPECT_EQ(root(), before);
}

TEST_F(TwoThreads, AStreamMayAskForTheSizeWhileFeaturesAreUsed) {
    producer.SetDescription(Description::Xml());
    OpenStream();
    Answer("DSGetInfo", GenTL::STREAM_INFO_DEFINES_PAYLOADSIZE,
           Scripted::Gives(GenTL::bool8_t{0}, GenTL::INFO_DATATYPE_BOOL8));
    const auto use = [&](size_t thread) {
        if (thread == 0) {
            stream->GetBufferSize();
        } else {
            Array* const features = device->GetCameraParameters(nullptr);
            ASSERT_NE(features, nullptr);
            EXPECT_NE(features->GetInt("Width", nullptr), nullptr);
        }
    };
    RunAtOnce({use, use});
}
