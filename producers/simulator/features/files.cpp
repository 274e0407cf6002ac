// The files of the camera.
#include <array>
#include <memory>
#include <string>

#include "producers/simulator/camera/devicefiles.h"
#include "producers/simulator/features/categories.h"
#include "producers/simulator/features/settings.h"

namespace ZelSim {

using ZelCti::Entry;
using ZelCti::FeatureTable;
using ZelCti::IntegerValue;
using ZelCti::RegisterSpace;

namespace {

constexpr uint64_t kFileBuffer = 0xA400;
constexpr size_t kNumCommands = size_t{kNumDeviceFiles} * kNumFileOperations;

// What the features of all files share: for each file and operation there is a command with its
// outcome, which nodes choose by this index.
constexpr const char* kIndex = "FileOperationIndex";

struct FileAccess {
    FileAccess(DeviceFiles& deviceFiles, RegisterSpace& registers, uint64_t bufferAddress)
        : files(deviceFiles), space(registers), buffer(bufferAddress) {}

    void Execute(size_t index) {
        const auto file = static_cast<DeviceFile>(index / kNumFileOperations);
        access.mode = modes.at(index / kNumFileOperations);
        uint8_t bytes[DeviceFiles::kMaxAccess];
        space.Read(buffer, bytes, sizeof(bytes));
        outcomes.at(index) = files.Execute(
            file, static_cast<FileOperation>(index % kNumFileOperations), access, bytes);
        space.Load(buffer, bytes, sizeof(bytes));
    }

    DeviceFiles& files;
    RegisterSpace& space;
    const uint64_t buffer;  // its address in the space
    DeviceFiles::Access access;
    std::array<FileOpenMode, kNumDeviceFiles> modes{};
    std::array<DeviceFiles::Outcome, kNumCommands> outcomes;
};
using SharedAccess = std::shared_ptr<FileAccess>;

std::vector<Entry> OperationEntries() {
    return {{"Open", 0, "Opens the file in the mode FileOpenMode."},
            {"Close", 1, "Closes it."},
            {"Read", 2, "Reads into FileAccessBuffer."},
            {"Write", 3, "Writes from FileAccessBuffer."},
            {"Delete", 4, "Empties a file that is not open."}};
}

void AddSelectors(FeatureTable& features) {
    features.Enumeration("FileSelector", "The file that the other features are about.")
        .Guru()
        .Entries({{"UserFile", 0, "A file for the user, of up to 64 KiB."},
                  {"Firmware", 1, "The flash of the firmware."}})
        .Local(0);
    features.Enumeration("FileOperationSelector", "What FileOperationExecute does.")
        .Guru()
        .SelectedBy("FileSelector")
        .Entries(OperationEntries())
        .Local(0);
    features.IntSwissKnife(kIndex)
        .Variables({{"FILE", "FileSelectorValue"}, {"OPERATION", "FileOperationSelectorValue"}})
        .Formula("FILE * " + std::to_string(kNumFileOperations) + " + OPERATION");
}

void AddOperation(FeatureTable& features, const SharedAccess& state) {
    features.Command("FileOperationExecute", "Does the selected operation.")
        .Guru()
        .SelectedBy("FileOperationSelector")
        .With("PollingTime", "10")
        .At(0xA000)
        .Indexed(kIndex, kNumCommands, [state](size_t i) {
            IntegerValue value;
            value.get = [=] {
                return uint64_t{
                    state->files.IsBusy(static_cast<DeviceFile>(i / kNumFileOperations))};
            };
            value.set = [=](uint64_t written) {
                if (written != 0) state->Execute(i);
            };
            return value;
        });
    features.Enumeration("FileOpenMode", "For what the file is opened.")
        .Guru()
        .SelectedBy("FileSelector")
        .At(0xA040)
        .Entries({{"Read", 0, "To read."}, {"Write", 1, "To write."}, {"ReadWrite", 2, "Both."}})
        .Indexed("FileSelectorValue", kNumDeviceFiles, [state](size_t i) {
            IntegerValue value;
            value.get = [=] { return static_cast<uint64_t>(state->modes[i]); };
            value.set = [=](uint64_t mode) {
                if (mode > static_cast<uint64_t>(FileOpenMode::ReadWrite)) RefuseValue();
                state->modes[i] = static_cast<FileOpenMode>(mode);
            };
            return value;
        });
}

void AddAccess(FeatureTable& features, const SharedAccess& state) {
    features.Register("FileAccessBuffer", "What is read or written.")
        .Guru()
        .SelectedBy("FileOperationSelector")
        .AtExisting(state->buffer, DeviceFiles::kMaxAccess)
        .Access(ZelCti::Access::ReadWrite)
        .Volatile();
    features.Integer("FileAccessOffset", "Where in the file the operation begins.")
        .Guru()
        .SelectedBy("FileOperationSelector")
        .At(0xA050)
        .Limits(0, Flash::kSize)
        .Unit("B")
        .Get([state] { return state->access.offset; })
        .Check([](uint64_t offset) {
            if (offset > Flash::kSize) RefuseValue();
        })
        .Set([state](uint64_t offset) { state->access.offset = offset; });
    features.Integer("FileAccessLength", "Bytes that the operation reads or writes.")
        .Guru()
        .SelectedBy("FileOperationSelector")
        .At(0xA054)
        .Limits(0, DeviceFiles::kMaxAccess)
        .Unit("B")
        .Get([state] { return state->access.length; })
        .Check([](uint64_t length) {
            if (length > DeviceFiles::kMaxAccess) RefuseValue();
        })
        .Set([state](uint64_t length) { state->access.length = length; });
}

void AddOutcome(FeatureTable& features, const SharedAccess& state) {
    const auto outcome = [&](uint64_t (*get)(const DeviceFiles::Outcome&)) {
        return [state, get](size_t i) {
            IntegerValue value;
            value.get = [=] { return get(state->outcomes[i]); };
            return value;
        };
    };
    features.Enumeration("FileOperationStatus", "Whether the last such operation succeeded.")
        .Guru()
        .SelectedBy("FileOperationSelector")
        .At(0xA080)
        .Volatile()
        .Entries({{"Success", 0, "It did."}, {"Failure", 1, "It did not."}})
        .Indexed(kIndex, kNumCommands,
                 outcome([](const DeviceFiles::Outcome& o) { return uint64_t{!o.done}; }));
    features.Integer("FileOperationResult", "Bytes that the last such operation read or wrote.")
        .Guru()
        .SelectedBy("FileOperationSelector")
        .At(0xA0C0)
        .Volatile()
        .Indexed(kIndex, kNumCommands,
                 outcome([](const DeviceFiles::Outcome& o) { return uint64_t{o.count}; }));
    features.Integer("FileSize", "Size of the file.")
        .Guru()
        .SelectedBy("FileSelector")
        .At(0xA100)
        .Volatile()
        .Unit("B")
        .Indexed("FileSelectorValue", kNumDeviceFiles, [state](size_t i) {
            IntegerValue value;
            value.get = [=] { return state->files.Size(static_cast<DeviceFile>(i)); };
            return value;
        });
}

}  // namespace

void AddFileAccessControl(FeatureTable& features, RegisterSpace& space, DeviceFiles& files) {
    features.Category("FileAccessControl", "Files in the camera.").Guru();
    const uint64_t buffer = features.Memory(kFileBuffer, DeviceFiles::kMaxAccess);
    const auto state = std::make_shared<FileAccess>(files, space, buffer);
    AddSelectors(features);
    AddOperation(features, state);
    AddAccess(features, state);
    AddOutcome(features, state);
}

}  // namespace ZelSim
