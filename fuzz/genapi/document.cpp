#include "fuzz/genapi/document.h"

#include <algorithm>
#include <set>

using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

namespace Fuzz {

namespace {

// The children of nodes in an order that the schema takes for every kind.
constexpr std::string_view kOrder[] = {"Extension",
                                       "ToolTip",
                                       "Description",
                                       "DisplayName",
                                       "Visibility",
                                       "DocuURL",
                                       "IsDeprecated",
                                       "EventID",
                                       "pIsImplemented",
                                       "pIsAvailable",
                                       "pIsLocked",
                                       "pBlockPolling",
                                       "ImposedAccessMode",
                                       "pError",
                                       "pAlias",
                                       "pCastAlias",
                                       "pInvalidator",
                                       "Streamable",
                                       "pFeature",
                                       "pVariable",
                                       "Constant",
                                       "Expression",
                                       "EnumEntry",
                                       "Address",
                                       "IntSwissKnife",
                                       "pAddress",
                                       "pIndex",
                                       "Length",
                                       "pLength",
                                       "AccessMode",
                                       "pPort",
                                       "Cachable",
                                       "ChunkID",
                                       "pChunkID",
                                       "Formula",
                                       "FormulaTo",
                                       "FormulaFrom",
                                       "Value",
                                       "pValue",
                                       "ValueIndexed",
                                       "pValueIndexed",
                                       "ValueDefault",
                                       "pValueDefault",
                                       "CommandValue",
                                       "pCommandValue",
                                       "PollingTime",
                                       "OnValue",
                                       "OffValue",
                                       "Bit",
                                       "LSB",
                                       "MSB",
                                       "Min",
                                       "pMin",
                                       "Max",
                                       "pMax",
                                       "Inc",
                                       "pInc",
                                       "Sign",
                                       "Endianess",
                                       "Unit",
                                       "Representation",
                                       "pValueCopy",
                                       "ValidValueSet",
                                       "pSelected",
                                       "StructEntry"};

// Those that every kind of node has are more often than their share.
constexpr const char* kLinks[] = {
    "pIsImplemented", "pIsAvailable", "pIsLocked", "pError",        "pBlockPolling", "pInvalidator",
    "pIsImplemented", "pIsAvailable", "pIsLocked", "pError",        "pBlockPolling", "pInvalidator",
    "pAlias",         "pCastAlias",   "pFeature",  "pVariable",     "pAddress",      "pIndex",
    "pLength",        "pChunkID",     "pValue",    "pValueIndexed", "pMin",          "pMax",
    "pInc",           "pValueCopy",   "pSelected"};

constexpr const char* kVariables[] = {"A", "B", "TO", "FROM", "A.Value", "A.Min", "B.Entry.X"};

constexpr const char* kFormulas[] = {"1/A",    "A+A",  "A%B",  "A<<B",
                                     "FROM+A", "TO*2", "A**B", "A?A:B"};

constexpr size_t kMaxGrafted = 12;

template <typename Items>
const auto& Any(const Items& items, Choices& choices) {
    return items[choices.Below(std::size(items))];
}

template <typename Visit>
void Walk(XMLElement* element, const Visit& visit) {
    for (; element != nullptr; element = element->NextSiblingElement()) {
        visit(element);
        Walk(element->FirstChildElement(), visit);
    }
}

std::string TextOf(const XMLElement& element) {
    const char* const text = element.GetText();
    return text != nullptr ? text : "";
}

std::string NameOf(const XMLElement& element) {
    const char* const name = element.Attribute("Name");
    return name != nullptr ? name : "";
}

// An element with a name that is not part of another one: a variable or an entry is.
bool IsNode(const XMLElement& element) {
    const XMLNode* const parent = element.Parent();
    return !NameOf(element).empty() && parent->ToElement() != nullptr &&
           NameOf(*parent->ToElement()).empty();
}

// Whether its text is the name of a node.
bool IsLink(const XMLElement& element) {
    return element.Name()[0] == 'p' && element.FirstChildElement() == nullptr;
}

bool IsNumber(const XMLElement& element) {
    const std::string text = TextOf(element);
    return !text.empty() && (text[0] == '-' || (text[0] >= '0' && text[0] <= '9'));
}

size_t RankOf(const XMLElement& element) {
    const auto* const place = std::find(std::begin(kOrder), std::end(kOrder), element.Name());
    return static_cast<size_t>(place - std::begin(kOrder));
}

void InsertInOrder(XMLElement& parent, XMLElement* child) {
    XMLElement* before = nullptr;
    for (XMLElement* other = parent.FirstChildElement(); other != nullptr;
         other = other->NextSiblingElement())
        if (RankOf(*other) <= RankOf(*child)) before = other;
    if (before != nullptr)
        parent.InsertAfterChild(before, child);
    else
        parent.InsertFirstChild(child);
}

}  // namespace

bool Document::Parse(std::string_view text) {
    return document_.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS && Root() != nullptr;
}

std::string Document::Text() const {
    tinyxml2::XMLPrinter printer(nullptr, true);
    document_.Print(&printer);
    return printer.CStr();
}

template <typename Condition>
Document::Elements Document::Those(Condition condition) {
    Elements elements;
    Walk(Root()->FirstChildElement(), [&](XMLElement* element) {
        if (condition(*element)) elements.push_back(element);
    });
    return elements;
}

Document::Elements Document::All() {
    return Those([](const XMLElement&) { return true; });
}

Document::Elements Document::Nodes() {
    return Those(IsNode);
}

Document::Elements Document::Like(const Element& element) {
    if (IsLink(element)) return Those(IsLink);
    const std::string_view tag = element.Name();
    return Those([tag](const XMLElement& other) { return tag == other.Name(); });
}

void Document::Change(Choices& choices) {
    using Operation = void (Document::*)(Choices&);
    // Those that make a description peculiar are more often than those that destroy it.
    constexpr Operation kOperations[] = {
        &Document::ChangeText, &Document::ChangeText, &Document::Relink,  &Document::Relink,
        &Document::Relink,     &Document::Relink,     &Document::AddLink, &Document::AddLink,
        &Document::AddLink,    &Document::AddLink,    &Document::Delete,  &Document::Copy,
        &Document::Copy,       &Document::Swap,       &Document::Rename,  &Document::ChangeVersion,
        &Document::Chain};
    if (Nodes().empty()) return;
    (this->*Any(kOperations, choices))(choices);
}

void Document::Mend(Choices& choices) {
    const Elements nodes = Nodes();
    if (nodes.empty()) return;
    std::set<std::string> names;
    for (const Element* const node : nodes)
        names.insert(NameOf(*node));
    for (Element* const link : Those(IsLink))
        if (names.count(TextOf(*link)) == 0) link->SetText(NameOf(*Any(nodes, choices)).c_str());
}

void Document::ChangeText(Choices& choices) {
    const Elements leaves =
        Those([](const XMLElement& e) { return e.FirstChildElement() == nullptr && !IsLink(e); });
    if (leaves.empty()) return;
    Element& leaf = *Any(leaves, choices);
    if (std::string_view(leaf.Name()).substr(0, 7) == "Formula" && choices.OneIn(2)) {
        leaf.SetText(Any(kFormulas, choices));
    } else if (IsNumber(leaf) && !choices.OneIn(4)) {
        leaf.SetText(choices.Number());
    } else {
        leaf.SetText(TextOf(*Any(Like(leaf), choices)).c_str());
    }
}

void Document::Relink(Choices& choices) {
    const Elements links = Those(IsLink);
    if (links.empty()) return;
    Any(links, choices)->SetText(NameOf(*Any(Nodes(), choices)).c_str());
}

void Document::AddLink(Choices& choices) {
    const Elements nodes = Nodes();
    Element* const link = document_.NewElement(Any(kLinks, choices));
    link->SetText(NameOf(*Any(nodes, choices)).c_str());
    if (std::string_view(link->Name()) == "pVariable") {
        link->SetAttribute("Name", Any(kVariables, choices));
    }
    InsertInOrder(*Any(nodes, choices), link);
}

void Document::Delete(Choices& choices) {
    Element* const victim = Any(All(), choices);
    victim->Parent()->DeleteChild(victim);
}

// A node under another name, anything else as a child of another node.
void Document::Copy(Choices& choices) {
    const Elements elements = choices.OneIn(2) ? Nodes() : All();
    const Element& original = *Any(elements, choices);
    Element* const copy = original.DeepClone(&document_)->ToElement();
    if (IsNode(original)) {
        copy->SetAttribute("Name", (NameOf(*copy) + "x").c_str());
        Root()->InsertEndChild(copy);
    } else {
        InsertInOrder(*Any(Nodes(), choices), copy);
    }
}

// Copies of a node, each of which leads to the next one wherever it led to another node: what is
// asked once for each link takes 2^n steps over n nodes with two. Longer ones would only spend the
// engine's budget more often, which takes seconds under sanitizers.
void Document::Chain(Choices& choices) {
    constexpr size_t kMaxLength = 24;
    Elements chain = {Any(Nodes(), choices)};
    const std::string name = NameOf(*chain.front()) + "c";
    for (size_t i = choices.Below(kMaxLength); i > 0; --i) {
        Element* const copy = chain.front()->DeepClone(&document_)->ToElement();
        copy->SetAttribute("Name", (name + std::to_string(i)).c_str());
        Root()->InsertEndChild(copy);
        chain.push_back(copy);
    }
    for (size_t i = 1; i < chain.size(); ++i)
        Walk(chain[i - 1]->FirstChildElement(), [&](Element* element) {
            const bool leads = IsLink(*element) && std::string_view(element->Name()) != "pPort";
            if (leads && !choices.OneIn(8)) element->SetText(NameOf(*chain[i]).c_str());
        });
}

// The texts of two elements of a kind.
void Document::Swap(Choices& choices) {
    Element& first = *Any(All(), choices);
    Element& second = *Any(Like(first), choices);
    if (first.FirstChildElement() != nullptr || second.FirstChildElement() != nullptr) return;
    const std::string text = TextOf(first);
    first.SetText(TextOf(second).c_str());
    second.SetText(text.c_str());
}

// As another kind of node, or another element of one.
void Document::Rename(Choices& choices) {
    const Elements elements = choices.OneIn(2) ? Nodes() : All();
    const std::string name = Any(elements, choices)->Name();
    Any(elements, choices)->SetName(name.c_str());
}

// Version 1.0 takes more.
void Document::ChangeVersion(Choices& choices) {
    Root()->SetAttribute("SchemaMinorVersion", choices.OneIn(2) ? "0" : "1");
}

void Document::Graft(Document& donor, Choices& choices) {
    const Elements nodes = donor.Nodes();
    if (nodes.empty()) return;
    Elements wanted = {Any(nodes, choices)};
    std::set<std::string> taken;
    for (const Element* const node : Nodes())
        taken.insert(NameOf(*node));
    for (size_t i = 0; i < wanted.size() && i < kMaxGrafted; ++i) {
        Element* const node = wanted[i];
        if (!taken.insert(NameOf(*node)).second) continue;
        Root()->InsertEndChild(node->DeepClone(&document_));
        Walk(node->FirstChildElement(), [&](Element* element) {
            if (!IsLink(*element)) return;
            const std::string name = TextOf(*element);
            const auto target = std::find_if(
                nodes.begin(), nodes.end(), [&](Element* other) { return NameOf(*other) == name; });
            if (target != nodes.end()) wanted.push_back(*target);
        });
    }
}

}  // namespace Fuzz
