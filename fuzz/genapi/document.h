// A description as a tree to change: what the mutator works on.
#pragma once

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

    // Lets references to nodes that are not there lead to others: a description with one does not
    // load.
    void Mend(Choices& choices);

  private:
    using Element = tinyxml2::XMLElement;
    using Elements = std::vector<Element*>;

    Element* Root() { return document_.FirstChildElement(); }
    template <typename Condition>
    Elements Those(Condition condition);  // without the root
    Elements All();
    Elements Nodes();
    Elements Like(const Element& element);  // of the same name, or references as well

    void ChangeText(Choices& choices);
    void Relink(Choices& choices);
    void AddLink(Choices& choices);
    void Delete(Choices& choices);
    void Copy(Choices& choices);
    void Chain(Choices& choices);
    void Swap(Choices& choices);
    void Rename(Choices& choices);
    void ChangeVersion(Choices& choices);

    tinyxml2::XMLDocument document_;
};

}  // namespace Fuzz
