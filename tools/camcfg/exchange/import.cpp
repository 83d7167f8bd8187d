#include "exchange/differences.h"
#include "exchange/document.h"
#include "exchange/exchange.h"
#include "exchange/parse.h"
#include "exchange/secrets.h"
#include "frame/progress.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

const Table kChanges{"changes",
                     {{"PLACE", "{place}"}, {"BEFORE", "{before-}"}, {"AFTER", "{after+}"}}};

Answer refused(const Faults& faults) {
  Answer answer;
  answer.status = Status::Refused;
  answer.value = {{"faults", Json::array()}};
  for (const auto& [place, reason] : faults) {
    const std::string where = place.empty() ? "document" : place;
    answer.value["faults"].push_back({{"place", where}, {"reason", reason}});
    answer.notes.push_back(std::string(where).append(": ").append(reason));
  }
  answer.notes.emplace_back("nothing was changed");
  return answer;
}

// What was written and, from the first step that failed, what was not.
struct Progress {
  std::vector<std::string> written;
  std::vector<std::string> left;
  std::string fault;
};

Progress carryOut(const std::vector<Transition>& transitions) {
  std::vector<Step> steps;
  for (const auto& [section, before, after] : transitions)
    for (const Step& step : section->steps(before, after)) steps.push_back(step);

  Progress progress;
  std::size_t number = 0;
  for (const Step& step : steps) try {
      const Stage stage(step.what, ++number, steps.size());
      if (progress.fault.empty()) step.carryOut();
      (progress.fault.empty() ? progress.written : progress.left).push_back(step.what);
    } catch (const Refusal& refusal) {
      progress.fault = refusal.what();
      progress.left.push_back(step.what);
    }
  return progress;
}

std::string joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list.empty() ? "nothing" : list;
}

Json changesOf(const std::vector<Transition>& transitions, bool showSecrets) {
  Json changes = Json::array();
  for (const auto& [section, before, after] : transitions)
    addDifferences(section->name, before, after, changes);
  if (showSecrets) return changes;
  for (Json& change : changes)
    for (const char* side : {"before", "after"})
      change[side] = withMaskedSecrets(change[side], change["place"].get<std::string>());
  return changes;
}

void tell(Answer& answer, const std::vector<Transition>& transitions) {
  for (const auto& [section, before, after] : transitions)
    for (const std::string& loss : section->losses()) answer.notes.push_back(loss);
}

void carryOut(Answer& answer, const std::vector<Transition>& transitions) {
  const Progress progress = carryOut(transitions);
  answer.value["written"] = progress.written;
  answer.value["notWritten"] = progress.left;
  if (progress.fault.empty()) return;
  answer.status = Status::Refused;
  answer.notes.push_back(progress.fault);
  answer.notes.push_back("written: " + joined(progress.written) +
                         "; not written: " + joined(progress.left));
}

}  // namespace

Answer importSettings(const std::string& text, const ImportOptions& options) {
  Faults faults;
  const Json document = parseJson(text, faults);
  const std::vector<Transition> transitions = readDocument(document, faults);
  if (!faults.empty()) return refused(faults);

  Answer answer;
  answer.value["dryRun"] = options.rehearse;
  answer.value["changes"] = changesOf(transitions, options.showSecrets);
  if (transitions.empty())
    answer.layout = {Line{"nothing differs from the device"}};
  else
    answer.layout = {kChanges};
  if (options.rehearse && !transitions.empty())
    answer.layout.emplace_back(Line{"nothing was written"});
  tell(answer, transitions);
  if (!options.rehearse) carryOut(answer, transitions);
  return answer;
}

}  // namespace camcfg::tool
