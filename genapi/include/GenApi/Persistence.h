// Stores the settings of a camera as a text, and loads them.
//
//     CFeatureBag bag;
//     bag.StoreToBag(map);              bag.LoadFromBag(map, true, &errors);
//     file << bag;                      file >> bag;
#ifndef GENAPI_PERSISTENCE_H
#define GENAPI_PERSISTENCE_H

#include <cstddef>
#include <istream>
#include <ostream>
#include <streambuf>
#include <string>

#include <Base/GCException.h>
#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <GenApi/GenApiDll.h>
#include <GenApi/GenApiVersion.h>
#include <GenApi/INodeMap.h>
#include <GenApi/IValue.h>
#include <GenApi/SelectorSet.h>

// The first line of the text contains this. The second identifier marks texts of several bags.
#define GENAPI_PERSISTENCE_MAGIC "{05D8C294-F295-4dfb-9D01-096BD04049F4}"
#define GENAPI_PERSISTENCE_MAGIC_FEATUREBAGGER "{4709CB3C-7322-4460-84C3-DA11DDA09939}"

namespace GENAPI_NAMESPACE {

class CFeatureBag;

// Records the settings of a camera.
struct GENAPI_DECL_ABSTRACT IPersistScript {
    // A line for people that says where the settings are from; blanks replace newlines in it.
    virtual void SetInfo(const GENICAM_NAMESPACE::gcstring& Info) = 0;
    // Records the current value of a feature, and before it the values of its selectors, if given.
    virtual void PersistFeature(IValue& item, CSelectorSet* selectorSet = nullptr) = 0;

  protected:
    ~IPersistScript() = default;
};

// Skips lines that begin with '#', up to and including the newline, but at most 1024 characters of
// each.
inline std::istream& EatComments(std::istream& is) {
    while (is.peek() == '#')
        is.ignore(1024, '\n');
    return is;
}

#ifndef GENAPI_DONT_USE_DEFAULT_PERSISTENCE_FILE_FORMAT
std::ostream& operator<<(std::ostream& os, const CFeatureBag& FeatureBag);
std::istream& operator>>(std::istream& is, CFeatureBag& FeatureBag);
#endif

// An ordered list of names and values. Selectors have no notation of their own: entries with their
// values precede the entries of the features that they select. Values have the form of
// IValue::ToString, so a floating-point number has the digits that its feature displays. Reentrant.
class GENAPI_DECL CFeatureBag : public IPersistScript {
  public:
    CFeatureBag();
    CFeatureBag(const CFeatureBag& obj);
    CFeatureBag& operator=(const CFeatureBag& rhs);
    virtual ~CFeatureBag();

    void SetInfo(const GENICAM_NAMESPACE::gcstring& Info) override;
    void PersistFeature(IValue& item, CSelectorSet* selectorSet = nullptr) override;

    // Appends the streamable features of the category tree that can be read and written, sets the
    // info, and returns the number of new entries. MaxNumPersistSkriptEntries limits that number;
    // -1 means no limit. With a filter, stores only the features that it names and their selectors.
    //
    // A feature with selectors is stored once for each combination of their values in which it is
    // accessible; entries with the selectors' former values follow. Selectors have no other entries
    // and need not be streamable. They are written during the operation and get their former values
    // back, even on an exception.
    //
    // InvalidArgumentException for null. RuntimeException if the selectors have more combinations,
    // or the values more characters, than a bag can hold, or if the value of a selector contains
    // line breaks. Exceptions of the port pass through; entries collected so far stay. Thread-safe
    // on the map; holds its lock.
    //
    // Executes the standard's commands DeviceFeaturePersistenceStart and
    // DeviceFeaturePersistenceEnd before and after, if the camera has them, and waits at most ten
    // seconds for each. If one fails, the settings are stored all the same.
    int64_t StoreToBag(INodeMap* pNodeMap, const int MaxNumPersistSkriptEntries = -1,
                       GENICAM_NAMESPACE::gcstring_vector* pFeatureFilter = nullptr);

    // Writes the values in order. A feature may accept a value only after another one has changed,
    // so failed entries are written again after the others, as long as more of them succeed. With
    // Verify, values that are out of range or locked are not written. Finally all features are
    // compared with their entries, by value: "0x140" is 320, and "1.50" is 1.5 to six digits.
    // Entries that a later entry has changed are written once more. Without Verify, limits and
    // locks do not count.
    //
    // A selector is set before the entries after it in the text. If that fails, the features under
    // it are not written either. If several entries name the same feature, the last one counts and
    // the others fail. The standard's commands DeviceRegistersStreamingStart and
    // DeviceRegistersStreamingEnd are executed before and after the writing, like those of
    // StoreToBag. If one fails, the load fails, but the values are still written.
    //
    // A failed entry does not stop the others. True if none failed; replaces pErrorList by one
    // message for each failure. InvalidArgumentException for null. Thread-safe on the map; holds
    // its lock.
    bool LoadFromBag(INodeMap* pNodeMap, bool Verify = true,
                     GENICAM_NAMESPACE::gcstring_vector* pErrorList = nullptr);

