#include "torture/harness/xml_text.h"

#include <tinyxml2.h>

namespace camcfg::torture {

std::optional<std::string> settingsOf(const std::string& text) {
  tinyxml2::XMLDocument document;
  if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return std::nullopt;
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return printer.CStr();
}

}  // namespace camcfg::torture
