#include "genapi/description/reader.h"

#include <array>
#include <exception>
#include <expat.h>
#include <memory>
#include <type_traits>

#include <Base/GCException.h>

#include "genapi/description/assembler.h"
#include "genapi/description/limits.h"
#include "genapi/description/numbers.h"
#include "genapi/description/schema.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

namespace {

constexpr const char* kUnexpectedElement = "unexpected element encountered";
constexpr const char* kMissingElement = "expected element not encountered";
constexpr const char* kMissingAttribute = "expected attribute not encountered";
constexpr const char* kUnknownWord = "value is not in enumeration";

constexpr std::string_view kNameSpacePrefix = "http://www.genicam.org/GenApi/Version_1_";

// What the XML is refused for; the place is where the parser stands.
struct Fault {
    const char* reason;
};

// The attributes of one element.
class Attributes {
  public:
    explicit Attributes(const char** list) : list_(list) {}

    // Null when it is not there.
    const char* find(std::string_view name) const {
        for (const char** at = list_; *at; at += 2)
            if (name == at[0]) return at[1];
        return nullptr;
    }

    std::string_view required(std::string_view name) const {
        const char* value = find(name);
        if (!value) throw Fault{kMissingAttribute};
        return value;
    }

    std::string_view requiredName(std::string_view name = "Name") const {
        const std::string_view value = trimmed(required(name));
        if (value.empty()) throw Fault{kMissingAttribute};
        return value;
    }

  private:
    const char** list_;
};

bool isDocumentation(Element element) {
    return element == Element::ToolTip || element == Element::Description ||
           element == Element::DocuURL;
}

struct FreeParser {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

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
        const auto status =
            XML_Parse(parser_.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE);
        if (failure_) std::rethrow_exception(failure_);
        if (status != XML_STATUS_OK) throwFault(XML_ErrorString(XML_GetErrorCode(parser_.get())));
    }

  private:
    // The element that is open inside a node, where it is no node itself.
    struct Leaf {
        bool open = false;
        Element element{};
        TextRef attribute = 0;
        Property step{};  // of a pIndex: Offset or pOffset
        bool hasStep = false;
    };

