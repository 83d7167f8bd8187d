#include "media/attributes.h"

#include <algorithm>
#include <cstring>

#include "base/integer.h"
#include "media/entries.h"

namespace camcfg {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;

const char* Attributes::text(std::size_t place) const {
  const XMLAttribute* attribute = found_[place];
  return attribute == nullptr ? nullptr : attribute->Value();
}

void Attributes::readInt(std::size_t place, std::int32_t& value) const {
  const char* number = text(place);
  if (number != nullptr) static_cast<void>(readInteger(number, value));
}

void Attributes::readSwitch(std::size_t place, std::int32_t& value) const {
  const char* word = text(place);
  if (word != nullptr) value = isWord(word, "true") ? 1 : 0;
}

void Attributes::find(const XMLElement& element, std::size_t count) {
  std::fill_n(found_, count, nullptr);
  std::size_t next = 0;
  for (const XMLAttribute* each = element.FirstAttribute(); each != nullptr; each = each->Next()) {
    const char* read = each->Name();
    for (std::size_t tried = 0; tried < count; ++tried) {
      const std::size_t place = next;
      next = place + 1 == count ? 0 : place + 1;
      if (std::strcmp(read, name(place)) != 0) continue;
      if (found_[place] == nullptr) found_[place] = each;
      break;
    }
  }
}

}  // namespace camcfg
