#include "producers/server/registers/porturl.h"

#include <filesystem>

#include "producers/server/base/error.h"

namespace ZelCti {

PortUrl PortUrl::OfFile(const std::string& path) {
    return PortUrl("File://" + std::filesystem::absolute(path).string());
}

void PortUrl::GetInfo(Answer answer) const {
    switch (answer.Command()) {
        case GenTL::URL_INFO_URL:
            return answer.String(text_);
        case GenTL::URL_INFO_SCHEMA_VER_MAJOR:
        case GenTL::URL_INFO_SCHEMA_VER_MINOR:
        case GenTL::URL_INFO_FILE_VER_MAJOR:
            return Local(), answer.Int32(1);
        case GenTL::URL_INFO_FILE_VER_MINOR:
        case GenTL::URL_INFO_FILE_VER_SUBMINOR:
            return Local(), answer.Int32(0);
        case GenTL::URL_INFO_FILE_SHA1_HASH:
            throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the hash of the file is not known");
        case GenTL::URL_INFO_FILE_REGISTER_ADDRESS:
            return answer.Uint64(Local().address);
        case GenTL::URL_INFO_FILE_SIZE:
            return answer.Uint64(Local().size);
        case GenTL::URL_INFO_SCHEME:
            return answer.Int32(Scheme());
        case GenTL::URL_INFO_FILENAME:
            return answer.String(FileName());
        default:
            throw Error(GenTL::GC_ERR_NOT_IMPLEMENTED, "unknown URL info command");
    }
}

const PortUrl::LocalFile& PortUrl::Local() const {
    if (local_) return *local_;
    throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "the port does not hold the file");
}

GenTL::URL_SCHEME_ID PortUrl::Scheme() const {
    if (local_) return GenTL::URL_SCHEME_LOCAL;
    const std::string scheme = text_.substr(0, text_.find(':'));
    if (scheme == "File") return GenTL::URL_SCHEME_FILE;
    if (scheme == "http") return GenTL::URL_SCHEME_HTTP;
    throw Error(GenTL::GC_ERR_NOT_AVAILABLE, "a URL without a known scheme");
}

std::string PortUrl::FileName() const {
    if (local_) return local_->name;
    return text_.substr(text_.rfind('/') + 1);
}

}  // namespace ZelCti
