// A folder of files that only this user can have written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ZelGev {

// The folder zelcam/descriptions. It must belong to the user of this process, and nobody else may
// write it; the same goes for the folders between, and for its files. All throw std::system_error
// or std::runtime_error for what fails or is not so. Thread-safe.
class PrivateFolder {
  public:
    enum class Use : uint8_t { Read, Write };  // to write, it is made if it is missing

    PrivateFolder(const std::string& base, Use use);
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;

    // Returns false for a file of another size, or that is not to be trusted. A file that was read
    // counts as new.
    bool Read(const std::string& name, uint8_t* content, size_t size) const;

    // Puts a file there at once, in place of another one.
    void Write(const std::string& name, const uint8_t* content, size_t size) const;

    // Removes the oldest files until the others have no more bytes than this.
    void Trim(size_t maxSize) const;

  private:
    int descriptor_;
};

}  // namespace ZelGev