    // Whether both hold the same entries in the same order.
    bool operator==(const CFeatureBag& FeatureBag) const;
    bool operator!=(const CFeatureBag& FeatureBag) const { return !(*this == FeatureBag); }

    // The address of the object, which tells bags apart in logs.
    GENICAM_NAMESPACE::gcstring ToString();

    // Empties the bag.
    virtual void Destroy();

    // A name for the user of the bag; initially empty.
    virtual const GENICAM_NAMESPACE::gcstring& GetBagName() const;
    virtual void SetBagName(const GENICAM_NAMESPACE::gcstring& BagName);

#ifndef GENAPI_DONT_USE_DEFAULT_PERSISTENCE_FILE_FORMAT
    // Writes the text. A comment "# Left out: NAME ..." replaces an entry that could not be read
    // back: one with a line feed, carriage return or NUL, because the rest of it would be read as
    // another entry; and one whose value begins with a brace and contains a tab, which looks like
    // selectors. Other tabs are allowed.
    friend std::ostream& operator<<(std::ostream& os, const CFeatureBag& FeatureBag);
    // Replaces the entries by those of a text, up to the end of the stream. RuntimeException, and
    // an empty bag, if the text is not a feature bag or larger than any camera's. Also reads the
    // notation of later versions, with selectors in braces before the value. If the first line ends
    // in carriage return and line feed, all lines must.
    friend std::istream& operator>>(std::istream& is, CFeatureBag& FeatureBag);
#endif

  private:
    // Takes the text line by line, without the newlines, so that no object of the consumer's
    // standard library enters this library. Without Finish, the bag stays empty.
    class GENAPI_DECL CReader {
      public:
        explicit CReader(CFeatureBag& bag);
        ~CReader();
        CReader(const CReader&) = delete;
        CReader& operator=(const CReader&) = delete;

        void Line(const char* pText, size_t Length);
        void Finish();

        // The length of the longest accepted text, in characters.
        static const size_t MaxTextLength = size_t(1) << 25;
        static void ThrowTooLong();

      private:
        CFeatureBag& m_Bag;
        bool m_HasMagic;
        bool m_HasReturns;
        bool m_Finished;
    };

    // Whether an entry can be read back from a line; and a text that fits in one.
    static bool IsLine(const GENICAM_NAMESPACE::gcstring& Name,
                       const GENICAM_NAMESPACE::gcstring& Value);
    static GENICAM_NAMESPACE::gcstring InOneLine(const GENICAM_NAMESPACE::gcstring& Text);

    GENICAM_NAMESPACE::gcstring_vector m_Names;
    GENICAM_NAMESPACE::gcstring_vector m_Values;
    GENICAM_NAMESPACE::gcstring m_Info;
    GENICAM_NAMESPACE::gcstring m_BagName;
};

#ifndef GENAPI_DONT_USE_DEFAULT_PERSISTENCE_FILE_FORMAT

inline std::ostream& operator<<(std::ostream& os, const CFeatureBag& FeatureBag) {
    os << "# " GENAPI_PERSISTENCE_MAGIC "\n";
    os << "# GenApi persistence file (version " << GENAPI_VERSION_MAJOR << '.'
       << GENAPI_VERSION_MINOR << '.' << GENAPI_VERSION_SUBMINOR << ")\n";
    using ::operator<<;  // gcstring's operator, which the bag's would hide
    os << "# " << FeatureBag.m_Info << '\n';
    for (size_t i = 0; i < FeatureBag.m_Names.size(); ++i) {
        if (CFeatureBag::IsLine(FeatureBag.m_Names[i], FeatureBag.m_Values[i]))
            os << FeatureBag.m_Names[i] << '\t' << FeatureBag.m_Values[i] << '\n';
        else
            os << "# Left out: " << CFeatureBag::InOneLine(FeatureBag.m_Names[i])
               << ", which does not fit into a line\n";
    }
    return os;
}

inline std::istream& operator>>(std::istream& is, CFeatureBag& FeatureBag) {
    using Traits = std::istream::traits_type;
    if (is.eof()) throw RUNTIME_EXCEPTION("The stream is eof");
    CFeatureBag::CReader reader(FeatureBag);
    std::string line;
    size_t length = 0;
    const std::istream::sentry ready(is, true);
    Traits::int_type c = ready ? is.rdbuf()->sbumpc() : Traits::eof();
    for (; !Traits::eq_int_type(c, Traits::eof()); c = is.rdbuf()->sbumpc()) {
        if (++length > CFeatureBag::CReader::MaxTextLength) CFeatureBag::CReader::ThrowTooLong();
        if (Traits::to_char_type(c) != '\n') {
            line += Traits::to_char_type(c);
            continue;
        }
        reader.Line(line.data(), line.size());
        line.clear();
    }
    reader.Line(line.data(), line.size());
    reader.Finish();
    is.setstate(std::ios_base::eofbit);
    return is;
}

#endif

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_PERSISTENCE_H
