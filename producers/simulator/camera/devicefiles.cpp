#include "producers/simulator/camera/devicefiles.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ZelSim {

namespace {

constexpr DeviceFiles::Outcome kFailed{false, 0};

}  // namespace

size_t DeviceFiles::Size(DeviceFile file) const {
    return file == DeviceFile::Firmware ? Flash::kSize : userFile_.size();
}

DeviceFiles::Outcome DeviceFiles::Execute(DeviceFile file, FileOperation operation,
                                          const Access& access, uint8_t* buffer) {
    State& state = StateOf(file);
    switch (operation) {
        case FileOperation::Open:
            return Open(file, access.mode);
        case FileOperation::Close:
            return {std::exchange(state.isOpen, false), 0};
        case FileOperation::Read:
            return Read(file, access, buffer);
        case FileOperation::Write:
            return Write(file, access, buffer);
        case FileOperation::Delete:
            return Delete(file);
    }
    return kFailed;
}

DeviceFiles::Outcome DeviceFiles::Open(DeviceFile file, FileOpenMode mode) {
    State& state = StateOf(file);
    if (state.isOpen) return kFailed;
    state = {true, mode};
    if (file == DeviceFile::UserFile && mode == FileOpenMode::Write) userFile_.clear();
    return {};
}

DeviceFiles::Outcome DeviceFiles::Delete(DeviceFile file) {
    if (file == DeviceFile::Firmware || StateOf(file).isOpen) return kFailed;
    userFile_.clear();
    return {};
}

DeviceFiles::Outcome DeviceFiles::Read(DeviceFile file, const Access& access,
                                       uint8_t* buffer) const {
    const State& state = StateOf(file);
    if (!state.isOpen || state.mode == FileOpenMode::Write) return kFailed;
    const size_t size = Size(file);
    const size_t offset = std::min(access.offset, size);
    const size_t count = std::min(access.length, size - offset);
    if (file == DeviceFile::Firmware) {
        flash_.ReadFile(offset, buffer, count);
    } else {
        std::copy_n(userFile_.begin() + static_cast<ptrdiff_t>(offset), count, buffer);
    }
    return {true, count};
}

DeviceFiles::Outcome DeviceFiles::Write(DeviceFile file, const Access& access,
                                        const uint8_t* buffer) {
    const State& state = StateOf(file);
    if (!state.isOpen || state.mode == FileOpenMode::Read) return kFailed;
    const size_t capacity = file == DeviceFile::Firmware ? Flash::kSize : kMaxUserFile;
    if (access.offset >= capacity && access.length != 0) return kFailed;
    const size_t offset = std::min(access.offset, capacity);
    const size_t count = std::min(access.length, capacity - offset);
    if (file == DeviceFile::Firmware) {
        flash_.WriteFile(offset, buffer, count);
    } else if (count != 0) {
        userFile_.resize(std::max(userFile_.size(), offset + count));
        std::memcpy(userFile_.data() + offset, buffer, count);
    }
    return {true, count};
}

}  // namespace ZelSim
