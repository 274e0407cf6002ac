#include "genapi/adapters/hexid.h"

#include <algorithm>

namespace GENAPI_NAMESPACE {
namespace Engine {
namespace {

const char kDigits[] = "0123456789ABCDEF";

char Capital(char c) {
    return 'a' <= c && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

bool ParseHexId(const GENICAM_NAMESPACE::gcstring& text, std::string& id) {
    id.assign(text.c_str(), text.length());
    std::transform(id.begin(), id.end(), id.begin(), Capital);
    id.erase(0, id.find_first_not_of('0'));
    return text.length() > 0 && id.find_first_not_of(kDigits) == std::string::npos;
}

std::string HexId(uint64_t number) {
    char digits[16];
    char* first = digits + sizeof digits;
    for (; number != 0; number >>= 4) {
        *--first = kDigits[number & 0xF];
    }
    return std::string(first, digits + sizeof digits);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
