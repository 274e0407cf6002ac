// Storing the settings of a camera as a text, and loading them.
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

// What the first line of the text contains. The second one marks texts of several bags.
#define GENAPI_PERSISTENCE_MAGIC "{05D8C294-F295-4dfb-9D01-096BD04049F4}"
#define GENAPI_PERSISTENCE_MAGIC_FEATUREBAGGER "{4709CB3C-7322-4460-84C3-DA11DDA09939}"

namespace GENAPI_NAMESPACE {

class CFeatureBag;

// Takes down the settings of a camera.
struct GENAPI_DECL_ABSTRACT IPersistScript {
    // A line for people on where the settings are from; newlines in it become blanks.
    virtual void SetInfo(const GENICAM_NAMESPACE::gcstring& Info) = 0;
    // Takes down the present value of a feature; before it that of its selectors, where given.
    virtual void PersistFeature(IValue& item, CSelectorSet* selectorSet = nullptr) = 0;

  protected:
    ~IPersistScript() = default;
};

// Skips lines while they begin with '#', each up to and including the newline, but at most 1024
// characters of it.
inline std::istream& EatComments(std::istream& is) {
    while (is.peek() == '#')
        is.ignore(1024, '\n');
    return is;
}

#ifndef GENAPI_DONT_USE_DEFAULT_PERSISTENCE_FILE_FORMAT
std::ostream& operator<<(std::ostream& os, const CFeatureBag& FeatureBag);
std::istream& operator>>(std::istream& is, CFeatureBag& FeatureBag);
#endif

// An ordered list of names and values. Selectors have no notation of their own: their values are
// entries before the entries of the features that they select. Values are as IValue::ToString gives
// them, so a floating-point number has the digits that its feature shows. Reentrant.
class GENAPI_DECL CFeatureBag : public IPersistScript {
  public:
    CFeatureBag();
    CFeatureBag(const CFeatureBag& obj);
    CFeatureBag& operator=(const CFeatureBag& rhs);
    virtual ~CFeatureBag();

    void SetInfo(const GENICAM_NAMESPACE::gcstring& Info) override;
    void PersistFeature(IValue& item, CSelectorSet* selectorSet = nullptr) override;

    // Appends the streamable features of the category tree that can be read and written, sets the
    // info, and gives the number of new entries: at most MaxNumPersistSkriptEntries unless that is
    // -1. With a filter only the features that it names, with their selectors. A feature with
    // selectors is stored once for each combination of their values in which it is accessible, and
    // the selectors with their former values behind it; a selector has no other entries, and needs
    // not be streamable. Selectors are written meanwhile and get their former values back, also on
    // an exception. InvalidArgumentException for null, RuntimeException if selectors have more
    // combinations, or the values more characters, than a bag can hold, or if the value of a
    // selector has line breaks; exceptions of the port pass, and what was collected stays.
    // Thread-safe on the map, whose lock it holds.
    //
    // The standard's commands DeviceFeaturePersistenceStart and End are executed around it, each
    // where the camera has it, and waited for, at most ten seconds. Where one fails, the settings
    // are stored all the same.
    int64_t StoreToBag(INodeMap* pNodeMap, const int MaxNumPersistSkriptEntries = -1,
                       GENICAM_NAMESPACE::gcstring_vector* pFeatureFilter = nullptr);

    // Writes the values in order. One that fails is written again behind the others as long as
    // that lets more of them succeed: what a feature takes may depend on another. With Verify
    // nothing is written that is out of range or locked, and in the end all features are compared
    // with the entries, as values: "0x140" is 320, "1.50" is 1.5 to six digits. Those that a later
    // entry has changed are written once more. Without Verify limits and locks do not count.
    //
    // A selector's value is set before what the text has behind it; where that fails, the features
    // under it are not written either. Of entries for the same feature the last one counts, and the
    // others fail. The standard's commands DeviceRegistersStreamingStart and End are executed
    // around the writing like those of StoreToBag; one that fails is a failure of the load, and the
    // values are written all the same.
    //
    // A failing entry does not keep the others from being loaded. True if none failed; one message
    // for each failure in pErrorList, which is replaced. InvalidArgumentException for null.
    // Thread-safe on the map, whose lock it holds.
    bool LoadFromBag(INodeMap* pNodeMap, bool Verify = true,
                     GENICAM_NAMESPACE::gcstring_vector* pErrorList = nullptr);

    // Whether both hold the same entries in the same order.
    bool operator==(const CFeatureBag& FeatureBag) const;
    bool operator!=(const CFeatureBag& FeatureBag) const { return !(*this == FeatureBag); }

    // The address of the object, to tell bags apart in logs.
    GENICAM_NAMESPACE::gcstring ToString();

    // Empties the bag.
    virtual void Destroy();

    // A name for the user of the bag; empty at first.
    virtual const GENICAM_NAMESPACE::gcstring& GetBagName() const;
    virtual void SetBagName(const GENICAM_NAMESPACE::gcstring& BagName);

#ifndef GENAPI_DONT_USE_DEFAULT_PERSISTENCE_FILE_FORMAT
    // Writes the text. An entry that would not be read back as it is gets a comment in its place,
    // "# Left out: NAME ...": one with a line feed, carriage return or null in it, since what
    // follows them would be read as another entry, and a value that begins with a brace and has a
    // tab, which looks like selectors. Tabs are read back otherwise.
    friend std::ostream& operator<<(std::ostream& os, const CFeatureBag& FeatureBag);
    // Replaces the entries by those of a text, up to the end of the stream. RuntimeException, and
    // an empty bag, if it is not such a text or larger than any camera's. Understands the notation
    // of later versions too, where selectors stand in braces before the value. In a text whose
    // first line ends in a carriage return and a line feed, all lines do.
    friend std::istream& operator>>(std::istream& is, CFeatureBag& FeatureBag);
#endif

  private:
    // Takes the text line by line, without the newlines, so that nothing of the consumer's standard
    // library crosses into this one. Without Finish the bag is left empty.
    class GENAPI_DECL CReader {
      public:
        explicit CReader(CFeatureBag& bag);
        ~CReader();
        CReader(const CReader&) = delete;
        CReader& operator=(const CReader&) = delete;

        void Line(const char* pText, size_t Length);
        void Finish();

        // The longest text that is read, in characters.
        static const size_t MaxTextLength = size_t(1) << 25;
        static void ThrowTooLong();

      private:
        CFeatureBag& m_Bag;
        bool m_HasMagic;
        bool m_HasReturns;
        bool m_Finished;
    };

    // Whether an entry can be read back from a line, and a text that fits into one.
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
    using ::operator<<;  // that of gcstring, which the one of the bag would hide
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
