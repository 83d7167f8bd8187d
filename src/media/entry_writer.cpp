#include "media/entry_writer.h"

#include <cstring>

#include "base/integer.h"

namespace camcfg {

using tinyxml2::XMLElement;

void EntryWriter::open(const char* name) {
  deleteAttributes();
  XMLElement* entry = next_ == nullptr ? nullptr : next_->ToElement();
  if (entry == nullptr || std::strcmp(entry->Name(), name) != 0) {
    deleteChildren();
    entry = element_->GetDocument()->NewElement(name);
    element_->InsertEndChild(entry);
  }
  element_ = entry;
  next_ = entry->FirstChild();
  attribute_ = entry->FirstAttribute();
}

void EntryWriter::close() {
  end();
  next_ = element_->NextSibling();
  element_ = element_->Parent()->ToElement();
}

void EntryWriter::end() {
  deleteAttributes();
  deleteChildren();
}

void EntryWriter::setText(const char* name, const char* value) {
  if (attribute_ == nullptr || std::strcmp(attribute_->Name(), name) != 0) {
    deleteAttributes();
    element_->SetAttribute(name, value);
    return;
  }
  if (std::strcmp(attribute_->Value(), value) != 0) element_->SetAttribute(name, value);
  attribute_ = attribute_->Next();
}

void EntryWriter::setInt(const char* name, std::int32_t value) {
  setText(name, IntegerText(value).begin());
}

void EntryWriter::setSwitch(const char* name, std::int32_t value) {
  setText(name, value != 0 ? "true" : "false");
}

void EntryWriter::deleteAttributes() {
  while (attribute_ != nullptr) {
    const char* name = attribute_->Name();
    attribute_ = attribute_->Next();
    element_->DeleteAttribute(name);
  }
}

void EntryWriter::deleteChildren() {
  while (next_ != nullptr) {
    tinyxml2::XMLNode* child = next_;
    next_ = child->NextSibling();
    element_->DeleteChild(child);
  }
}

}  // namespace camcfg
