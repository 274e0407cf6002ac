#include "producers/server/registers/description.h"

#include <cstring>
#include <sstream>
#include <utility>

#include "producers/server/registers/ziparchive.h"

namespace ZelCti {

namespace {

constexpr size_t kRegisterSize = 4;  // consumers read whole registers

}  // namespace

Description::Description(const std::string& name, std::string text, Form form)
    : fileName_(name + (form == Form::Zip ? ".zip" : ".xml")),
      bytes_(form == Form::Zip ? ZipArchiveOf(name + ".xml", text) : std::move(text)),
      size_(bytes_.size()) {
    bytes_.resize((size_ + kRegisterSize - 1) / kRegisterSize * kRegisterSize);
}

std::string Description::Url() const {
    std::ostringstream url;
    url << "Local:" << fileName_ << ';' << std::hex << std::uppercase << kAddress << ';' << size_
        << "?SchemaVersion=1.1.0";
    return url.str();
}

bool Description::Contains(uint64_t address, size_t size) const {
    return address >= kAddress && size <= bytes_.size() &&
           address - kAddress <= bytes_.size() - size;
}

void Description::Read(uint64_t address, void* buffer, size_t size) const {
    std::memcpy(buffer, bytes_.data() + (address - kAddress), size);
}

}  // namespace ZelCti
