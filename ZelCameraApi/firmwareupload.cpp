#include "ZelCameraApi/firmwareupload.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <thread>

namespace ZelCameraApi::Internal {

namespace {

using ZelCam::Device;

constexpr uint64_t kCommandRegister = 0x20006050;
constexpr uint64_t kStatusRegister = 0x20006058;  // its low byte is not 0 while the flash is busy
constexpr uint64_t kProgramControl = 0x20006100;
constexpr uint64_t kPageBuffer = 0x10000300;

constexpr uint32_t kEraseSector = 0x1000000;  // added to the sector's address
constexpr uint32_t kReadStatus = 0x6000000;
constexpr uint32_t kEnableProgram = 0x1000001;
constexpr uint32_t kProgramPage = 0x3400000;

constexpr uint64_t kFlashBegin = 0x400000;
constexpr uint64_t kFlashEnd = 0x800000;
constexpr uint64_t kSectorSize = 0x10000;
constexpr size_t kPageSize = 0x100;
constexpr uint8_t kErased = 0xFF;

constexpr int kPolls = 10;
constexpr int kPollsBeforeStart = 200;  // a sector of a slow flash takes two seconds
constexpr std::chrono::milliseconds kPollInterval(10);

struct FileCloser {
    void operator()(FILE* file) const { fclose(file); }
};

}  // namespace

ZelCamErr FirmwareUpload::Run(const std::vector<uint8_t>& image) {
    EraseAndProgram(image);
    return result_;
}

ZelCamErr FirmwareUpload::RunWhenReady(const std::vector<uint8_t>& image) {
    Flash flash = AwaitReady(kPollsBeforeStart);
    if (flash == Flash::Ready) flash = EraseAndProgram(image);
    return flash == Flash::Busy ? ZelCamErr_GenTL_Busy : result_;
}

FirmwareUpload::Flash FirmwareUpload::EraseAndProgram(const std::vector<uint8_t>& image) {
    for (uint64_t sector = kFlashBegin; sector < kFlashEnd; sector += kSectorSize) {
        const Flash flash = EraseSector(sector);
        if (flash != Flash::Failed) Report(Device::UploadEvent_SectorErased, sector, kFlashEnd);
        if (flash != Flash::Ready) return flash;
    }
    return Program(image);
}

// Reports a step whose status cannot be read, but not an erase command that fails.
FirmwareUpload::Flash FirmwareUpload::EraseSector(uint64_t address) {
    if (!Write(kCommandRegister, static_cast<uint32_t>(address) + kEraseSector)) {
        return Flash::Failed;
    }
    const Flash flash = AwaitReady(kPolls);
    if (flash == Flash::Failed) Report(Device::UploadEvent_Programmed, address, kFlashEnd);
    return flash;
}

FirmwareUpload::Flash FirmwareUpload::Program(const std::vector<uint8_t>& image) {
    const auto page = image.begin() + static_cast<std::ptrdiff_t>(kPageSize);
    if (std::all_of(image.begin(), page, [](uint8_t byte) { return byte == kErased; })) {
        return Flash::Ready;
    }
    if (!Write(kPageBuffer, image.data(), kPageSize) || !Write(kProgramControl, kEnableProgram) ||
        !Write(kCommandRegister, kProgramPage)) {
        return Flash::Failed;
    }
    const Flash flash = AwaitReady(kPolls);
    Report(Device::UploadEvent_Programmed, kFlashBegin, kFlashBegin);
    return flash;
}

FirmwareUpload::Flash FirmwareUpload::AwaitReady(int polls) {
    for (int poll = 0; poll < polls; ++poll) {
        if (poll > 0) std::this_thread::sleep_for(kPollInterval);
        if (!Write(kCommandRegister, kReadStatus)) return Flash::Failed;
        uint32_t status = 0;
        result_ = device_.ReadMem(kStatusRegister, &status, sizeof status);
        if (result_ != ZelCamErr_Success) return Flash::Failed;
        if ((status & 0xFF) == 0) return Flash::Ready;
    }
    return Flash::Busy;
}

bool FirmwareUpload::Write(uint64_t address, uint32_t value) {
    return Write(address, &value, sizeof value);
}

bool FirmwareUpload::Write(uint64_t address, const void* data, size_t size) {
    result_ = device_.WriteMem(address, data, size, nullptr);
    return result_ == ZelCamErr_Success;
}

void FirmwareUpload::Report(Device::UploadEventType type, uint64_t current, uint64_t end) const {
    if (!progress_) return;
    // Codes are negative; the conversion keeps the sign in all bits of the field.
    const auto code = static_cast<uint64_t>(int64_t{result_});
    progress_(type, Device::UploadEventData{kFlashBegin, current, end, code});
}

ZelCamErr ReadFirmware(const char* fileName, std::vector<uint8_t>& image) {
    if (fileName == nullptr) return ZelCamErr_FileOpenFailed;
    std::error_code ignored;
    const auto status = std::filesystem::status(fileName, ignored);
    // Devices count as empty, and opening a pipe would block.
    if (exists(status) && !is_regular_file(status)) return ZelCamErr_InvalidFile;
    const std::unique_ptr<FILE, FileCloser> file(fopen(fileName, "rb"));
    if (file == nullptr) return ZelCamErr_FileOpenFailed;
    if (fseek(file.get(), 0, SEEK_END) != 0) return ZelCamErr_InvalidFile;
    const long size = ftell(file.get());
    if (size != 0 || fseek(file.get(), 0, SEEK_SET) != 0) return ZelCamErr_InvalidFile;
    // Files of the kernel have contents although their size is 0.
    if (fgetc(file.get()) != EOF || ferror(file.get()) != 0) return ZelCamErr_InvalidFile;
    image.assign(kPageSize, kErased);
    return ZelCamErr_Success;
}

}  // namespace ZelCameraApi::Internal
