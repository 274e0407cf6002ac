// The files of a camera as streams, over the features of its file access (FileSelector,
// FileOperationSelector, ...):
//
//     ODevFileStream out(map, "UserSet1");       IDevFileStream in(map, "UserSet1");
//     out << text;                               in >> word;
//     out.close();
#ifndef GENAPI_FILESTREAM_H
#define GENAPI_FILESTREAM_H

#include <cstddef>
#include <cstdint>
#include <ios>
#include <istream>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include <GenApi/GenApiDll.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Pointer.h>

namespace GENAPI_NAMESPACE {

// The file operations of a camera. An operation whose success the camera does not confirm returns
// false or -1. An operation before attach throws LogicalErrorException, one that takes longer than
// a minute TimeoutException; exceptions of the nodes pass through. Reentrant; each operation holds
// the lock of the map throughout.
class GENAPI_DECL FileProtocolAdapter {
  public:
    FileProtocolAdapter();
    virtual ~FileProtocolAdapter();

    // Uses the features of a map, which must outlive the adapter's use. False, and not attached,
    // for null or if a feature other than FileSize is missing.
    virtual bool attach(INodeMap* pInterface);

    // For reading (in), writing (out), or both.
    virtual bool openFile(const char* pFileName, std::ios_base::openmode mode);
    virtual bool closeFile(const char* pFileName);
    virtual bool deleteFile(const char* pFileName);

    // Returns the number of transferred bytes, which is smaller than requested at the end of the
    // file.
    virtual std::streamsize write(const char* buf, int64_t offs, int64_t len,
                                  const char* pFileName);
    virtual std::streamsize read(char* buf, int64_t offs, std::streamsize len,
                                 const char* pFileName);

    // The number of bytes that the camera transfers at once; larger transfers are split.
    virtual int64_t getBufSize(const char* pFileName, std::ios_base::openmode mode);
    // The length of the file, -1 if the camera does not report it.
    virtual int64_t getFileSize(const char* pFileName);

  private:
    void Select(const char* pFileName, const char* pOperation);
    bool Execute();
    int64_t GetBufferLength();
    int64_t WritePart(const char* pData, int64_t Offset, int64_t Length);
    int64_t ReadPart(char* pData, int64_t Offset, int64_t Length);

    INodeMap* m_pNodeMap;
    CEnumerationPtr m_ptrFileSelector;
    CEnumerationPtr m_ptrFileOperationSelector;
    CEnumerationPtr m_ptrFileOpenMode;
    CEnumerationPtr m_ptrFileOperationStatus;
    CCommandPtr m_ptrFileOperationExecute;
    CRegisterPtr m_ptrFileAccessBuffer;
    CIntegerPtr m_ptrFileAccessOffset;
    CIntegerPtr m_ptrFileAccessLength;
    CIntegerPtr m_ptrFileOperationResult;
    CIntegerPtr m_ptrFileSize;
};

// The common part of the buffers for both directions: an open file. Thread-bound.
template <typename CharType, typename Traits = std::char_traits<CharType>>
class DevFileStreamBuf : public std::basic_streambuf<CharType, Traits> {
    static_assert(sizeof(CharType) == 1, "files of cameras consist of bytes");

  public:
    DevFileStreamBuf() : m_Offset(0), m_IsOpen(false) {}
    DevFileStreamBuf(const DevFileStreamBuf&) = delete;
    DevFileStreamBuf& operator=(const DevFileStreamBuf&) = delete;

    // Null if a file is open already, or if this one cannot be opened.
    DevFileStreamBuf* open(INodeMap* pInterface, const char* pFileName,
                           std::ios_base::openmode mode) {
        if (m_IsOpen || pFileName == nullptr || !m_Adapter.attach(pInterface)) return nullptr;
        if (!m_Adapter.openFile(pFileName, mode)) return nullptr;
        m_IsOpen = true;
        m_FileName = pFileName;
        if (Prepare(mode)) return this;
        close();
        return nullptr;
    }

