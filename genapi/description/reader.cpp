#include "genapi/description/reader.h"

#include <array>
#include <exception>
#include <expat.h>
#include <memory>
#include <type_traits>

#include <Base/GCException.h>

#include "genapi/description/assembler.h"
#include "genapi/description/faults.h"
#include "genapi/description/limits.h"
#include "genapi/description/numbers.h"
#include "genapi/description/prefixes.h"
#include "genapi/description/schema.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr const char* kUnexpectedElement = "unexpected element encountered";
constexpr const char* kMissingElement = "expected element not encountered";
constexpr const char* kUnexpectedAttribute = "unexpected attribute encountered";
constexpr const char* kMissingAttribute = "expected attribute not encountered";
constexpr const char* kUnexpectedText = "unexpected characters encountered";

constexpr std::string_view kNameSpacePrefix = "http://www.genicam.org/GenApi/Version_1_";

// The attributes that the rules of an element name, by rule; without data where there is none.
using Attributes = std::array<std::string_view, kMostAttributes>;

bool isBlank(std::string_view text) {
    for (const char sign : text)
        if (sign != ' ' && sign != '\n' && sign != '\t' && sign != '\r') return false;
    return true;
}

bool isDocumentation(Element element) {
    return element == Element::ToolTip || element == Element::Description ||
           element == Element::DocuURL;
}

// Lines count from 1, columns from 0.
struct Place {
    unsigned long line = 1, column = 0;
};

Place placeOf(std::string_view text, std::size_t offset) {
    Place place;
    for (const char sign : text.substr(0, offset)) {
        ++place.column;
        if (sign == '\n') place = {place.line + 1, 0};
    }
    return place;
}

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

