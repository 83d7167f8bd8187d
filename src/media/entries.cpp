#include "media/entries.h"

#include "base/integer.h"
#include "media/attributes.h"

namespace camcfg {

// Here, because it may throw and its siblings do not.
void Attributes::readText(std::size_t place, std::string& value) const {
  const char* read = text(place);
  if (read != nullptr) value = read;
}

void setInt(tinyxml2::XMLElement& element, const char* attribute, std::int32_t value) {
  element.SetAttribute(attribute, IntegerText(value).begin());
}

}  // namespace camcfg