    static void XMLCALL onStart(void* self, const char* name, const char** attributes) {
        static_cast<Reader*>(self)->guarded(
            [&](Reader& reader) { reader.start(name, Attributes(attributes)); });
    }
    static void XMLCALL onEnd(void* self, const char*) {
        static_cast<Reader*>(self)->guarded([](Reader& reader) { reader.end(); });
    }
    static void XMLCALL onText(void* self, const char* text, int size) {
        Reader& that = *static_cast<Reader*>(self);
        if (that.leaf_.open)
            that.guarded([&](Reader& reader) {
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
            keepFailure([&] { throwFault(fault.reason); });
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

    unsigned long line() const { return XML_GetCurrentLineNumber(parser_.get()); }
    unsigned long column() const { return XML_GetCurrentColumnNumber(parser_.get()); }

    [[noreturn]] void throwFault(const char* reason) const {
        throw RUNTIME_EXCEPTION("Error while parsing XML stream at line %lu and column %lu : '%s'",
                                line(), column(), reason);
    }

    [[noreturn]] void throwDuplicate(NodeId id) const {
        const char* name = builder_.name(id).data();
        if (options_.injected) throw RUNTIME_EXCEPTION("Merge conflict with node '%s'", name);
        throw RUNTIME_EXCEPTION(
            "XML Parse error at line %lu and column %lu, Found a duplicate node'%s'.", line(),
            column(), name);
    }

    void start(const char* name, Attributes attributes);
    void end();
    void append(std::string_view text);
    void startRoot(std::string_view name, Attributes attributes);
    void readInfo(Attributes attributes);
    const Tag& tagOf(std::string_view name) const;
    void startTopLevel(const Tag& tag, Attributes attributes);
    void startInside(OpenNode& parent, const Tag& tag, Attributes attributes);
    void openNode(const Tag& tag, Attributes attributes);
    void closeNode();
    void openLeaf(Element element, Attributes attributes);
    void readStep(Attributes attributes);
    void closeLeaf();

    DescriptionBuilder& builder_;
    NodeAssembler assembler_;
    const LoadOptions& options_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, FreeParser> parser_;
    std::exception_ptr failure_;

    unsigned schemaMinor_ = 0;
    std::string prefix_;     // of the names of all elements, with its colon
    unsigned depth_ = 0;     // open elements
    unsigned skipFrom_ = 0;  // depth of the Extension that is being skipped, 0 outside of one
    std::array<OpenNode, 2> nodes_;  // a node, and one inside it: entry or formula of an address
    std::size_t openNodes_ = 0;
    Leaf leaf_;
    std::string text_;  // of the leaf so far
};

void Reader::start(const char* name, Attributes attributes) {
    if (++depth_ > kMaxNesting) throw Fault{"elements are nested too deeply"};
    if (skipFrom_ > 0) return;
    if (depth_ == 1) return startRoot(name, attributes);
    if (leaf_.open) throw Fault{kUnexpectedElement};
    const Tag& tag = tagOf(name);
    if (tag.key == kExtension)
        skipFrom_ = depth_;
    else if (openNodes_ == 0)
        startTopLevel(tag, attributes);
    else
        startInside(nodes_[openNodes_ - 1], tag, attributes);
}

void Reader::end() {
    const unsigned depth = depth_--;
    if (skipFrom_ > 0)
        skipFrom_ = depth == skipFrom_ ? 0 : skipFrom_;
    else if (leaf_.open)
        closeLeaf();
    else if (openNodes_ > 0)
        closeNode();
}

void Reader::append(std::string_view text) {
    if (text_.size() + text.size() > kMaxTextSize) throw Fault{"text is too long"};
    text_.append(text);
}

// The name space is looked up by hand: it is one for the whole description, and the parser's own
// handling would copy it in front of every name.
void Reader::startRoot(std::string_view name, Attributes attributes) {
    const std::size_t colon = name.find(':');
    std::string declaration = "xmlns";
    if (colon != std::string_view::npos) {
        prefix_ = name.substr(0, colon + 1);
        declaration.append(":").append(name.substr(0, colon));
        name.remove_prefix(colon + 1);
    }
    const char* uri = attributes.find(declaration);
    const std::string_view nameSpace = uri ? uri : "";
    if (name != "RegisterDescription" || nameSpace.size() != kNameSpacePrefix.size() + 1 ||
        nameSpace.substr(0, kNameSpacePrefix.size()) != kNameSpacePrefix ||
        (nameSpace.back() != '0' && nameSpace.back() != '1'))
        throw Fault{kUnexpectedElement};
    schemaMinor_ = nameSpace.back() == '1' ? 1 : 0;
    readInfo(attributes);
}

std::uint16_t versionPart(std::string_view text) {
    std::int64_t value = 0;
    if (!parse(text, value) || value < 0 || value > UINT16_MAX)
        throw Fault{"invalid unsigned short value"};
    return static_cast<std::uint16_t>(value);
}

GENICAM_NAMESPACE::Version_t version(Attributes attributes, const char* major, const char* minor,
                                     const char* subMinor) {
    GENICAM_NAMESPACE::Version_t result;
    result.Major = versionPart(attributes.required(major));
    result.Minor = versionPart(attributes.required(minor));
    result.SubMinor = versionPart(attributes.required(subMinor));
    return result;
}

void Reader::readInfo(Attributes attributes) {
    DeviceInfo info;
    info.modelName = attributes.required("ModelName");
    info.vendorName = attributes.required("VendorName");
    info.standardNameSpace = trimmed(attributes.required("StandardNameSpace"));
    if (!isStandardNameSpace(info.standardNameSpace)) throw Fault{kUnknownWord};
    info.schemaVersion =
        version(attributes, "SchemaMajorVersion", "SchemaMinorVersion", "SchemaSubMinorVersion");
    info.deviceVersion = version(attributes, "MajorVersion", "MinorVersion", "SubMinorVersion");
    info.productGuid = attributes.required("ProductGuid");
    info.versionGuid = attributes.required("VersionGuid");
    if (const char* toolTip = attributes.find("ToolTip")) info.toolTip = toolTip;
    if (!options_.injected) builder_.info() = std::move(info);
}

const Tag& Reader::tagOf(std::string_view name) const {
    if (!prefix_.empty()) {
        if (name.substr(0, prefix_.size()) != prefix_) throw Fault{kUnexpectedElement};
        name.remove_prefix(prefix_.size());
    }
    const Tag* tag = findTag(name);
    if (!tag) throw Fault{kUnexpectedElement};
    return *tag;
}

void Reader::startTopLevel(const Tag& tag, Attributes attributes) {
    if (tag.model == kGroup) return;
    const bool isInner = tag.model == modelOf(NodeKind::StructEntry) ||
                         (tag.model == modelOf(NodeKind::EnumEntry) && schemaMinor_ > 0);
    const bool isLater = schemaMinor_ == 0 && tag.model == modelOf(NodeKind::String);
    if (tag.model == kNoModel || isInner || isLater) throw Fault{kUnexpectedElement};
    openNode(tag, attributes);
}

void Reader::startInside(OpenNode& parent, const Tag& tag, Attributes attributes) {
    const ContentModel& model = contentModel(parent.model);
    const std::uint64_t places = tag.key == kNoKey ? 0 : model.places[tag.key];
    const bool isLater = schemaMinor_ == 0 && !isInSchema10(tag.key);
    if (places == 0 || (places & parent.seen & model.once) != 0 || isLater)
        throw Fault{kUnexpectedElement};
    parent.seen |= places;
    if (tag.model == modelOf(NodeKind::EnumEntry) || tag.model == modelOf(NodeKind::StructEntry) ||
        tag.model == modelOf(NodeKind::IntSwissKnife))
        return openNode(tag, attributes);
    const auto element = static_cast<Element>(tag.key);
    if (element == Element::pEnumEntry && schemaMinor_ > 0) throw Fault{kUnexpectedElement};
    openLeaf(element, attributes);
}

void Reader::openNode(const Tag& tag, Attributes attributes) {
    OpenNode& node = nodes_[openNodes_];
    node.model = tag.model;
    node.seen = 0;
    node.properties.clear();
    node.name.clear();
    if (tag.model != kStructReg) node.name = attributes.requiredName();
    const char* nameSpace = attributes.find("NameSpace");
    const std::string_view written = nameSpace ? trimmed(nameSpace) : "Custom";
    if (written != "Custom" && written != "Standard") throw Fault{kUnknownWord};
    node.nameSpace = written == "Standard" ? Standard : Custom;
    const char* exposeStatic = attributes.find("ExposeStatic");
    node.exposeStatic = exposeStatic && trimmed(exposeStatic) == "Yes";
    assembler_.open(node, openNodes_ > 0 ? &nodes_[openNodes_ - 1] : nullptr);
    ++openNodes_;
}

void Reader::closeNode() {
    OpenNode& node = nodes_[openNodes_ - 1];
    if ((contentModel(node.model).required & ~node.seen) != 0) throw Fault{kMissingElement};
    --openNodes_;
    assembler_.close(node, openNodes_ > 0 ? &nodes_[openNodes_ - 1] : nullptr);
}

void Reader::openLeaf(Element element, Attributes attributes) {
    leaf_ = {};
    leaf_.open = true;
    leaf_.element = element;
    text_.clear();
    if (const char* name = attributeNameOf(element))
        leaf_.attribute = builder_.intern(attributes.requiredName(name));
    else if (element == Element::pIndex)
        readStep(attributes);
}

void Reader::readStep(Attributes attributes) {
    if (const char* offset = attributes.find("Offset")) {
        leaf_.step = {Element::Offset, builder_.intern(trimmed(offset)), 0};
        leaf_.hasStep = true;
    } else if (const char* node = attributes.find("pOffset")) {
        leaf_.step = {Element::pOffset, builder_.mention(trimmed(node)), 0};
        leaf_.hasStep = true;
    }
}

void Reader::closeLeaf() {
    leaf_.open = false;
    OpenNode& node = nodes_[openNodes_ - 1];
    const Element element = leaf_.element;
    const std::string_view text =
        isFreeText(element, node.model) ? std::string_view(text_) : trimmed(text_);
    if (!isAllowedText(element, text, node.model, schemaMinor_)) throw Fault{kUnknownWord};
    if (element == Element::TextDesc || element == Element::IntKey)
        return assembler_.addKey(node, element, std::string(builder_.text(leaf_.attribute)),
                                 builder_.intern(text));
    if (options_.suppressStrings && isDocumentation(element)) return;
    const std::uint32_t value = isLink(element) ? builder_.mention(text) : builder_.intern(text);
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
