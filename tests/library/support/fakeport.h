// A producer's port without a producer: what an array needs of one, every answer set by the test.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ZelCameraApi/base/gentlmodule.h"

// Must outlive the arrays made of it.
struct FakePort {
    struct Url {
        std::string text;
        int result = 0;
        int type = GenTL::INFO_DATATYPE_STRING;
    };

    // The port as a module.
    ZelCameraApi::Internal::GenTLModule<void*> Module();

    // Puts a description into the memory, at kDescription, and announces it.
    void Announce(const std::string& description, const std::string& file = "camera.xml");
    // Only puts it there, and gives the URL that leads to it.
    std::string Store(const std::string& description, const std::string& file = "camera.xml");

    static constexpr uint64_t kDescription = 0x1000;

    bool notImplemented = false;
    bool notAvailable = false;
    bool readable = true;
    bool writable = true;
    std::map<int, std::string> texts;  // of PORT_INFO commands
    std::map<int, int> failures;       // of PORT_INFO commands
    int urlsResult = 0;
    std::vector<Url> urls;
    std::function<void()> whenUrlIsAsked;  // when set; an array is being made then

    int result = 0;                    // of reads and writes
    std::optional<size_t> actualSize;  // reported by them
    size_t accesses = 0;               // reads and writes so far
    size_t lastSize = 0;               // asked for by the last one
    std::vector<uint8_t> memory = std::vector<uint8_t>(0x10000);
};
