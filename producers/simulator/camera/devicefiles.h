// The files of a camera.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "producers/simulator/camera/flash.h"

namespace ZelSim {

enum class DeviceFile : uint32_t { UserFile, Firmware };
constexpr uint32_t kNumDeviceFiles = 2;

enum class FileOperation : uint32_t { Open, Close, Read, Write, Delete };
constexpr uint32_t kNumFileOperations = 5;

enum class FileOpenMode : uint32_t { Read, Write, ReadWrite };

// A small file of the user, and the flash of the firmware, whose size is fixed.
//
//   closed --Open--> open --Close--> closed
//   closed --Delete--> closed, without content
//
// Opening the user's file to write only empties it. Guarded by the lock of the register space.
class DeviceFiles {
  public:
    static constexpr size_t kMaxUserFile = 65536;

    // The bytes that one operation reads or writes.
    static constexpr size_t kMaxAccess = 1024;

    // Both outlive the object.
    DeviceFiles(std::vector<uint8_t>& userFile, Flash& flash)
        : userFile_(userFile), flash_(flash) {}

    size_t Size(DeviceFile file) const;

    // Whether the last operation still goes on.
    bool IsBusy(DeviceFile file) const { return file == DeviceFile::Firmware && flash_.IsBusy(); }

    struct Access {
        FileOpenMode mode = FileOpenMode::Read;  // for Open
        size_t offset = 0;                       // for Read and Write, as what follows
        size_t length = 0;                       // at most kMaxAccess
    };
    struct Outcome {
        bool done = true;
        size_t count = 0;  // bytes that were read or written, which may be fewer at the end
    };

    // Reads into the buffer or writes what is there. Throws GC_ERR_BUSY while the flash is busy.
    Outcome Execute(DeviceFile file, FileOperation operation, const Access& access,
                    uint8_t* buffer);

  private:
    struct State {
        bool isOpen = false;
        FileOpenMode mode = FileOpenMode::Read;
    };

    Outcome Open(DeviceFile file, FileOpenMode mode);
    Outcome Delete(DeviceFile file);
    Outcome Read(DeviceFile file, const Access& access, uint8_t* buffer) const;
    Outcome Write(DeviceFile file, const Access& access, const uint8_t* buffer);
    State& StateOf(DeviceFile file) { return states_[static_cast<size_t>(file)]; }
    const State& StateOf(DeviceFile file) const { return states_[static_cast<size_t>(file)]; }

    std::vector<uint8_t>& userFile_;
    Flash& flash_;
    std::array<State, kNumDeviceFiles> states_;
};

}  // namespace ZelSim
