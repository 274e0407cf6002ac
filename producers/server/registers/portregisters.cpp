#include "producers/server/registers/portregisters.h"

#include "producers/server/base/error.h"

namespace ZelCti {

PortRegisters::Content& PortRegisters::GetContent() {
    if (Content* const made = made_.load(std::memory_order_acquire)) return *made;
    const std::lock_guard lock(mutex_);
    if (content_ == nullptr) {
        auto content = std::make_unique<Content>(lastAddress_, order_);
        content->description = make_(content->space);
        if (content->description != nullptr) {
            content->descriptionPlace.address = Description::kAddress;
            content->descriptionPlace.size = content->description->Size();
            content->descriptionPlace.access = Access::ReadOnly;
        }
        content_ = std::move(content);
        made_.store(content_.get(), std::memory_order_release);
    }
    return *content_;
}

std::vector<PortUrl> PortRegisters::Urls() {
    const Content& content = GetContent();
    if (content.description == nullptr) return {};
    return {PortUrl(*content.description)};
}

void PortRegisters::Read(uint64_t address, void* buffer, size_t size) {
    Content& content = GetContent();
    if (content.IsDescription(address, size)) {
        return content.description->Read(address, buffer, size);
    }
    content.space.Read(address, buffer, size);
}

void PortRegisters::Write(uint64_t address, const void* buffer, size_t size) {
    Content& content = GetContent();
    if (content.IsDescription(address, size)) {
        throw Error(GenTL::GC_ERR_ACCESS_DENIED, "the description is read-only");
    }
    content.space.Write(address, buffer, size);
}

const Register* PortRegisters::Find(uint64_t address, size_t size) {
    Content& content = GetContent();
    if (content.IsDescription(address, size)) return &content.descriptionPlace;
    return content.space.Find(address, size);
}

}  // namespace ZelCti
