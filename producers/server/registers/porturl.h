// Where consumers find a description.
#pragma once

#include <string>

#include "producers/server/base/answer.h"
#include "producers/server/registers/description.h"

namespace ZelSim {

// One of the URLs that a port announces: that of its own description, of a file, or any text.
class PortUrl {
  public:
    // The description must outlive the object.
    explicit PortUrl(const Description& description)
        : text_(description.Url()), description_(&description) {}
    explicit PortUrl(std::string text) : text_(std::move(text)) {}

    // A file of the machine; a relative path is taken from the current folder.
    static PortUrl OfFile(const std::string& path);

    const std::string& Text() const { return text_; }
    void GetInfo(Answer answer) const;  // URL info commands

  private:
    GenTL::URL_SCHEME_ID Scheme() const;  // throws GC_ERR_NOT_AVAILABLE for a text without one
    std::string FileName() const;
    const Description& Local() const;  // throws GC_ERR_NOT_AVAILABLE when it is elsewhere

    std::string text_;
    const Description* description_ = nullptr;
};

}  // namespace ZelSim
