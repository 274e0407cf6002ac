// Exceptions of the library, and the macros that make them:
//
//     throw OUT_OF_RANGE_EXCEPTION("Value %d is too large", value);
//
// GenericException is the base class of all others; it does not derive from std::exception.
// Reentrant.
#ifndef GCBASE_GCEXCEPTION_H
#define GCBASE_GCEXCEPTION_H

#include <cstdarg>
#include <cstdio>
#include <sstream>
#include <string>

#include <Base/GCString.h>
#include <Base/GCTypes.h>

namespace GENICAM_NAMESPACE {

class GCBASE_RTTI_CLASS_API GenericException {
  public:
    // Null texts count as empty.
    GenericException(const char* pDescription, const char* pSourceFileName,
                     unsigned int SourceLine);
    GenericException(const char* pDescription, const char* pSourceFileName, unsigned int SourceLine,
                     const char* pExceptionType);
    GenericException(const char* pDescription, const char* pSourceFileName, unsigned int SourceLine,
                     const char* pEntryPoint, const char* pErrorNodeName,
                     const char* pExceptionType);
    virtual ~GenericException() noexcept;

    // What happened.
    virtual const char* GetDescription() const noexcept;
    // Where the error was detected.
    virtual const char* GetSourceFileName() const noexcept;
    virtual unsigned int GetSourceLine() const noexcept;
    // All of it in one line, as far as it is known: "<description> : <type> thrown in node '<node>'
    // while calling '<operation>' (file '<name>', line <n>)".
    virtual const char* what() const noexcept;

  private:
    unsigned int m_SourceLine;
    gcstring m_SourceFileName;
    gcstring m_Description;
    gcstring m_What;
};

#define DECLARE_EXCEPTION(name)                                                                \
    class GCBASE_RTTI_CLASS_API name : public GenericException {                               \
      public:                                                                                  \
        name(const char* pDescription, const char* pSourceFileName, int SourceLine);           \
        name(const char* pDescription, const char* pSourceFileName, int SourceLine,            \
             const char* pExceptionType);                                                      \
        name(const char* pDescription, const char* pSourceFileName, int SourceLine,            \
             const char* pEntryPoint, const char* pErrorNodeName, const char* pExceptionType); \
        ~name() noexcept override;                                                             \
    }

DECLARE_EXCEPTION(BadAllocException);         // memory is exhausted
DECLARE_EXCEPTION(InvalidArgumentException);  // an argument is invalid
DECLARE_EXCEPTION(OutOfRangeException);       // a value exceeds its limits
DECLARE_EXCEPTION(PropertyException);         // an element of a description does not convert
DECLARE_EXCEPTION(RuntimeException);          // an error outside the program's control
DECLARE_EXCEPTION(LogicalErrorException);     // an error of the program or the description
DECLARE_EXCEPTION(AccessException);           // a node does not allow the operation
DECLARE_EXCEPTION(TimeoutException);          // something took too long
DECLARE_EXCEPTION(DynamicCastException);      // an object lacks the requested interface

// Makes an exception of class E with a formatted description.
template <typename E>
class ExceptionReporter {
  public:
    ExceptionReporter(const char* pSourceFileName, int SourceLine)
        : m_SourceLine(SourceLine), m_SourceFileName(pSourceFileName) {}
    ExceptionReporter(const char* pSourceFileName, int SourceLine, const char* pExceptionType)
        : m_SourceLine(SourceLine), m_SourceFileName(pSourceFileName), m_Type(pExceptionType) {}

    // Formats like printf; cuts off what exceeds the buffer.
    E Report(const char* pFormat, ...) const __attribute__((format(printf, 2, 3))) {
        char description[2048];
        va_list arguments;
        va_start(arguments, pFormat);
        std::vsnprintf(description, sizeof description, pFormat, arguments);
        va_end(arguments);
        return make(description);
    }
    E Report() const { return make(""); }
    E Report(const std::string& s) const { return make(s.c_str()); }
    E Report(const std::stringstream& s) const { return make(s.str().c_str()); }

  private:
    E make(const char* description) const {
        return m_Type.empty()
                   ? E(description, m_SourceFileName.c_str(), m_SourceLine)
                   : E(description, m_SourceFileName.c_str(), m_SourceLine, m_Type.c_str());
    }

