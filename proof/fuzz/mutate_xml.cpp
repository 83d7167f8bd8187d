#include <tinyxml2.h>

#include <iterator>

#include "fuzz/mutation.h"

namespace camcfg::fuzz {
namespace {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

constexpr std::size_t kLongestName = 64;

// A document, its elements and the names in it.
struct Tree {
  XMLDocument document;
  std::vector<XMLElement*> elements;
  std::vector<std::string> attributeNames = {"Id", "Name", "Cur", "Usage"};

  explicit Tree(const std::string& text) {
    if (document.Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS) collect(&document);
  }

  void collect(XMLNode* parent) {
    for (XMLElement* child = parent->FirstChildElement(); child != nullptr;
         child = child->NextSiblingElement()) {
      elements.push_back(child);
      for (const XMLAttribute* each = child->FirstAttribute(); each != nullptr; each = each->Next())
        attributeNames.emplace_back(each->Name());
      collect(child);
    }
  }

  std::string text() const {
    tinyxml2::XMLPrinter printer;
    document.Print(&printer);
    return printer.CStr();
  }
};

struct Change {
  Tree& tree;
  XMLElement* element;  // the one that is changed
  Dice& dice;
  const ByteMutator& mutateBytes;

  XMLElement* other() const { return dice.among(tree.elements); }

  // One of its attributes; null if it has none.
  const XMLAttribute* attribute() const {
    std::vector<const XMLAttribute*> all;
    for (const XMLAttribute* each = element->FirstAttribute(); each != nullptr; each = each->Next())
      all.push_back(each);
    return all.empty() ? nullptr : dice.among(all);
  }
};

bool isWithin(const XMLNode* node, const XMLNode* parent) {
  while (node != nullptr && node != parent) node = node->Parent();
  return node != nullptr;
}

// A name like that of an element: its own, one that it begins, or one that begins it.
std::string similarName(std::string name, Dice& dice) {
  switch (dice.below(4)) {
    case 0:
      return name + "X";
    case 1:
      return name.substr(0, 1 + dice.below(name.size()));
    case 2:
      name[0] = static_cast<char>(name[0] ^ 0x20);
      return name;
    default:
      return name;
  }
}

void duplicate(const Change& change) {
  XMLNode* copy = change.element->DeepClone(&change.tree.document);
  change.element->Parent()->InsertAfterChild(change.element, copy);
}

void remove(const Change& change) {
  change.element->Parent()->DeleteChild(change.element);
}

// Into another element, before its children or after them.
void move(const Change& change) {
  XMLElement* parent = change.other();
  if (isWithin(parent, change.element)) return;
  if (change.dice.oneIn(2))
    parent->InsertFirstChild(change.element);
  else
    parent->InsertEndChild(change.element);
}

void moveToEnd(const Change& change) {
  change.element->Parent()->InsertEndChild(change.element);
}

void rename(const Change& change) {
  change.element->SetName(similarName(change.other()->Name(), change.dice).c_str());
}

void nest(const Change& change) {
  XMLNode* copy = change.element->DeepClone(&change.tree.document);
  change.element->InsertFirstChild(copy);
}

void addText(const Change& change) {
  if (change.dice.oneIn(2))
    change.element->InsertNewText(oddText(change.dice).c_str());
  else
    change.element->InsertNewComment("x");
}

void setOddValue(const Change& change) {
  if (const XMLAttribute* attribute = change.attribute())
    change.element->SetAttribute(attribute->Name(), oddText(change.dice).c_str());
}

void mutateValue(const Change& change) {
  const XMLAttribute* attribute = change.attribute();
  if (attribute == nullptr) return;
  const std::string value = attribute->Value();
  change.element->SetAttribute(attribute->Name(),
                               change.mutateBytes(value, value.size() + kLongestName).c_str());
}

// The value of the same attribute elsewhere: ids and names that occur twice.
void copyValue(const Change& change) {
  const XMLAttribute* attribute = change.other()->FirstAttribute();
  if (attribute != nullptr) change.element->SetAttribute(attribute->Name(), attribute->Value());
}

void dropAttribute(const Change& change) {
  if (const XMLAttribute* attribute = change.attribute())
    change.element->DeleteAttribute(attribute->Name());
}

void addAttribute(const Change& change) {
  const std::string name = change.dice.among(change.tree.attributeNames);
  change.element->SetAttribute(name.c_str(), oddText(change.dice).c_str());
}

constexpr void (*kChanges[])(const Change&) = {duplicate, remove,        move,         moveToEnd,
                                               rename,    nest,          addText,      setOddValue,
                                               copyValue, dropAttribute, addAttribute, mutateValue};

}  // namespace

std::string mutateXml(const std::string& text, Dice& dice, const ByteMutator& mutateBytes) {
  Tree tree(text);
  if (tree.elements.empty()) return text;
  XMLElement* element = dice.among(tree.elements);
  dice.among(kChanges)({tree, element, dice, mutateBytes});
  return tree.text();
}

}  // namespace camcfg::fuzz
