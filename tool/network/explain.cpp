#include "network/explain.h"

#include <camcfg/store.h>

#include "base/plain_text.h"
#include "device/explanation.h"
#include "network/field.h"
#include "network/network.h"

namespace camcfg::tool::network {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

std::string listed(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : ", ") + word;
  return list;
}

// The file's own limits where it has any.
std::string permittedFor(const NetworkField& field, const XMLElement* element) {
  if (!field.isNumber()) return listed(field.words);
  if (element == nullptr) return "";
  const auto [min, max] = mtuLimits(*element);
  return std::to_string(min) + ".." + std::to_string(max);
}

device::ExplainedValue fieldValue(const device::ExplainedFile& file, device::ElementPath path,
                                  const NetworkField& field) {
  path.emplace_back(field.name);
  device::ExplainedValue value =
      file.value(field.name, device::finderOf(path),
                 [](const XMLElement& element) { return attributeOf(&element, "Cur"); });
  value.permitted = permittedFor(field, device::elementAt(file.document(), path));
  return value;
}

}  // namespace

device::Explanation explainCard(const std::string& card, const std::string& field) {
  const device::ExplainedFile file(CFG_FILE_BUSINESS);
  const NetworkField* only = field.empty() ? nullptr : &requireNetworkField(field);
  std::vector<std::string> names = {card};
  if (only != nullptr) names.emplace_back(only->name);
  device::Explanation explanation;
  device::ElementPath path = device::addLookups(explanation, file, "NetWork", names);
  explanation.what = joined(path, "/");
  explanation.copies = file.copies(device::finderOf(path));
  if (only != nullptr) path.pop_back();
  for (const NetworkField& each : networkFields())
    if (only == nullptr || only == &each)
      explanation.values.push_back(fieldValue(file, path, each));
  return explanation;
}

}  // namespace camcfg::tool::network