// Goes through a description once. Elements are the root and groups; nodes; and inside a node
// either nodes again or leaves, which have a text.
class Reader {
  public:
    Reader(DescriptionBuilder& builder, const LoadOptions& options)
        : builder_(builder),
          assembler_(builder),
          options_(options),
          parser_(XML_ParserCreate(nullptr)) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), onStart, onEnd);
        XML_SetCharacterDataHandler(parser_.get(), onText);
        XML_SetEntityDeclHandler(parser_.get(), onEntity);
    }

    void read(std::string_view xml) {
        xml_ = xml;
        const auto status =
            XML_Parse(parser_.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE);
        if (failure_) std::rethrow_exception(failure_);
        if (status != XML_STATUS_OK)
            throwFault({XML_ErrorString(XML_GetErrorCode(parser_.get())), FaultPlace::Before});
        assembler_.finish();
    }

  private:
    struct Leaf {
        bool open = false;
        Element element{};
        TextRef attribute = 0;
        Property step{};  // of a pIndex: Offset or pOffset
        bool hasStep = false;
    };

    static void XMLCALL onStart(void* self, const char* name, const char** attributes) {
        static_cast<Reader*>(self)->guarded(
            [&](Reader& reader) { reader.start(name, attributes); });
    }
    static void XMLCALL onEnd(void* self, const char*) {
        static_cast<Reader*>(self)->guarded([](Reader& reader) { reader.end(); });
    }
    static void XMLCALL onText(void* self, const char* text, int size) {
        static_cast<Reader*>(self)->guarded([&](Reader& reader) {
            reader.append({text, static_cast<std::size_t>(size)});
        });
    }
    static void XMLCALL onEntity(void* self, const char*, int, const char*, int, const char*,
                                 const char*, const char*, const char*) {
        static_cast<Reader*>(self)->guarded(
            [](Reader&) { throw Fault{"entity declarations are not accepted"}; });
    }

    // No exception may pass through the parser: it is kept until the parser has returned.
    template <typename Step>
    void guarded(Step step) {
        if (failure_) return;
        try {
            step(*this);
            return;
        } catch (const Fault& fault) {
            keepFailure([&] { throwFault(fault); });
        } catch (const NodeFault& fault) {
            keepFailure([&] { throwNodeFault(fault); });
        } catch (const DuplicateNode& duplicate) {
            keepFailure([&] { throwDuplicate(duplicate.id); });
        } catch (...) {
            failure_ = std::current_exception();
        }
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    template <typename Thrower>
    void keepFailure(Thrower thrower) {
        try {
            thrower();
        } catch (...) {
            failure_ = std::current_exception();
        }
    }

    // Where the tag or text ends that the parser is at.
    std::size_t behind() const {
        return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_.get()) +
                                        XML_GetCurrentByteCount(parser_.get()));
    }

    Place before() const {
        return {XML_GetCurrentLineNumber(parser_.get()), XML_GetCurrentColumnNumber(parser_.get())};
    }

    [[noreturn]] void throwFault(const Fault& fault) const {
        const Place place =
            fault.place == FaultPlace::Before
                ? before()
                : placeOf(xml_, fault.place == FaultPlace::Behind ? behind() : rootEnd_);
        throw RUNTIME_EXCEPTION("Error while parsing XML stream at line %lu and column %lu : '%s'",
                                place.line, place.column, fault.reason);
    }

    [[noreturn]] void throwNodeFault(const NodeFault& fault) const {
        const Place place = before();
        throw RUNTIME_EXCEPTION("XML Parse error at line %lu and column %lu, %s", place.line,
                                place.column, fault.text.c_str());
    }

    [[noreturn]] void throwDuplicate(NodeId id) const {
        const std::string name(builder_.name(id));
        if (options_.injected)
            throw RUNTIME_EXCEPTION("Merge conflict with node '%s'", name.c_str());
        throwNodeFault({"Found a duplicate node'" + name + "'."});
    }

    // An element that would be right in another place or not at all. For descriptions of schema 1.1
    // the place is told as if the root had been refused.
    Fault unexpected() const {
        return {kUnexpectedElement, isSchema11_ ? FaultPlace::BehindRoot : FaultPlace::Behind};
    }

    void start(const char* name, const char** attributes);
    void end();
    void append(std::string_view text);
    void startRoot(const char* name, const char** attributes);
    void readInfo(const Attributes& attributes);
    void skip(const char* name, const char** attributes) const;
    Tag tagOf(const char* name) const;
    bool readAttributes(const char** written, AttributeRules rules, Attributes& found);
    void startTopLevel(const Tag& tag, const char** attributes);
    void startInside(OpenNode& parent, const Tag& tag, const char** attributes);
    Fault misplaced(const OpenNode& parent, const Tag& tag) const;
    void openNode(const Tag& tag, const char** attributes);
    void closeNode();
    void openLeaf(const OpenNode& parent, Element element, const char** attributes);
    void readStep(const Attributes& attributes);
    void closeLeaf();

    DescriptionBuilder& builder_;
    NodeAssembler assembler_;
    const LoadOptions& options_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
    std::string_view xml_;
    std::exception_ptr failure_;

    bool isSchema11_ = false;  // by the name space
    std::size_t rootEnd_ = 0;  // behind the start tag of the root
    Prefixes prefixes_;
    unsigned depth_ = 0;         // open elements
    unsigned skipFrom_ = 0;      // depth of the Extension that is being skipped, 0 outside of one
    unsigned incompleteAt_ = 0;  // depth of the innermost element that lacks an attribute
    std::array<OpenNode, 2> nodes_;  // a node, and one inside it: entry or formula of an address
    std::size_t openNodes_ = 0;
    Leaf leaf_;
    std::string text_;  // of the leaf so far
};

void Reader::start(const char* name, const char** attributes) {
    if (++depth_ > kMaxNesting) throw Fault{"elements are nested too deeply"};
    prefixes_.enter(attributes, depth_);
    if (skipFrom_ > 0) return skip(name, attributes);
    if (depth_ == 1) return startRoot(name, attributes);
    if (leaf_.open) throw unexpected();
    const Tag tag = tagOf(name);
    if (openNodes_ == 0)
        startTopLevel(tag, attributes);
    else
        startInside(nodes_[openNodes_ - 1], tag, attributes);
}

void Reader::end() {
    const unsigned depth = depth_--;
    prefixes_.leave(depth);
    if (skipFrom_ > 0) {
        if (depth == skipFrom_) skipFrom_ = 0;
        return;
    }
    if (depth == incompleteAt_) throw Fault{kMissingAttribute};
    if (leaf_.open)
        closeLeaf();
    else if (openNodes_ > 0)
        closeNode();
}

