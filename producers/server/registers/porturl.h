// Where consumers find a description.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "producers/server/base/answer.h"
#include "producers/server/registers/description.h"

namespace ZelCti {

// One of the URLs that a port announces: a file in its registers, a file of the machine, or any
// text.
class PortUrl {
  public:
    // Where a file is in the registers of the port.
    struct LocalFile {
        std::string name;
        uint64_t address = 0;
        size_t size = 0;
    };

    explicit PortUrl(const Description& description)
        : PortUrl(description.Url(),
                  {description.FileName(), Description::kAddress, description.Size()}) {}
    PortUrl(std::string text, LocalFile file) : text_(std::move(text)), local_(std::move(file)) {}
    explicit PortUrl(std::string text) : text_(std::move(text)) {}

    // A file of the machine; a relative path is taken from the current folder.
    static PortUrl OfFile(const std::string& path);

    const std::string& Text() const { return text_; }
    void GetInfo(Answer answer) const;  // URL info commands

  private:
    GenTL::URL_SCHEME_ID Scheme() const;  // throws GC_ERR_NOT_AVAILABLE for a text without one
    std::string FileName() const;
    const LocalFile& Local() const;  // throws GC_ERR_NOT_AVAILABLE when it is elsewhere

    std::string text_;
    std::optional<LocalFile> local_;
};

}  // namespace ZelCti
