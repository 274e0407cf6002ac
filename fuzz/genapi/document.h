// A description as a tree to change: what the mutator works on.
#ifndef FUZZ_GENAPI_DOCUMENT_H
#define FUZZ_GENAPI_DOCUMENT_H

#include <string>
#include <string_view>
#include <vector>

#include <tinyxml2.h>

#include "fuzz/choices.h"

namespace Fuzz {

class Document {
  public:
    // False when the text is no XML with an element in it.
    bool Parse(std::string_view text);

    std::string Text() const;

    // One change: a text becomes another one's or an edge, a reference leads elsewhere or comes
    // from nowhere, elements are deleted, copied, swapped, renamed.
    void Change(Choices& choices);

    // Copies a node of another document with some of those that it refers to.
    void Graft(Document& donor, Choices& choices);

  private:
    using Element = tinyxml2::XMLElement;
    using Elements = std::vector<Element*>;

    Element* Root() { return document_.FirstChildElement(); }
    Elements Nodes();   // the elements with a name
    Elements Leaves();  // those with a text, or empty
    Elements All();     // without the root

    void ChangeText(Choices& choices);
    void Relink(Choices& choices);
    void AddLink(Choices& choices);
    void Delete(Choices& choices);
    void Copy(Choices& choices);
    void Swap(Choices& choices);
    void Rename(Choices& choices);

    tinyxml2::XMLDocument document_;
};

}  // namespace Fuzz

#endif  // FUZZ_GENAPI_DOCUMENT_H
