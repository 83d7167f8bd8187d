#include "lint/lint.h"

#include <iterator>
#include <optional>

#include "base/progress.h"
#include "lint/allowances.h"
#include "lint/near_names.h"

namespace camcfg::tool::lint {
namespace {

struct Check {
  void (*run)(const Source& source, Findings& findings);
  std::optional<FileKind> kind{};  // of the files that it looks at, if they are whole; none: at all
};

// Findings of one line come in this order.
constexpr Check kChecks[] = {{checkStructure},
                             {checkText},
                             {checkParameterNames, FileKind::Parameters},
                             {checkParameterValues, FileKind::Parameters},
                             {checkSystemSettings, FileKind::Parameters},
                             {checkSystemPorts, FileKind::Parameters},
                             {checkNetwork, FileKind::Parameters},
                             {checkPresets, FileKind::Presets},
                             {checkStreams, FileKind::Media},
                             {checkUses, FileKind::Media},
                             {checkWhitelists, FileKind::Media},
                             {checkLiveMedia, FileKind::Media},
                             {checkKinds, FileKind::Media},
                             {checkServices, FileKind::Media},
                             {checkLanguage, FileKind::Language},
                             {checkCopies}};

using CheckOfAll = void (*)(const std::vector<Source>& sources, std::vector<Findings>& findings);

constexpr CheckOfAll kChecksOfAll[] = {checkPortsOfAll, checkLanguages, checkTranslations};

void runChecks(const Source& source, Findings& findings) {
  const bool isRead =
      source.isWhole() && !isWebPage(source) && wrapperIn(*source.document) == nullptr;
  for (const Check& check : kChecks)
    if (!check.kind || (isRead && *check.kind == source.kind)) check.run(source, findings);
}

}  // namespace

std::vector<Finding> lint(const std::vector<Source>& sources) {
  std::vector<Findings> found;
  for (const Source& source : sources) {
    const Stage stage(source.name, found.size() + 1, sources.size());
    found.emplace_back(source.name);
    runChecks(source, found.back());
  }
  for (const CheckOfAll check : kChecksOfAll) check(sources, found);
  std::vector<Finding> all;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    applyAllowances(sources[i], found[i]);
    std::vector<Finding> sorted = std::move(found[i]).sorted();
    all.insert(all.end(), std::make_move_iterator(sorted.begin()),
               std::make_move_iterator(sorted.end()));
  }
  return all;
}

}  // namespace camcfg::tool::lint
