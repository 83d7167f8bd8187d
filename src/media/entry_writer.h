#ifndef CAMCFG_MEDIA_ENTRY_WRITER_H
#define CAMCFG_MEDIA_ENTRY_WRITER_H

#include <tinyxml2.h>

#include <cstdint>
#include <string>

namespace camcfg {

/// Replaces what is in an element by entries. What is there already and as it should be stays: most
/// dumps change little, and making it costs more than looking at it.
class EntryWriter {
 public:
  explicit EntryWriter(tinyxml2::XMLElement& parent)
      : element_(&parent), next_(parent.FirstChild()) {}

  void open(const char* name);
  void close();
  /// After the last entry.
  void end();

  // Each gives the entry that was opened last, and has no children yet, one more attribute.

  void setText(const char* name, const char* value);
  void setText(const char* name, const std::string& value) { setText(name, value.c_str()); }
  void setInt(const char* name, std::int32_t value);
  void setSwitch(const char* name, std::int32_t value);

 private:
  void deleteAttributes();
  void deleteChildren();

  tinyxml2::XMLElement* element_;  // opened last; at first the parent, whose attributes stay
  tinyxml2::XMLNode* next_;        // first of its old children that has not been reached
  const tinyxml2::XMLAttribute* attribute_ = nullptr;  // and of its old attributes
};

}  // namespace camcfg

#endif