void Reader::append(std::string_view text) {
    if (leaf_.open) {
        if (text_.size() + text.size() > kMaxTextSize) throw Fault{"text is too long"};
        text_.append(text);
    } else if ((skipFrom_ == 0 || skipFrom_ == depth_) && !isBlank(text)) {
        throw Fault{kUnexpectedText};
    }
}

void Reader::startRoot(const char* name, const char** attributes) {
    const std::string_view nameSpace = prefixes_.nameSpaceOf(name);
    if (prefixes_.localName(name) != "RegisterDescription" ||
        nameSpace.size() != kNameSpacePrefix.size() + 1 ||
        nameSpace.substr(0, kNameSpacePrefix.size()) != kNameSpacePrefix ||
        (nameSpace.back() != '0' && nameSpace.back() != '1'))
        throw Fault{kUnexpectedElement};
    isSchema11_ = nameSpace.back() == '1';
    rootEnd_ = behind();
    Attributes found;
    if (readAttributes(attributes, rootAttributes(), found)) readInfo(found);
}

void Reader::readInfo(const Attributes& attributes) {
    const auto version = [&](RootAttribute major) {
        std::array<std::uint16_t, 3> parts{};
        for (std::size_t i = 0; i < parts.size(); ++i)
            parts[i] = static_cast<std::uint16_t>(
                integerOf(attributes[major + i], rootAttributes()[major + i].name));
        return GENICAM_NAMESPACE::Version_t{parts[0], parts[1], parts[2]};
    };
    DeviceInfo info;
    info.modelName = attributes[kModelName];
    info.vendorName = attributes[kVendorName];
    info.standardNameSpace = attributes[kStandardNameSpace];
    info.schemaVersion = version(kSchemaMajorVersion);
    info.deviceVersion = version(kMajorVersion);
    info.productGuid = attributes[kProductGuid];
    info.versionGuid = attributes[kVersionGuid];
    info.toolTip = attributes[kToolTip];
    if (!options_.injected) builder_.info() = std::move(info);
}

// What stands in an Extension may be anything that is XML.
void Reader::skip(const char* name, const char** attributes) const {
    prefixes_.localName(name);
    for (const char** at = attributes; *at; at += 2)
        prefixes_.isForeign(*at);
}

Tag Reader::tagOf(const char* name) const {
    const Tag* tag = findTag(name);
    if (!tag) tag = findTag(prefixes_.localName(name));
    return tag ? *tag : Tag();
}

// False where one is missing that must be there: the end tag of the element will be refused.
bool Reader::readAttributes(const char** written, AttributeRules rules, Attributes& found) {
    for (const char** at = written; *at; at += 2) {
        std::size_t i = 0;
        while (i < rules.size() && rules[i].name != at[0])
            ++i;
        if (i < rules.size()) {
            found[i] = at[1];
            if (const char* reason = refusal(rules[i].type, found[i])) throw Fault{reason};
        } else if (!prefixes_.isForeign(at[0])) {
            throw Fault{kUnexpectedAttribute};
        }
    }
    for (std::size_t i = 0; i < rules.size(); ++i)
        if (rules[i].required && !found[i].data()) incompleteAt_ = depth_;
    return incompleteAt_ != depth_;
}

void Reader::startTopLevel(const Tag& tag, const char** attributes) {
    if (tag.model == kGroup) {
        Attributes ignored;
        readAttributes(attributes, commentAttributes(), ignored);
        return;
    }
    if (tag.model == kNoModel || tag.model == modelOf(NodeKind::StructEntry)) throw unexpected();
    if (tag.model == modelOf(NodeKind::EnumEntry) && isSchema11_)
        throw NodeFault{
            "Standalone <EnumEntry> node detected which is ignored in schema v1.0 but forbidden "
            "otherwise"};
    openNode(tag, attributes);
}

