// Register descriptions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ZelCti {

// The GenApi description of a module, as a file that is read through the port of the module itself:
// it takes a range of addresses, up to the next multiple of 4, that reads as the file and as zeros
// after it. Immutable.
class Description {
  public:
    enum class Form { Xml, Zip };

    static constexpr uint64_t kAddress = 0x80000000;

    // `name` is the name of the file without its extension.
    Description(const std::string& name, std::string text, Form form);

    const std::string& FileName() const { return fileName_; }
    size_t Size() const { return size_; }
    std::string Url() const;

    // Whether the description holds a range of addresses.
    bool Contains(uint64_t address, size_t size) const;

    // For a range within.
    void Read(uint64_t address, void* buffer, size_t size) const;

  private:
    std::string fileName_;
    std::string bytes_;  // of the file, padded
    size_t size_;        // of the file
};

}  // namespace ZelCti