    // Null if no file is open, or if the camera cannot close it.
    DevFileStreamBuf* close() {
        if (!m_IsOpen) return nullptr;
        m_IsOpen = false;
        return m_Adapter.closeFile(m_FileName.c_str()) ? this : nullptr;
    }

    bool is_open() const { return m_IsOpen; }

  protected:
    // For destructors, which must not throw exceptions of the nodes or of the consumer's port.
    void CloseQuietly() {
        try {
            close();
        } catch (...) {
        }
    }

    FileProtocolAdapter m_Adapter;
    std::string m_FileName;
    std::vector<CharType> m_Buffer;
    int64_t m_Offset;  // in the file, of the byte after the buffer

  private:
    // Some cameras report the size of the buffer only while the file is open.
    bool Prepare(std::ios_base::openmode mode) {
        const int64_t size = m_Adapter.getBufSize(m_FileName.c_str(), mode);
        if (size <= 0) return false;
        m_Buffer.resize(static_cast<size_t>(size));
        const bool isAtEnd = (mode & (std::ios_base::app | std::ios_base::ate)) != 0;
        m_Offset = isAtEnd ? m_Adapter.getFileSize(m_FileName.c_str()) : 0;
        return m_Offset >= 0;
    }

    bool m_IsOpen;
};

template <typename CharType, typename Traits = std::char_traits<CharType>>
class ODevFileStreamBuf : public DevFileStreamBuf<CharType, Traits> {
    using Base = DevFileStreamBuf<CharType, Traits>;

  public:
    ~ODevFileStreamBuf() override { CloseQuietly(); }

    ODevFileStreamBuf* open(INodeMap* pInterface, const char* pFileName,
                            std::ios_base::openmode mode) {
        if (Base::open(pInterface, pFileName, mode | std::ios_base::out) == nullptr) return nullptr;
        Empty();
        return this;
    }

    // Writes the rest of the buffer.
    ODevFileStreamBuf* close() {
        if (!this->is_open()) return nullptr;
        bool written = false;
        try {
            written = Flush();
        } catch (...) {
            Leave();
            throw;
        }
        return Leave() && written ? this : nullptr;
    }

  protected:
    typename Traits::int_type overflow(typename Traits::int_type c) override {
        if (!this->is_open() || !Flush()) return Traits::eof();
        if (Traits::eq_int_type(c, Traits::eof())) return Traits::not_eof(c);
        return this->sputc(Traits::to_char_type(c));
    }

    int sync() override { return this->is_open() && Flush() ? 0 : -1; }

  private:
    void Empty() {
        this->setp(this->m_Buffer.data(), this->m_Buffer.data() + this->m_Buffer.size());
    }

    // Bytes that cannot be written are lost.
    bool Flush() {
        const std::streamsize length = this->pptr() - this->pbase();
        const char* const data = reinterpret_cast<const char*>(this->pbase());
        Empty();
        if (length == 0) return true;
        const std::streamsize written =
            this->m_Adapter.write(data, this->m_Offset, length, this->m_FileName.c_str());
        if (written > 0) this->m_Offset += written;
        return written == length;
    }

    bool Leave() {
        this->setp(nullptr, nullptr);
        return Base::close() != nullptr;
    }

    void CloseQuietly() {
        try {
            close();
        } catch (...) {
            Base::CloseQuietly();
        }
    }
};

template <typename CharType, typename Traits = std::char_traits<CharType>>
class IDevFileStreamBuf : public DevFileStreamBuf<CharType, Traits> {
    using Base = DevFileStreamBuf<CharType, Traits>;

  public:
    ~IDevFileStreamBuf() override { this->CloseQuietly(); }

    IDevFileStreamBuf* open(INodeMap* pInterface, const char* pFileName,
                            std::ios_base::openmode mode) {
        if (Base::open(pInterface, pFileName, mode | std::ios_base::in) == nullptr) return nullptr;
        this->setg(nullptr, nullptr, nullptr);
        return this;
    }

