#include "fuzz/genapi/document.h"

#include <algorithm>
#include <set>

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

namespace Fuzz {

namespace {

// Elements whose text is the name of a node.
constexpr const char* kLinks[] = {
    "pIsImplemented", "pIsAvailable",  "pIsLocked", "pBlockPolling", "pError",   "pAlias",
    "pCastAlias",     "pInvalidator",  "pSelected", "pFeature",      "pValue",   "pValueCopy",
    "pValueIndexed",  "pValueDefault", "pMin",      "pMax",          "pInc",     "pIndex",
    "pAddress",       "pLength",       "pPort",     "pVariable",     "pChunkID", "pCommandValue"};

constexpr const char* kVariables[] = {"A", "B", "TO", "FROM", "A.Value", "A.Min", "B.Entry.X"};

constexpr const char* kFormulas[] = {"1/A",    "A+A",  "A%B",  "A<<B",
                                     "FROM+A", "TO*2", "A**B", "A?A:B"};

constexpr std::size_t kMaxGrafted = 12;

template <typename Items>
auto& Any(Items& items, Choices& choices) {
    return items[choices.Below(std::size(items))];
}

template <typename Visit>
void Walk(XMLElement* element, const Visit& visit) {
    for (; element != nullptr; element = element->NextSiblingElement()) {
        visit(element);
        Walk(element->FirstChildElement(), visit);
    }
}

// An element after another one is a child of the same parent.
void InsertSomewhere(XMLNode& parent, XMLNode* child, Choices& choices) {
    XMLNode* const after = choices.OneIn(2) ? parent.FirstChildElement() : parent.LastChild();
    if (after != nullptr)
        parent.InsertAfterChild(after, child);
    else
        parent.InsertEndChild(child);
}

std::string TextOf(const XMLElement& element) {
    const char* const text = element.GetText();
    return text != nullptr ? text : "";
}

std::string NameOf(const XMLElement& element) {
    const char* const name = element.Attribute("Name");
    return name != nullptr ? name : "";
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

Document::Elements Document::All() {
    Elements elements;
    Walk(Root()->FirstChildElement(), [&](XMLElement* element) { elements.push_back(element); });
    return elements;
}

Document::Elements Document::Nodes() {
    Elements nodes;
    for (XMLElement* const element : All())
        if (element->Attribute("Name") != nullptr && element->FirstChildElement() != nullptr)
            nodes.push_back(element);
    return nodes;
}

Document::Elements Document::Leaves() {
    Elements leaves = All();
    leaves.erase(std::remove_if(leaves.begin(), leaves.end(),
                                [](XMLElement* e) { return e->FirstChildElement() != nullptr; }),
                 leaves.end());
    return leaves;
}

void Document::Change(Choices& choices) {
    using Operation = void (Document::*)(Choices&);
    // Those that make a description more peculiar are more often than those that destroy it.
    constexpr Operation kOperations[] = {
        &Document::ChangeText, &Document::ChangeText, &Document::Relink,  &Document::Relink,
        &Document::Relink,     &Document::AddLink,    &Document::AddLink, &Document::Delete,
        &Document::Copy,       &Document::Swap,       &Document::Rename};
    if (All().empty()) return;
    (this->*Any(kOperations, choices))(choices);
}

void Document::ChangeText(Choices& choices) {
    const Elements leaves = Leaves();
    if (leaves.empty()) return;
    XMLElement& leaf = *Any(leaves, choices);
    if (std::string_view(leaf.Name()).substr(0, 7) == "Formula" && choices.OneIn(2)) {
        leaf.SetText(Any(kFormulas, choices));
    } else if (choices.OneIn(2)) {
        leaf.SetText(choices.Number());
    } else {
        leaf.SetText(TextOf(*Any(leaves, choices)).c_str());
    }
}

void Document::Relink(Choices& choices) {
    const Elements nodes = Nodes();
    Elements links = Leaves();
    links.erase(std::remove_if(links.begin(), links.end(),
                               [](XMLElement* e) { return e->Name()[0] != 'p'; }),
                links.end());
    if (nodes.empty() || links.empty()) return;
    Any(links, choices)->SetText(NameOf(*Any(nodes, choices)).c_str());
}

void Document::AddLink(Choices& choices) {
    const Elements nodes = Nodes();
    if (nodes.empty()) return;
    XMLElement* const link = document_.NewElement(Any(kLinks, choices));
    link->SetText(NameOf(*Any(nodes, choices)).c_str());
    if (std::string_view(link->Name()) == "pVariable") {
        link->SetAttribute("Name", Any(kVariables, choices));
    }
    InsertSomewhere(*Any(nodes, choices), link, choices);
}

void Document::Delete(Choices& choices) {
    const Elements elements = All();
    XMLElement* const victim = Any(elements, choices);
    victim->Parent()->DeleteChild(victim);
}

void Document::Copy(Choices& choices) {
    const Elements elements = All();
    XMLNode* const copy = Any(elements, choices)->DeepClone(&document_);
    XMLElement* const named = copy->ToElement();
    if (named->Attribute("Name") != nullptr && choices.OneIn(2)) {
        named->SetAttribute("Name", (NameOf(*named) + "x").c_str());
        InsertSomewhere(*Root(), copy, choices);
    } else {
        InsertSomewhere(*Any(elements, choices), copy, choices);
    }
}

// Their texts; the elements stay where they are.
void Document::Swap(Choices& choices) {
    const Elements leaves = Leaves();
    if (leaves.empty()) return;
    XMLElement& first = *Any(leaves, choices);
    XMLElement& second = *Any(leaves, choices);
    const std::string text = TextOf(first);
    first.SetText(TextOf(second).c_str());
    second.SetText(text.c_str());
}

// As another kind of node, or another element of one.
void Document::Rename(Choices& choices) {
    const Elements nodes = Nodes();
    const Elements leaves = Leaves();
    const Elements& elements = choices.OneIn(2) && !nodes.empty() ? nodes : leaves;
    if (elements.empty()) return;
    const std::string name = Any(elements, choices)->Name();
    Any(elements, choices)->SetName(name.c_str());
}

void Document::Graft(Document& donor, Choices& choices) {
    const Elements nodes = donor.Nodes();
    if (nodes.empty()) return;
    Elements wanted = {Any(nodes, choices)};
    std::set<std::string> taken;
    for (const XMLElement* const node : Nodes())
        taken.insert(NameOf(*node));
    for (std::size_t i = 0; i < wanted.size() && i < kMaxGrafted; ++i) {
        XMLElement* const node = wanted[i];
        if (!taken.insert(NameOf(*node)).second) continue;
        Root()->InsertEndChild(node->DeepClone(&document_));
        Walk(node->FirstChildElement(), [&](XMLElement* element) {
            const auto target = std::find_if(nodes.begin(), nodes.end(), [&](XMLElement* other) {
                return element->Name()[0] == 'p' && NameOf(*other) == TextOf(*element);
            });
            if (target != nodes.end()) wanted.push_back(*target);
        });
    }
}

}  // namespace Fuzz
