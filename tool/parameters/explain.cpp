#include <camcfg/store.h>

#include <algorithm>

#include "base/plain_text.h"
#include "device/explanation.h"
#include "parameters/parameter.h"

namespace camcfg::tool::parameters {
namespace {

std::vector<std::string> partsOf(const std::string& path) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    parts.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

struct Attribute {
  const char* name;
  const char* label;
};

constexpr Attribute kAttributes[] = {{"Cur", "current"}, {"Def", "default"}, {"Min", "min"},
                                     {"Max", "max"},     {"Step", "step"},   {"OptTxt", "allowed"}};

bool isEmpty(const device::ExplainedValue& value) {
  return std::all_of(value.in.begin(), value.in.end(), [](const Json& in) { return in.is_null(); });
}

}  // namespace

device::Explanation explainParameter(const std::string& section, const std::string& name) {
  const device::ExplainedFile file(CFG_FILE_BUSINESS);
  const std::vector<std::string> names = partsOf(name);
  device::Explanation explanation;
  const device::ElementPath path = device::addLookups(explanation, file, section, names);
  if (names.size() == 1)
    explanation.lookups.push_back(file.told(device::lookupInSections(file.document(), name)));

  explanation.what = joined(path, "/");
  explanation.copies = file.copies(device::finderOf(path));
  for (const Attribute& attribute : kAttributes) {
    device::ExplainedValue value =
        file.value(attribute.label, device::finderOf(path), [&](tinyxml2::XMLElement& element) {
          return Parameter{section, name, &element}.value(attribute.name);
        });
    if (!isEmpty(value) || explanation.values.empty()) explanation.values.push_back(value);
  }
  if (const tinyxml2::XMLElement* element = device::elementAt(file.document(), path))
    explanation.values.front().permitted = settings::ParameterForm(*element).permitted();
  return explanation;
}

}  // namespace camcfg::tool::parameters