void Reader::startInside(OpenNode& parent, const Tag& tag, const char** attributes) {
    const ContentModel::State state = parent.rules->content.after(parent.state, tag.key);
    if (state == 0) throw misplaced(parent, tag);
    parent.state = state;
    if (tag.key == kExtension) {
        Attributes none;
        readAttributes(attributes, {}, none);
        skipFrom_ = depth_;
    } else if (tag.key > kExtension) {
        openNode(tag, attributes);
    } else {
        openLeaf(parent, static_cast<Element>(tag.key), attributes);
    }
}

Fault Reader::misplaced(const OpenNode& parent, const Tag& tag) const {
    // An entry inside an entry is unexpected even before what is missing.
    const bool isEntry = tag.key == kEnumEntry || tag.key == keyOf(Element::pEnumEntry);
    const bool isFirst = parent.state == parent.rules->content.begin();
    if ((parent.state & ContentModel::kEnd) != 0 ||
        (isEntry && isFirst && parent.model == modelOf(NodeKind::EnumEntry)))
        return unexpected();
    return {kMissingElement};
}

void Reader::openNode(const Tag& tag, const char** attributes) {
    OpenNode& node = nodes_[openNodes_];
    const bool isStruct = tag.model == kStructReg;
    Attributes found;
    const bool complete =
        readAttributes(attributes, isStruct ? commentAttributes() : nodeAttributes(), found);
    node.model = tag.model;
    node.rules = &nodeModel(tag.model);
    node.state = node.rules->content.begin();
    node.id = kNoNode;
    node.name = isStruct ? std::string_view() : found[kName];
    node.nameSpace = found[kNameSpace] == "Standard" ? Standard : Custom;
    node.exposeStatic = found[kExposeStatic] == "Yes";
    node.properties.clear();
    if (complete) assembler_.open(node, openNodes_ > 0 ? &nodes_[openNodes_ - 1] : nullptr);
    ++openNodes_;
}

void Reader::closeNode() {
    OpenNode& node = nodes_[openNodes_ - 1];
    if ((node.state & ContentModel::kEnd) == 0) throw Fault{kMissingElement};
    --openNodes_;
    assembler_.close(node, openNodes_ > 0 ? &nodes_[openNodes_ - 1] : nullptr);
}

void Reader::openLeaf(const OpenNode& parent, Element element, const char** attributes) {
    leaf_ = {};
    leaf_.open = true;
    leaf_.element = element;
    text_.clear();
    const AttributeRules rules = leafAttributes(element, parent.model);
    if (rules.empty() && !*attributes) return;
    Attributes found;
    readAttributes(attributes, rules, found);
    if (element == Element::pIndex)
        readStep(found);
    else
        leaf_.attribute = builder_.intern(found[kName]);
}

// Offset goes before pOffset, unless it says nothing.
void Reader::readStep(const Attributes& attributes) {
    const std::string_view offset = attributes[kOffset], node = attributes[kOffsetNode];
    if (node.data()) leaf_.step = {Element::pOffset, builder_.mention(node), 0};
    const bool isGiven = !offset.empty() && offset != "0";
    if (isGiven) leaf_.step = {Element::Offset, builder_.intern(offset), 0};
    leaf_.hasStep = isGiven || node.data();
}

void Reader::closeLeaf() {
    leaf_.open = false;
    OpenNode& node = nodes_[openNodes_ - 1];
    const Element element = leaf_.element;
    const TextType type = node.rules->texts[keyOf(element)];
    std::string_view text = text_;
    if (const char* reason = refusal(type, text)) throw Fault{reason};
    if (element == Element::TextDesc || element == Element::IntKey)
        return assembler_.addKey(node, element, std::string(builder_.text(leaf_.attribute)),
                                 builder_.intern(text));
    if (options_.suppressStrings && isDocumentation(element)) return;
    const std::uint32_t value =
        type == TextType::Link ? builder_.mention(text) : builder_.intern(text);
    node.properties.push_back({element, value, leaf_.attribute});
    if (leaf_.hasStep) node.properties.push_back(leaf_.step);
}

}  // namespace

void readDescription(std::string_view xml, DescriptionBuilder& builder,
                     const LoadOptions& options) {
    if (xml.size() > kMaxXmlSize) throw RUNTIME_EXCEPTION("The description is too large");
    Reader(builder, options).read(xml);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
