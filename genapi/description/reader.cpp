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

// The attributes that the rules of an element name, by rule; data() is null for absent ones.
using Attributes = std::array<std::string_view, kMostAttributes>;

bool IsBlank(std::string_view text) {
    for (const char sign : text)
        if (sign != ' ' && sign != '\n' && sign != '\t' && sign != '\r') return false;
    return true;
}

bool IsDocumentation(Element element) {
    return element == Element::ToolTip || element == Element::Description ||
           element == Element::DocuURL;
}

// Lines count from 1, columns from 0.
struct Place {
    unsigned long line = 1, column = 0;
};

Place PlaceOf(std::string_view text, size_t offset) {
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

// Reads a description in one pass. Elements are the root and groups; nodes; and inside a node
// either further nodes or leaves, which have a text.
class Reader {
  public:
    Reader(DescriptionBuilder& builder, const LoadOptions& options)
        : builder_(builder),
          assembler_(builder),
          options_(options),
          parser_(XML_ParserCreate(nullptr)) {
        if (!parser_) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), OnStart, OnEnd);
        XML_SetCharacterDataHandler(parser_.get(), OnText);
        XML_SetEntityDeclHandler(parser_.get(), OnEntity);
    }

    void Read(std::string_view xml) {
        xml_ = xml;
        const auto status =
            XML_Parse(parser_.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE);
        if (failure_) std::rethrow_exception(failure_);
        if (status != XML_STATUS_OK)
            ThrowFault({XML_ErrorString(XML_GetErrorCode(parser_.get())), FaultPlace::Before});
        assembler_.Finish();
    }

  private:
    struct Leaf {
        bool open = false;
        Element element{};
        TextRef attribute = 0;
        Property step{};  // Offset or pOffset of a pIndex
        bool hasStep = false;
    };

    static void XMLCALL OnStart(void* self, const char* name, const char** attributes) {
        static_cast<Reader*>(self)->Guarded(
            [&](Reader& reader) { reader.Start(name, attributes); });
    }
    static void XMLCALL OnEnd(void* self, const char*) {
        static_cast<Reader*>(self)->Guarded([](Reader& reader) { reader.End(); });
    }
    static void XMLCALL OnText(void* self, const char* text, int size) {
        static_cast<Reader*>(self)->Guarded([&](Reader& reader) {
            reader.Append({text, static_cast<size_t>(size)});
        });
    }
    static void XMLCALL OnEntity(void* self, const char*, int, const char*, int, const char*,
                                 const char*, const char*, const char*) {
        static_cast<Reader*>(self)->Guarded(
            [](Reader&) { throw Fault{"entity declarations are not accepted"}; });
    }

    // No exception may pass through the parser: it is kept until the parser has returned.
    template <typename Step>
    void Guarded(Step step) {
        if (failure_) return;
        try {
            step(*this);
            return;
        } catch (const Fault& fault) {
            KeepFailure([&] { ThrowFault(fault); });
        } catch (const NodeFault& fault) {
            KeepFailure([&] { ThrowNodeFault(fault); });
        } catch (const DuplicateNode& duplicate) {
            KeepFailure([&] { ThrowDuplicate(duplicate.id); });
        } catch (...) {
            failure_ = std::current_exception();
        }
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    template <typename Thrower>
    void KeepFailure(Thrower thrower) {
        try {
            thrower();
        } catch (...) {
            failure_ = std::current_exception();
        }
    }

    // The end of the tag or text that the parser is at.
    size_t Behind() const {
        return static_cast<size_t>(XML_GetCurrentByteIndex(parser_.get()) +
                                   XML_GetCurrentByteCount(parser_.get()));
    }

    Place Before() const {
        return {XML_GetCurrentLineNumber(parser_.get()), XML_GetCurrentColumnNumber(parser_.get())};
    }

    [[noreturn]] void ThrowFault(const Fault& fault) const {
        const Place place =
            fault.place == FaultPlace::Before
                ? Before()
                : PlaceOf(xml_, fault.place == FaultPlace::Behind ? Behind() : rootEnd_);
        throw RUNTIME_EXCEPTION("Error while parsing XML stream at line %lu and column %lu : '%s'",
                                place.line, place.column, fault.reason);
    }

    [[noreturn]] void ThrowNodeFault(const NodeFault& fault) const {
        const Place place = Before();
        throw RUNTIME_EXCEPTION("XML Parse error at line %lu and column %lu, %s", place.line,
                                place.column, fault.text.c_str());
    }

    [[noreturn]] void ThrowDuplicate(NodeId id) const {
        const std::string name(builder_.Name(id));
        if (options_.injected)
            throw RUNTIME_EXCEPTION("Merge conflict with node '%s'", name.c_str());
        ThrowNodeFault({"Found a duplicate node'" + name + "'."});
    }

    // An element that is not allowed here. In descriptions of schema 1.1 the message gives the
    // place after the root's start tag, as if the root had been refused.
    Fault Unexpected() const {
        return {kUnexpectedElement, isSchema11_ ? FaultPlace::BehindRoot : FaultPlace::Behind};
    }

    void Start(const char* name, const char** attributes);
    void End();
    void Append(std::string_view text);
    void StartRoot(const char* name, const char** attributes);
    void ReadInfo(const Attributes& attributes);
    void Skip(const char* name, const char** attributes) const;
    Tag TagOf(const char* name) const;
    bool ReadAttributes(const char** written, AttributeRules rules, Attributes& found);
    void StartTopLevel(const Tag& tag, const char** attributes);
    void StartInside(OpenNode& parent, const Tag& tag, const char** attributes);
    Fault Misplaced(const OpenNode& parent, const Tag& tag) const;
    void BeginNode(const Tag& tag, const char** attributes);
    void CloseNode();
    void OpenLeaf(const OpenNode& parent, Element element, const char** attributes);
    void ReadStep(const Attributes& attributes);
    void CloseLeaf();

    DescriptionBuilder& builder_;
    NodeAssembler assembler_;
    const LoadOptions& options_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
    std::string_view xml_;
    std::exception_ptr failure_;

    bool isSchema11_ = false;  // by the name space
    size_t rootEnd_ = 0;       // end of the root's start tag
    Prefixes prefixes_;
    unsigned depth_ = 0;             // open elements
    unsigned skipFrom_ = 0;          // depth of the Extension being skipped, 0 without one
    unsigned incompleteAt_ = 0;      // depth of the innermost element that lacks an attribute
    std::array<OpenNode, 2> nodes_;  // a node, and one inside it: entry or formula of an address
    size_t openNodes_ = 0;
    Leaf leaf_;
    std::string text_;  // of the leaf so far
};