    int m_SourceLine;
    gcstring m_SourceFileName;
    gcstring m_Type;
};

// GenericException takes its line as unsigned.
template <>
inline GenericException ExceptionReporter<GenericException>::make(const char* description) const {
    const unsigned int line = static_cast<unsigned int>(m_SourceLine);
    return m_Type.empty()
               ? GenericException(description, m_SourceFileName.c_str(), line)
               : GenericException(description, m_SourceFileName.c_str(), line, m_Type.c_str());
}

}  // namespace GENICAM_NAMESPACE

#define GENICAM_REPORTER(name) \
    GENICAM_NAMESPACE::ExceptionReporter<GENICAM_NAMESPACE::name>(__FILE__, __LINE__, #name).Report

#define GENERIC_EXCEPTION                                                                         \
    GENICAM_NAMESPACE::ExceptionReporter<GENICAM_NAMESPACE::GenericException>(__FILE__, __LINE__) \
        .Report
#define BAD_ALLOC_EXCEPTION GENICAM_REPORTER(BadAllocException)
#define INVALID_ARGUMENT_EXCEPTION GENICAM_REPORTER(InvalidArgumentException)
#define OUT_OF_RANGE_EXCEPTION GENICAM_REPORTER(OutOfRangeException)
#define PROPERTY_EXCEPTION GENICAM_REPORTER(PropertyException)
#define RUNTIME_EXCEPTION GENICAM_REPORTER(RuntimeException)
#define LOGICAL_ERROR_EXCEPTION GENICAM_REPORTER(LogicalErrorException)
#define ACCESS_EXCEPTION GENICAM_REPORTER(AccessException)
#define TIMEOUT_EXCEPTION GENICAM_REPORTER(TimeoutException)
#define DYNAMICCAST_EXCEPTION GENICAM_REPORTER(DynamicCastException)

#define CHECK_RANGE_I64(_Value, _Min, _Max, _Inc)                                               \
    do {                                                                                        \
        const int64_t gcValue = (_Value), gcMin = (_Min), gcMax = (_Max), gcInc = (_Inc);       \
        if (gcValue < gcMin)                                                                    \
            throw OUT_OF_RANGE_EXCEPTION("Value = %" FMT_I64                                    \
                                         "d must be equal or greater than Min = %" FMT_I64 "d", \
                                         gcValue, gcMin);                                       \
        if (gcValue > gcMax)                                                                    \
            throw OUT_OF_RANGE_EXCEPTION("Value = %" FMT_I64                                    \
                                         "d must be equal or smaller than Max = %" FMT_I64 "d", \
                                         gcValue, gcMax);                                       \
        if (gcInc == 0) throw LOGICAL_ERROR_EXCEPTION("Increment must not equal 0!");           \
        /* the difference may exceed int64_t, not uint64_t */                                   \
        if (gcInc > 0 && (static_cast<uint64_t>(gcValue) - static_cast<uint64_t>(gcMin)) %      \
                                 static_cast<uint64_t>(gcInc) !=                                \
                             0)                                                                 \
            throw OUT_OF_RANGE_EXCEPTION(                                                       \
                "The difference between Value = %" FMT_I64 "d and Min = %" FMT_I64              \
                "d must be dividable without rest by Inc = %" FMT_I64 "d",                      \
                gcValue, gcMin, gcInc);                                                         \
    } while (false)

#define CHECK_RANGE_FLT(_Value, _Min, _Max)                                                    \
    do {                                                                                       \
        const double gcValue = (_Value), gcMin = (_Min), gcMax = (_Max);                       \
        if (gcValue < gcMin)                                                                   \
            throw OUT_OF_RANGE_EXCEPTION("Value %f must be greater than or equal %f", gcValue, \
                                         gcMin);                                               \
        if (gcValue > gcMax)                                                                   \
            throw OUT_OF_RANGE_EXCEPTION("Value %f must be smaller than or equal %f", gcValue, \
                                         gcMax);                                               \
    } while (false)

#define CHECK_DYNAMIC_CAST_POINTER(_Pointer)                                               \
    do {                                                                                   \
        if (!(_Pointer)) throw LOGICAL_ERROR_EXCEPTION("Unexpected type in dynamic cast"); \
    } while (false)

#endif  // GCBASE_GCEXCEPTION_H