    IDevFileStreamBuf* close() {
        this->setg(nullptr, nullptr, nullptr);
        return Base::close() == nullptr ? nullptr : this;
    }

  protected:
    typename Traits::int_type underflow() override {
        if (!this->is_open()) return Traits::eof();
        CharType* const data = this->m_Buffer.data();
        const std::streamsize length = this->m_Adapter.read(
            reinterpret_cast<char*>(data), this->m_Offset,
            static_cast<std::streamsize>(this->m_Buffer.size()), this->m_FileName.c_str());
        if (length <= 0) return Traits::eof();
        this->m_Offset += length;
        this->setg(data, data, data + length);
        return Traits::to_int_type(*data);
    }
};

// A file of a camera for writing. Like std::ofstream it sets failbit if the file cannot be opened
// or closed, and badbit if it cannot be written; unlike it, open and close pass exceptions of the
// nodes on. Seeking is not supported. The map must outlive the open file. Thread-bound.
template <typename CharType, typename Traits = std::char_traits<CharType>>
class ODevFileStreamBase : public std::basic_ostream<CharType, Traits> {
  public:
    using filebuf_type = ODevFileStreamBuf<CharType, Traits>;

    ODevFileStreamBase() : std::basic_ostream<CharType, Traits>(nullptr) { this->init(&m_Buf); }
    ODevFileStreamBase(INodeMap* pInterface, const char* pFileName,
                       std::ios_base::openmode mode = std::ios_base::out | std::ios_base::trunc)
        : ODevFileStreamBase() {
        open(pInterface, pFileName, mode);
    }

    filebuf_type* rdbuf() const { return const_cast<filebuf_type*>(&m_Buf); }
    bool is_open() const { return m_Buf.is_open(); }

    // With app or ate, writing begins at the end of the file; the camera must then have FileSize.
    void open(INodeMap* pInterface, const char* pFileName,
              std::ios_base::openmode mode = std::ios_base::out | std::ios_base::trunc) {
        if (m_Buf.open(pInterface, pFileName, mode) == nullptr) {
            this->setstate(std::ios_base::failbit);
        } else {
            this->clear();
        }
    }

    void close() {
        if (m_Buf.close() == nullptr) this->setstate(std::ios_base::failbit);
    }

  private:
    filebuf_type m_Buf;
};

// A file of a camera for reading; otherwise like ODevFileStreamBase, and std::ifstream.
template <typename CharType, typename Traits = std::char_traits<CharType>>
class IDevFileStreamBase : public std::basic_istream<CharType, Traits> {
  public:
    using filebuf_type = IDevFileStreamBuf<CharType, Traits>;

    IDevFileStreamBase() : std::basic_istream<CharType, Traits>(nullptr) { this->init(&m_Buf); }
    IDevFileStreamBase(INodeMap* pInterface, const char* pFileName,
                       std::ios_base::openmode mode = std::ios_base::in)
        : IDevFileStreamBase() {
        open(pInterface, pFileName, mode);
    }

    filebuf_type* rdbuf() const { return const_cast<filebuf_type*>(&m_Buf); }
    bool is_open() const { return m_Buf.is_open(); }

    void open(INodeMap* pInterface, const char* pFileName,
              std::ios_base::openmode mode = std::ios_base::in) {
        if (m_Buf.open(pInterface, pFileName, mode) == nullptr) {
            this->setstate(std::ios_base::failbit);
        } else {
            this->clear();
        }
    }

    void close() {
        if (m_Buf.close() == nullptr) this->setstate(std::ios_base::failbit);
    }

  private:
    filebuf_type m_Buf;
};

using ODevFileStream = ODevFileStreamBase<char>;
using IDevFileStream = IDevFileStreamBase<char>;

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_FILESTREAM_H
