#include <Base/GCException.h>

namespace GENICAM_NAMESPACE {

namespace {

const char* BaseName(const char* path) {
    const char* base = path;
    for (const char* c = path; *c; ++c)
        if (*c == '/' || *c == '\\') base = c + 1;
    return base;
}

// Room for the usual parts of a text beside the description.
constexpr size_t kUsualDetails = 200;

bool IsGiven(const char* text) {
    return text && *text;
}

// Applications catch exceptions to tell unreadable features apart, so exceptions are frequent: the
// text is built once, in one allocation.
gcstring Assemble(const gcstring& description, const char* fileName, unsigned int line,
                  const char* entryPoint, const char* errorNode, const char* type) {
    gcstring text;
    text.reserve(description.length() + kUsualDetails);
    text += description;
    const auto add = [&text](const char* before, const char* detail, const char* after) {
        text += before;
        text += detail;
        text += after;
    };
    if (IsGiven(type)) add(" : ", type, " thrown");
    if (IsGiven(errorNode)) add(" in node '", errorNode, "'");
    if (IsGiven(entryPoint)) add(" while calling '", entryPoint, "'");
    add(" (file '", BaseName(fileName), "', line ");
    text += std::to_string(line).c_str();
    text += ')';
    return text;
}

}  // namespace

GenericException::GenericException(const char* pDescription, const char* pSourceFileName,
                                   unsigned int SourceLine)
    : GenericException(pDescription, pSourceFileName, SourceLine, nullptr, nullptr, nullptr) {}

GenericException::GenericException(const char* pDescription, const char* pSourceFileName,
                                   unsigned int SourceLine, const char* pExceptionType)
    : GenericException(pDescription, pSourceFileName, SourceLine, nullptr, nullptr,
                       pExceptionType) {}

GenericException::GenericException(const char* pDescription, const char* pSourceFileName,
                                   unsigned int SourceLine, const char* pEntryPoint,
                                   const char* pErrorNodeName, const char* pExceptionType)
    : m_SourceLine(SourceLine),
      m_SourceFileName(pSourceFileName),
      m_Description(pDescription),
      m_What(Assemble(m_Description, m_SourceFileName.c_str(), SourceLine, pEntryPoint,
                      pErrorNodeName, pExceptionType)) {}

GenericException::~GenericException() noexcept = default;

const char* GenericException::GetDescription() const noexcept {
    return m_Description.c_str();
}

const char* GenericException::GetSourceFileName() const noexcept {
    return m_SourceFileName.c_str();
}

unsigned int GenericException::GetSourceLine() const noexcept {
    return m_SourceLine;
}

const char* GenericException::what() const noexcept {
    return m_What.c_str();
}

#define DEFINE_EXCEPTION(name)                                                                     \
    name::name(const char* pDescription, const char* pSourceFileName, int SourceLine)              \
        : GenericException(pDescription, pSourceFileName, static_cast<unsigned int>(SourceLine)) { \
    }                                                                                              \
    name::name(const char* pDescription, const char* pSourceFileName, int SourceLine,              \
               const char* pExceptionType)                                                         \
        : GenericException(pDescription, pSourceFileName, static_cast<unsigned int>(SourceLine),   \
                           pExceptionType) {}                                                      \
    name::name(const char* pDescription, const char* pSourceFileName, int SourceLine,              \
               const char* pEntryPoint, const char* pErrorNodeName, const char* pExceptionType)    \
        : GenericException(pDescription, pSourceFileName, static_cast<unsigned int>(SourceLine),   \
                           pEntryPoint, pErrorNodeName, pExceptionType) {}                         \
    name::~name() noexcept = default

DEFINE_EXCEPTION(BadAllocException);
DEFINE_EXCEPTION(InvalidArgumentException);
DEFINE_EXCEPTION(OutOfRangeException);
DEFINE_EXCEPTION(PropertyException);
DEFINE_EXCEPTION(RuntimeException);
DEFINE_EXCEPTION(LogicalErrorException);
DEFINE_EXCEPTION(AccessException);
DEFINE_EXCEPTION(TimeoutException);
DEFINE_EXCEPTION(DynamicCastException);

}  // namespace GENICAM_NAMESPACE
