#ifndef CAMCFG_MEDIA_ENTRY_WRITER_H
#define CAMCFG_MEDIA_ENTRY_WRITER_H

#include <tinyxml2.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace camcfg {

/// Where the entries of a section go: to the end of its element, or straight into the file that is
/// being printed. Printed, they are the bytes that tinyxml2 would print of the elements, without the
/// cost of making these.
class EntryWriter {
 public:
  explicit EntryWriter(tinyxml2::XMLElement& parent) : element_(&parent) {}
  /// @param printer  has opened the element that the entries are in
  /// @param file     what it prints to
  EntryWriter(tinyxml2::XMLPrinter& printer, std::FILE* file) : printer_(&printer), file_(file) {}

  void open(const char* name);
  void close();

  // Each gives the element that was opened last, and has no children yet, one more attribute.

  void setText(const char* name, const char* value);
  void setText(const char* name, const std::string& value) { setText(name, value.c_str()); }
  void setInt(const char* name, std::int32_t value);
  void setSwitch(const char* name, std::int32_t value) {
    setText(name, value != 0 ? "true" : "false");
  }

 private:
  void put(const char* text);
  void putEscaped(const char* text);
  void put(char c);
  void flush();

  tinyxml2::XMLElement* element_ = nullptr;  // null: printed
  tinyxml2::XMLPrinter* printer_ = nullptr;
  std::FILE* file_ = nullptr;
  std::size_t used_ = 0;
  char unwritten_[256];
};

}  // namespace camcfg

#endif
