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
                             {checkNetwork, FileKind::Parameters},
                             {checkPresets, FileKind::Presets},
                             {checkStreams, FileKind::Media},
                             {checkWhitelists, FileKind::Media},
                             {checkLiveMedia, FileKind::Media},
                             {checkLanguage, FileKind::Language},
                             {checkCopies}};

}  // namespace

std::vector<Finding> lint(const std::vector<Source>& sources) {
  std::vector<Finding> all;
  std::size_t number = 0;
  for (const Source& source : sources) {
    const Stage stage(source.name, ++number, sources.size());
    Findings findings(source.name);
    const bool isRead = source.isWhole() && wrapperIn(*source.document) == nullptr;
    for (const Check& check : kChecks)
      if (!check.kind || (isRead && *check.kind == source.kind)) check.run(source, findings);
    applyAllowances(source, findings);
    std::vector<Finding> sorted = std::move(findings).sorted();
    all.insert(all.end(), std::make_move_iterator(sorted.begin()),
               std::make_move_iterator(sorted.end()));
  }
  return all;
}

}  // namespace camcfg::tool::lint
