#include <camcfg/store.h>

#include "device/explanation.h"
#include "network/network.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::network {
namespace {

using settings::Setting;

// The file's own limits where it has any.
std::string permitted(const Setting& setting, const tinyxml2::XMLElement* element) {
  if (setting.kind != settings::Kind::Integer) return settings::permittedInFile(setting, {});
  if (element == nullptr) return "";
  return settings::permittedInFile(setting, settings::limitsIn(*element, setting.limits));
}

device::ExplainedValue valueOf(const device::ExplainedFile& file, device::ElementPath path,
                               const Setting& setting) {
  path.emplace_back(settings::elementOf(setting));
  device::ExplainedValue value =
      file.value(path.back(), device::finderOf(path),
                 [](const tinyxml2::XMLElement& element) { return attributeOf(&element, "Cur"); });
  value.permitted = permitted(setting, device::elementAt(file.document(), path));
  return value;
}

}  // namespace

device::Explanation explainCard(const std::string& card, const std::string& field) {
  const device::ExplainedFile file(CFG_FILE_BUSINESS);
  const Setting* only = field.empty() ? nullptr : &settings::requireCardSetting(field);
  std::vector<std::string> names = {card};
  if (only != nullptr) names.emplace_back(settings::elementOf(*only));
  device::Explanation explanation;
  device::ElementPath path = device::addLookups(explanation, file, "NetWork", names);
  explanation.what = joined(path, "/");
  explanation.copies = file.copies(device::finderOf(path));
  if (only != nullptr) path.pop_back();
  for (const Setting& setting : settings::cardSettings())
    if (only == nullptr || only == &setting)
      explanation.values.push_back(valueOf(file, path, setting));
  return explanation;
}

}  // namespace camcfg::tool::network
