#include "base/outcome.h"
#include "base/plain_text.h"
#include "document/exchange.h"
#include "document/section_names.h"
#include "network/network.h"
#include "parameters/parameter.h"

namespace camcfg::tool::document {
namespace {

// What is reset, gathered section by section, and what prevents it.
class Reset {
 public:
  void addParameters(const std::vector<parameters::Parameter>& wanted) {
    const device::Section& section = sectionOf(kParameters);
    const Json before = section.load();
    target_.add(section, before, parameters::resetParameters(before, factory_, wanted, without_));
    hasDef_ = true;
  }

  void addNetwork() {
    const device::Section& section = sectionOf(kNetwork);
    const Json before = section.load();
    target_.add(section, before, network::resetNetwork(before, factory_, without_));
    hasDef_ = true;
  }

  // Presets and media have factory values in the factory set only.
  void addWhole(const device::Section& section) {
    if (copies_.empty()) copies_ = loadFrom(device::Place::Default);
    const CopiedSection& copy = copies_.at(section.name);
    if (!copy.fault.empty()) throw Refusal(section.name + " has no factory values: " + copy.fault);
    target_.read(section, copy.value);
  }

  void add(const device::Section& section) {
    if (section.name == kNetwork) return addNetwork();
    if (section.name != kParameters) return addWhole(section);
    const parameters::Parameters parameters;
    addParameters(parameters.all());
  }

  const std::vector<std::string>& without() const { return without_; }

  Outcome carryOut(const ImportOptions& options) const {
    Outcome outcome = carriedOut(target_, options);
    if (!target_.faults.empty()) return outcome;
    if (!factory_.fault().empty() && hasDef_)
      outcome.notes.push_back("note: " + factory_.fault() +
                              "; \"Def\" of the main copy is used instead");
    for (const std::string& path : without_)
      outcome.notes.push_back("note: " + path + " has no usable factory value and stays as it is");
    return outcome;
  }

 private:
  const device::FactoryValues factory_;
  CopiedSections copies_;
  bool hasDef_ = false;
  std::vector<std::string> without_;
  Target target_;
};

}  // namespace

Outcome resetParameter(const std::string& place, const std::string& name,
                       const ImportOptions& options) {
  const parameters::Parameters parameters;
  const parameters::Parameter parameter = parameters.requireAt(place, name);
  if (parameter.isInner())
    throw Refusal(parameter.path() + ": the library sets no parameter inside another one");
  Reset reset;
  reset.addParameters({parameter});
  if (!reset.without().empty() || parameter.text("Cur") == nullptr)
    throw Refusal(parameter.path() +
                  ": it has no factory value, neither in the factory set nor as "
                  "\"Def\"");
  return reset.carryOut(options);
}

Outcome resetSection(const std::string& name, const ImportOptions& options) {
  Reset reset;
  bool isExported = false;
  for (const device::Section& section : allSections())
    if (isWithin(section, name)) {
      reset.add(section);
      isExported = true;
    }
  if (isExported) return reset.carryOut(options);

  const parameters::Parameters parameters;
  if (!isAmong(parameters.sections(), name)) throw Refusal(whyNoSection(name));
  if (name == settings::kNetworkSection)
    reset.addNetwork();
  else
    reset.addParameters(parameters.in(name));
  return reset.carryOut(options);
}

Outcome resetAll(const ImportOptions& options) {
  Reset reset;
  for (const device::Section& section : allSections()) reset.add(section);
  return reset.carryOut(options);
}

}  // namespace camcfg::tool::document
