#include <algorithm>
#include <chrono>

#include <GenApi/Filestream.h>
#include <GenApi/Synch.h>

#include "genapi/persistence/command.h"

namespace GENAPI_NAMESPACE {

namespace {

constexpr std::chrono::seconds kTimeout(60);

// Bounds the buffer, whatever length a description claims for it.
constexpr int64_t kMaxBufferLength = int64_t(1) << 20;

const char* OpenModeOf(std::ios_base::openmode mode) {
    const bool isIn = (mode & std::ios_base::in) != 0;
    const bool isOut = (mode & (std::ios_base::out | std::ios_base::app)) != 0;
    if (isIn && isOut) return "ReadWrite";
    return isOut ? "Write" : "Read";
}

// An operation in progress: checks that the features exist, and holds the lock of the map.
class Operation {
  public:
    explicit Operation(INodeMap* nodeMap) : lock_(Checked(nodeMap).GetLock()) {}

  private:
    static INodeMap& Checked(INodeMap* nodeMap) {
        if (nodeMap == nullptr)
            throw LOGICAL_ERROR_EXCEPTION("The file protocol adapter is not attached");
        return *nodeMap;
    }

    AutoLock lock_;
};

}  // namespace

FileProtocolAdapter::FileProtocolAdapter() : m_pNodeMap(nullptr) {}

FileProtocolAdapter::~FileProtocolAdapter() = default;

bool FileProtocolAdapter::attach(INodeMap* pInterface) {
    m_pNodeMap = nullptr;
    if (pInterface == nullptr) return false;
    const auto take = [pInterface](auto& pointer, const char* name) {
        pointer = pInterface->GetNode(name);
        return pointer.IsValid();
    };
    take(m_ptrFileSize, "FileSize");
    const bool isComplete = take(m_ptrFileSelector, "FileSelector") &&
                            take(m_ptrFileOperationSelector, "FileOperationSelector") &&
                            take(m_ptrFileOperationExecute, "FileOperationExecute") &&
                            take(m_ptrFileOperationStatus, "FileOperationStatus") &&
                            take(m_ptrFileOperationResult, "FileOperationResult") &&
                            take(m_ptrFileOpenMode, "FileOpenMode") &&
                            take(m_ptrFileAccessBuffer, "FileAccessBuffer") &&
                            take(m_ptrFileAccessOffset, "FileAccessOffset") &&
                            take(m_ptrFileAccessLength, "FileAccessLength");
    if (isComplete) m_pNodeMap = pInterface;
    return isComplete;
}

bool FileProtocolAdapter::openFile(const char* pFileName, std::ios_base::openmode mode) {
    const Operation operation(m_pNodeMap);
    Select(pFileName, "Open");
    m_ptrFileOpenMode->FromString(OpenModeOf(mode));
    return Execute();
}

bool FileProtocolAdapter::closeFile(const char* pFileName) {
    const Operation operation(m_pNodeMap);
    Select(pFileName, "Close");
    return Execute();
}

bool FileProtocolAdapter::deleteFile(const char* pFileName) {
    const Operation operation(m_pNodeMap);
    Select(pFileName, "Delete");
    return Execute();
}

std::streamsize FileProtocolAdapter::write(const char* buf, int64_t offs, int64_t len,
                                           const char* pFileName) {
    const Operation operation(m_pNodeMap);
    Select(pFileName, "Write");
    int64_t done = 0;
    while (done < len) {
        const int64_t part = WritePart(buf + done, offs + done, len - done);
        if (part < 0) return -1;
        if (part == 0) break;
        done += part;
    }
    return static_cast<std::streamsize>(done);
}

std::streamsize FileProtocolAdapter::read(char* buf, int64_t offs, std::streamsize len,
                                          const char* pFileName) {
    const Operation operation(m_pNodeMap);
    Select(pFileName, "Read");
    std::streamsize done = 0;
    while (done < len) {
        const int64_t part = ReadPart(buf + done, offs + done, len - done);
        if (part < 0) return -1;
        if (part == 0) break;
        done += static_cast<std::streamsize>(part);
    }
    return done;
}

int64_t FileProtocolAdapter::getBufSize(const char* pFileName, std::ios_base::openmode mode) {
    const Operation operation(m_pNodeMap);
    const bool isOut = (mode & (std::ios_base::out | std::ios_base::app)) != 0;
    Select(pFileName, isOut ? "Write" : "Read");
    return GetBufferLength();
}

int64_t FileProtocolAdapter::getFileSize(const char* pFileName) {
    const Operation operation(m_pNodeMap);
    m_ptrFileSelector->FromString(pFileName);
    return IsReadable(m_ptrFileSize) ? m_ptrFileSize->GetValue(false, true) : -1;
}

void FileProtocolAdapter::Select(const char* pFileName, const char* pOperation) {
    m_ptrFileSelector->FromString(pFileName);
    m_ptrFileOperationSelector->FromString(pOperation);
}

bool FileProtocolAdapter::Execute() {
    if (!Engine::ExecuteAndWait(*m_ptrFileOperationExecute, kTimeout))
        throw TIMEOUT_EXCEPTION("The file operation of the camera does not end");
    return m_ptrFileOperationStatus->ToString(false, true) == "Success";
}

int64_t FileProtocolAdapter::GetBufferLength() {
    return std::min({m_ptrFileAccessBuffer->GetLength(), kMaxBufferLength,
                     IsAvailable(m_ptrFileAccessLength) ? m_ptrFileAccessLength->GetMax() : 0});
}

int64_t FileProtocolAdapter::WritePart(const char* pData, int64_t Offset, int64_t Length) {
    const int64_t part = std::min(Length, GetBufferLength());
    if (part <= 0) return 0;
    m_ptrFileAccessOffset->SetValue(Offset);
    m_ptrFileAccessLength->SetValue(part);
    m_ptrFileAccessBuffer->Set(reinterpret_cast<const uint8_t*>(pData), part);
    if (!Execute()) return -1;
    return std::min(part, m_ptrFileOperationResult->GetValue(false, true));
}

int64_t FileProtocolAdapter::ReadPart(char* pData, int64_t Offset, int64_t Length) {
    const int64_t wanted = std::min(Length, GetBufferLength());
    if (wanted <= 0) return 0;
    m_ptrFileAccessOffset->SetValue(Offset);
    m_ptrFileAccessLength->SetValue(wanted);
    if (!Execute()) return -1;
    const int64_t part = std::min(wanted, m_ptrFileOperationResult->GetValue(false, true));
    if (part > 0) m_ptrFileAccessBuffer->Get(reinterpret_cast<uint8_t*>(pData), part, false, true);
    return part;
}

}  // namespace GENAPI_NAMESPACE
