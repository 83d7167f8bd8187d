#include "document/factory.h"

#include "base/concat.h"
#include "base/outcome.h"
#include "network/network.h"

namespace camcfg::tool::document {

Json Factory::parameters(const Json& before, const std::vector<parameters::Parameter>& parameters) {
  hasDef_ = true;
  return parameters::resetParameters(before, values_, parameters, without_);
}

Json Factory::network(const Json& before) {
  hasDef_ = true;
  return network::resetNetwork(before, values_, without_);
}

const Json& Factory::whole(const device::Section& section) {
  if (copies_.empty()) copies_ = loadFrom(device::Place::Default);
  const CopiedSection& copy = copies_.at(section.name);
  if (!copy.fault.empty())
    throw Refusal(concat(section.name, " has no factory values: ", copy.fault));
  return copy.value;
}

std::vector<std::string> Factory::notes() const {
  std::vector<std::string> notes;
  if (!values_.fault().empty() && hasDef_)
    notes.push_back(
        concat("note: ", values_.fault(), "; \"Def\" of the main copy is used instead"));
  for (const std::string& path : without_)
    notes.push_back(concat("note: ", path, " has no usable factory value and stays as it is"));
  return notes;
}

}  // namespace camcfg::tool::document
