#include "document/section_names.h"

#include "base/outcome.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "parameters/parameter.h"

namespace camcfg::tool::document {

std::vector<std::string> exportNames() {
  std::vector<std::string> names;
  for (const device::Section& section : allSections()) {
    const std::string group = section.name.substr(0, section.name.find('.'));
    if (!isAmong(names, group)) names.push_back(group);
    if (group != section.name) names.push_back(section.name);
  }
  return names;
}

std::vector<std::string> parameterSections() try {
  return parameters::Parameters().sections();
} catch (const Refusal&) {
  return {};
}

std::vector<std::string> sectionNames() {
  std::vector<std::string> names = exportNames();
  for (const std::string& section : parameterSections())
    if (!isAmong(names, section)) names.push_back(section);
  return names;
}

std::string whyNoSection(const std::string& name) {
  return noSection(name, sectionNames());
}

}  // namespace camcfg::tool::document
