#include "base/outcome.h"
#include "base/plain_text.h"
#include "document/exchange.h"
#include "document/factory.h"
#include "document/section_names.h"
#include "parameters/parameter.h"
#include "settings/network.h"

namespace camcfg::tool::document {
namespace {

// What is reset, gathered section by section, and what prevents it.
class Reset {
 public:
  void addParameters(const std::vector<parameters::Parameter>& wanted) {
    const device::Section& section = sectionOf(kParameters);
    const Json before = section.load();
    target_.add(section, before, factory_.parameters(before, wanted));
  }

  void addNetwork() {
    const device::Section& section = sectionOf(kNetwork);
    const Json before = section.load();
    target_.add(section, before, factory_.network(before));
  }

  void add(const device::Section& section) {
    if (section.name == kNetwork) return addNetwork();
    if (section.name != kParameters) return target_.read(section, factory_.whole(section));
    const parameters::Parameters parameters;
    addParameters(parameters.all());
  }

  const std::vector<std::string>& without() const { return factory_.without(); }

  Outcome carryOut(const ImportOptions& options) {
    target_.notes = factory_.notes();
    return carriedOut(target_, options);
  }

 private:
  Factory factory_;
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
