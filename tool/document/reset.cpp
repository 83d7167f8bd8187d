#include "document/reset.h"

#include <algorithm>

#include "base/refusal.h"
#include "base/spelling.h"
#include "document/copies.h"
#include "document/sections.h"
#include "document/transitions.h"
#include "network/section.h"
#include "parameters/section.h"

namespace camcfg::tool::document {
namespace {

constexpr char kParameters[] = "parameters";
constexpr char kNetwork[] = "network";
constexpr char kNetworkSection[] = "NetWork";
constexpr char kUnchanged[] = "it has its factory values already";

// What is reset, gathered section by section, and what stands against it.
class Reset {
 public:
  void addParameters(const std::vector<parameters::Parameter>& wanted) {
    const device::Section& section = sectionNamed(kParameters);
    const Json before = section.load();
    add(section, before, parameters::resetParameters(before, factory_, wanted, without_));
  }

  void addNetwork() {
    const device::Section& section = sectionNamed(kNetwork);
    const Json before = section.load();
    add(section, before, network::resetNetwork(before, factory_, without_));
  }

  // Presets and media have factory values in the factory set alone.
  void addWhole(const device::Section& section) {
    if (copies_.empty()) copies_ = loadFromCopies(device::Place::Default);
    const CopiedSection& copy = copies_.at(section.name);
    if (!copy.fault.empty()) throw Refusal(section.name + " has no factory values: " + copy.fault);
    const Json before = section.load();
    const Json after =
        copy.value == before
            ? before
            : section.read(settings::Node(copy.value, section.name, faults_), before, plan_);
    plan_.set(section.name, after);
    add(section, before, after);
  }

  void add(const device::Section& section) {
    if (section.name == kNetwork) return addNetwork();
    if (section.name != kParameters) return addWhole(section);
    const parameters::Parameters parameters;
    addParameters(parameters.all());
  }

  const std::vector<std::string>& without() const { return without_; }

  cli::Answer carryOut(const ImportOptions& options) const {
    if (!faults_.empty()) return refusedFor(faults_);
    cli::Answer answer = carriedOut(transitions_, options, kUnchanged);
    if (!factory_.fault().empty() && hasDef_)
      answer.notes.push_back("note: " + factory_.fault() + "; \"Def\" of the main copy stands in");
    for (const std::string& path : without_)
      answer.notes.push_back("note: " + path + " has no usable factory value and stays as it is");
    return answer;
  }

 private:
  static const device::Section& sectionNamed(const std::string& name) {
    return *std::find_if(allSections().begin(), allSections().end(),
                         [&](const device::Section& section) { return section.name == name; });
  }

  void add(const device::Section& section, const Json& before, const Json& after) {
    hasDef_ = hasDef_ || section.name == kParameters || section.name == kNetwork;
    if (after != before) transitions_.push_back({&section, before, after});
  }

  const device::FactoryValues factory_;
  std::map<std::string, CopiedSection> copies_;
  bool hasDef_ = false;
  device::Plan plan_{allSections()};
  settings::Faults faults_;
  std::vector<std::string> without_;
  std::vector<Transition> transitions_;
};

std::vector<const device::Section*> exportedSections(const std::string& name) {
  std::vector<const device::Section*> found;
  for (const device::Section& section : allSections())
    if (isWithin(section, name)) found.push_back(&section);
  return found;
}

[[noreturn]] void refuseUnknown(const std::string& name, std::vector<std::string> known) {
  for (const device::Section& section : allSections()) known.push_back(section.name);
  throw Refusal("there is no section '" + name + "'" + didYouMean(name, known));
}

}  // namespace

cli::Answer resetParameter(const std::string& section, const std::string& name,
                           const ImportOptions& options) {
  const parameters::Parameters parameters;
  const parameters::Parameter parameter = parameters.require(section, name);
  if (name.find('/') != std::string::npos)
    throw Refusal(parameter.path() +
                  ": the library sets no parameter inside another one; 'camcfg network reset CARD' "
                  "resets a card");
  Reset reset;
  reset.addParameters({parameter});
  if (!reset.without().empty() || parameter.text("Cur") == nullptr)
    throw Refusal(parameter.path() +
                  ": it has no factory value, neither in the factory set nor as "
                  "\"Def\"");
  return reset.carryOut(options);
}

cli::Answer resetSection(const std::string& name, const ImportOptions& options) {
  Reset reset;
  const std::vector<const device::Section*> sections = exportedSections(name);
  for (const device::Section* section : sections) reset.add(*section);
  if (!sections.empty()) return reset.carryOut(options);

  const parameters::Parameters parameters;
  const std::vector<std::string> known = parameters.sections();
  if (std::find(known.begin(), known.end(), name) == known.end()) refuseUnknown(name, known);
  if (name == kNetworkSection)
    reset.addNetwork();
  else
    reset.addParameters(parameters.in(name));
  return reset.carryOut(options);
}

cli::Answer resetAll(const ImportOptions& options) {
  Reset reset;
  for (const device::Section& section : allSections()) reset.add(section);
  return reset.carryOut(options);
}

}  // namespace camcfg::tool::document