void Reader::Start(const char* name, const char** attributes) {
    if (++depth_ > kMaxNesting) throw Fault{"elements are nested too deeply"};
    prefixes_.Enter(attributes, depth_);
    if (skipFrom_ > 0) return Skip(name, attributes);
    if (depth_ == 1) return StartRoot(name, attributes);
    if (leaf_.open) throw Unexpected();
    const Tag tag = TagOf(name);
    if (openNodes_ == 0)
        StartTopLevel(tag, attributes);
    else
        StartInside(nodes_[openNodes_ - 1], tag, attributes);
}

void Reader::End() {
    const unsigned depth = depth_--;
    prefixes_.Leave(depth);
    if (skipFrom_ > 0) {
        if (depth == skipFrom_) skipFrom_ = 0;
        return;
    }
    if (depth == incompleteAt_) throw Fault{kMissingAttribute};
    if (leaf_.open)
        CloseLeaf();
    else if (openNodes_ > 0)
        CloseNode();
}

void Reader::Append(std::string_view text) {
    if (leaf_.open) {
        if (text_.size() + text.size() > kMaxTextSize) throw Fault{"text is too long"};
        text_.append(text);
    } else if ((skipFrom_ == 0 || skipFrom_ == depth_) && !IsBlank(text)) {
        throw Fault{kUnexpectedText};
    }
}

