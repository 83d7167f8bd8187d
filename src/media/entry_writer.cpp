#include "media/entry_writer.h"

#include "base/integer.h"

namespace camcfg {

using tinyxml2::XMLElement;

namespace {

// Null for a character that stands for itself.
const char* entityOf(char c) {
  switch (c) {
    case '"':
      return "&quot;";
    case '&':
      return "&amp;";
    case '\'':
      return "&apos;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return nullptr;
  }
}

}  // namespace

void EntryWriter::open(const char* name) {
  if (element_ != nullptr) {
    XMLElement* element = element_->GetDocument()->NewElement(name);
    element_->InsertEndChild(element);
    element_ = element;
    return;
  }
  flush();
  printer_->OpenElement(name);
}

void EntryWriter::close() {
  if (element_ != nullptr) {
    element_ = element_->Parent()->ToElement();
    return;
  }
  flush();
  printer_->CloseElement();
}

void EntryWriter::setText(const char* name, const char* value) {
  if (element_ != nullptr) {
    element_->SetAttribute(name, value);
    return;
  }
  put(' ');
  put(name);
  put("=\"");
  putEscaped(value);
  put('"');
}

void EntryWriter::setInt(const char* name, std::int32_t value) {
  setText(name, IntegerText(value).begin());
}

void EntryWriter::put(const char* text) {
  for (; *text != '\0'; ++text) put(*text);
}

void EntryWriter::putEscaped(const char* text) {
  for (; *text != '\0'; ++text) {
    const char* entity = *text > '>' ? nullptr : entityOf(*text);
    if (entity == nullptr)
      put(*text);
    else
      put(entity);
  }
}

void EntryWriter::put(char c) {
  if (used_ == sizeof unwritten_) flush();
  unwritten_[used_++] = c;
}

void EntryWriter::flush() {
  if (used_ != 0) fwrite_unlocked(unwritten_, 1, used_, file_);
  used_ = 0;
}

}  // namespace camcfg
