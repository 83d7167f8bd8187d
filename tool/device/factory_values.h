#ifndef CAMCFG_TOOL_DEVICE_FACTORY_VALUES_H
#define CAMCFG_TOOL_DEVICE_FACTORY_VALUES_H

#include <tinyxml2.h>

#include <optional>
#include <string>

#include "device/copy.h"

namespace camcfg::tool::device {

/// What a new device has for the parameters and cards of "/cfg0/business_param.xml": what its factory
/// copy holds. Where that is missing or broken, or lacks the element, its "Def" is used instead.
class FactoryValues {
 public:
  FactoryValues();

  /// The factory value of an element of the main copy; none if neither has one.
  std::optional<std::string> of(const tinyxml2::XMLElement& element) const;
  /// The same for an attribute that has no "Def".
  std::optional<std::string> attributeOf(const tinyxml2::XMLElement& element,
                                         const char* attribute) const;

  /// Why the factory copy cannot be asked, with its path; empty if it can.
  const std::string& fault() const { return fault_; }

 private:
  Document document_;
  std::string fault_;
};

}  // namespace camcfg::tool::device

#endif
