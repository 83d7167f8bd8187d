#include "torture/harness/xml_text.h"

#include <tinyxml2.h>

namespace camcfg::torture {
namespace {

/// Prints elements and attributes: no setting is anywhere else.
class SettingsPrinter : public tinyxml2::XMLPrinter {
 public:
  bool Visit(const tinyxml2::XMLText& /*text*/) override { return true; }
  bool Visit(const tinyxml2::XMLComment& /*comment*/) override { return true; }
  bool Visit(const tinyxml2::XMLDeclaration& /*declaration*/) override { return true; }
  bool Visit(const tinyxml2::XMLUnknown& /*unknown*/) override { return true; }
};

}  // namespace

std::optional<std::string> settingsOf(const std::string& text) {
  tinyxml2::XMLDocument document;
  if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return std::nullopt;
  SettingsPrinter printer;
  document.Accept(&printer);
  return printer.CStr();
}

}  // namespace camcfg::torture
