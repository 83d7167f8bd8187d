#include "media/attributes.h"

#include <algorithm>
#include <cstring>

#include "base/integer.h"
#include "media/entries.h"

namespace camcfg {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;

void Attribute::readInt(std::int32_t& value) const {
  if (found_ != nullptr) static_cast<void>(readInteger(found_->Value(), value));
}

void Attribute::readText(std::string& value) const {
  if (found_ != nullptr) value = found_->Value();
}

void Attribute::readSwitch(std::int32_t& value) const {
  if (found_ != nullptr) value = isWord(found_->Value(), "true") ? 1 : 0;
}

void findAttributes(const XMLElement& element, const char* names, std::size_t width,
                    std::size_t count, const XMLAttribute** found) {
  std::fill_n(found, count, nullptr);
  std::size_t place = 0;
  for (const XMLAttribute* each = element.FirstAttribute(); each != nullptr; each = each->Next()) {
    const char* name = each->Name();
    bool isKnown = false;
    for (std::size_t tried = 0; tried < count && !isKnown; ++tried) {
      const std::size_t here = place;
      place = here + 1 == count ? 0 : here + 1;
      isKnown = std::strcmp(name, names + here * width) == 0;
      if (isKnown && found[here] == nullptr) found[here] = each;
    }
  }
}

}  // namespace camcfg