void Reader::StartRoot(const char* name, const char** attributes) {
    const std::string_view nameSpace = prefixes_.NameSpaceOf(name);
    if (prefixes_.LocalName(name) != "RegisterDescription" ||
        nameSpace.size() != kNameSpacePrefix.size() + 1 ||
        nameSpace.substr(0, kNameSpacePrefix.size()) != kNameSpacePrefix ||
        (nameSpace.back() != '0' && nameSpace.back() != '1'))
        throw Fault{kUnexpectedElement};
    isSchema11_ = nameSpace.back() == '1';
    rootEnd_ = Behind();
    Attributes found;
    if (ReadAttributes(attributes, RootAttributes(), found)) ReadInfo(found);
}

void Reader::ReadInfo(const Attributes& attributes) {
    const auto version = [&](RootAttribute major) {
        std::array<uint16_t, 3> parts{};
        for (size_t i = 0; i < parts.size(); ++i)
            parts[i] = static_cast<uint16_t>(
                IntegerOf(attributes[major + i], RootAttributes()[major + i].name));
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
    if (!options_.injected) builder_.Info() = std::move(info);
}

// The content of an Extension may be any XML; only its prefixes must be bound.
void Reader::Skip(const char* name, const char** attributes) const {
    prefixes_.LocalName(name);
    for (const char** at = attributes; *at; at += 2)
        prefixes_.IsForeign(*at);
}

Tag Reader::TagOf(const char* name) const {
    const Tag* tag = FindTag(name);
    if (!tag) tag = FindTag(prefixes_.LocalName(name));
    return tag ? *tag : Tag();
}

// False if a required attribute is missing: the reader then refuses the end tag of the element.
bool Reader::ReadAttributes(const char** written, AttributeRules rules, Attributes& found) {
    for (const char** at = written; *at; at += 2) {
        size_t i = 0;
        while (i < rules.size() && rules[i].name != at[0])
            ++i;
        if (i < rules.size()) {
            found[i] = at[1];
            if (const char* reason = Refusal(rules[i].type, found[i])) throw Fault{reason};
        } else if (!prefixes_.IsForeign(at[0])) {
            throw Fault{kUnexpectedAttribute};
        }
    }
    for (size_t i = 0; i < rules.size(); ++i)
        if (rules[i].required && !found[i].data()) incompleteAt_ = depth_;
    return incompleteAt_ != depth_;
}

void Reader::StartTopLevel(const Tag& tag, const char** attributes) {
    if (tag.model == kGroup) {
        Attributes ignored;
        ReadAttributes(attributes, CommentAttributes(), ignored);
        return;
    }
    if (tag.model == kNoModel || tag.model == ModelOf(NodeKind::StructEntry)) throw Unexpected();
    if (tag.model == ModelOf(NodeKind::EnumEntry) && isSchema11_)
        throw NodeFault{
            "Standalone <EnumEntry> node detected which is ignored in schema v1.0 but forbidden "
            "otherwise"};
    BeginNode(tag, attributes);
}

void Reader::StartInside(OpenNode& parent, const Tag& tag, const char** attributes) {
    const ContentModel::State state = parent.rules->content.After(parent.state, tag.key);
    if (state == 0) throw Misplaced(parent, tag);
    parent.state = state;
    if (tag.key == kExtension) {
        Attributes none;
        ReadAttributes(attributes, {}, none);
        skipFrom_ = depth_;
    } else if (tag.key > kExtension) {
        BeginNode(tag, attributes);
    } else {
        OpenLeaf(parent, static_cast<Element>(tag.key), attributes);
    }
}

Fault Reader::Misplaced(const OpenNode& parent, const Tag& tag) const {
    // An entry inside an entry is reported as unexpected, even before missing elements.
    const bool isEntry = tag.key == kEnumEntry || tag.key == KeyOf(Element::pEnumEntry);
    const bool isFirst = parent.state == parent.rules->content.Start();
    if ((parent.state & ContentModel::kEnd) != 0 ||
        (isEntry && isFirst && parent.model == ModelOf(NodeKind::EnumEntry)))
        return Unexpected();
    return {kMissingElement};
}

void Reader::BeginNode(const Tag& tag, const char** attributes) {
    OpenNode& node = nodes_[openNodes_];
    const bool isStruct = tag.model == kStructReg;
    Attributes found;
    const bool complete =
        ReadAttributes(attributes, isStruct ? CommentAttributes() : NodeAttributes(), found);
    node.model = tag.model;
    node.rules = &ModelFor(tag.model);
    node.state = node.rules->content.Start();
    node.id = kNoNode;
    node.name = isStruct ? std::string_view() : found[kName];
    node.nameSpace = found[kNameSpace] == "Standard" ? Standard : Custom;
    node.exposeStatic = found[kExposeStatic] == "Yes";
    node.properties.clear();
    if (complete) assembler_.Open(node, openNodes_ > 0 ? &nodes_[openNodes_ - 1] : nullptr);
    ++openNodes_;
}

void Reader::CloseNode() {
    OpenNode& node = nodes_[openNodes_ - 1];
    if ((node.state & ContentModel::kEnd) == 0) throw Fault{kMissingElement};
    --openNodes_;
    assembler_.Close(node, openNodes_ > 0 ? &nodes_[openNodes_ - 1] : nullptr);
}

void Reader::OpenLeaf(const OpenNode& parent, Element element, const char** attributes) {
    leaf_ = {};
    leaf_.open = true;
    leaf_.element = element;
    text_.clear();
    const AttributeRules rules = LeafAttributes(element, parent.model);
    if (rules.empty() && !*attributes) return;
    Attributes found;
    ReadAttributes(attributes, rules, found);
    if (element == Element::pIndex)
        ReadStep(found);
    else
        leaf_.attribute = builder_.Intern(found[kName]);
}

// Offset takes precedence over pOffset, unless it is empty.
void Reader::ReadStep(const Attributes& attributes) {
    const std::string_view offset = attributes[kOffset], node = attributes[kOffsetNode];
    if (node.data()) leaf_.step = {Element::pOffset, builder_.Mention(node), 0};
    const bool isGiven = !offset.empty() && offset != "0";
    if (isGiven) leaf_.step = {Element::Offset, builder_.Intern(offset), 0};
    leaf_.hasStep = isGiven || node.data();
}

void Reader::CloseLeaf() {
    leaf_.open = false;
    OpenNode& node = nodes_[openNodes_ - 1];
    const Element element = leaf_.element;
    const TextType type = node.rules->texts[KeyOf(element)];
    std::string_view text = text_;
    if (const char* reason = Refusal(type, text)) throw Fault{reason};
    if (element == Element::TextDesc || element == Element::IntKey)
        return assembler_.AddKey(node, element, std::string(builder_.Text(leaf_.attribute)),
                                 builder_.Intern(text));
    if (options_.suppressStrings && IsDocumentation(element)) return;
    const uint32_t value = type == TextType::Link ? builder_.Mention(text) : builder_.Intern(text);
    node.properties.push_back({element, value, leaf_.attribute});
    if (leaf_.hasStep) node.properties.push_back(leaf_.step);
}

}  // namespace

void ReadDescription(std::string_view xml, DescriptionBuilder& builder,
                     const LoadOptions& options) {
    if (xml.size() > kMaxXmlSize) throw RUNTIME_EXCEPTION("The description is too large");
    Reader(builder, options).Read(xml);
}

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
