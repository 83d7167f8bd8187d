#include <iterator>

#include "base/progress.h"
#include "lint/subject.h"

namespace camcfg::tool::lint {

std::vector<Subject> allSubjects() {
  return {structure(),      values(),     entryIds(),  parameterNames(), parameterValues(),
          systemSettings(), network(),    presets(),   media(),          streamSources(),
          streamCaches(),   whitelists(), liveMedia(), language(),       copies()};
}

std::vector<Finding> lint(const std::vector<Source>& sources) {
  const std::vector<Subject> subjects = allSubjects();
  std::vector<Finding> all;
  std::size_t number = 0;
  for (const Source& source : sources) {
    const Stage stage(source.name, ++number, sources.size());
    Findings findings(source.name);
    for (const Subject& subject : subjects)
      if (subject.check != nullptr &&
          (!subject.kind || (source.isWhole() && *subject.kind == source.kind)))
        subject.check(source, findings);
    std::vector<Finding> sorted = std::move(findings).sorted();
    all.insert(all.end(), std::make_move_iterator(sorted.begin()),
               std::make_move_iterator(sorted.end()));
  }
  return all;
}

}  // namespace camcfg::tool::lint
