#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/change.h"
#include "lint/additions.h"
#include "lint/forms.h"

namespace camcfg::tool::commands {
namespace {

// What brings previous or factory settings back brings back what is wrong with them, too, and `upgrade` has
// a way of its own to keep errors out. `lint` reports all that is left, which its change may bring to light.
constexpr const char* kUnreviewed[] = {"lint", "network reset", "reset",
                                       "undo", "salvage",       "upgrade"};

// Of a change that is faulty all over, the first findings say enough.
constexpr std::size_t kMostLines = 20;

// "error: /cfg0/mpp_cfg.xml:12: ... [rule]"
std::string lineOf(const lint::Finding& finding) {
  return concat(wordFor(finding.severity), ": ", finding.file, ":", finding.line, ": ",
                finding.text, " [", finding.rule->id, "]");
}

// What lint would say of what a command makes of the files.
class LintReview {
 public:
  explicit LintReview(bool force) : force_(force) {}

  void look(const std::vector<device::FileChange>& changes) {
    findings_.clear();
    std::vector<std::string> errors;
    for (const lint::Addition& addition : lint::additionsOf(changes)) {
      findings_.push_back(addition.finding);
      if (addition.isMore && addition.finding.severity == lint::Severity::Error)
        errors.push_back(lineOf(addition.finding));
    }
    if (errors.empty() || force_) return;
    const std::string more = takeMore(errors);
    throw Refusal(concat("this would add what 'lint' calls an error, which '--force' allows: ",
                         joined(errors, "; "), more.empty() ? "" : "; " + more));
  }

  void addTo(Answer& answer) const {
    if (!findings_.empty() && answer.value.is_object())
      answer.value["findings"] = lint::jsonOf(findings_);
    if (answer.status != Status::Done) return;
    std::vector<std::string> lines;
    for (const lint::Finding& finding : findings_) lines.push_back(lineOf(finding));
    const std::string more = takeMore(lines);
    answer.notes.insert(answer.notes.end(), lines.begin(), lines.end());
    if (!more.empty()) answer.notes.push_back(more);
  }

 private:
  // Leaves the first ones.
  static std::string takeMore(std::vector<std::string>& lines) {
    if (lines.size() <= kMostLines) return "";
    const std::size_t more = lines.size() - kMostLines;
    lines.resize(kMostLines);
    return concat("and ", more, " more");
  }

  const bool force_;
  std::vector<lint::Finding> findings_;
};

cli::Answer runReviewed(const std::function<Answer(const Arguments&)>& run,
                        const Arguments& arguments) {
  LintReview review(arguments.given(kForce));
  const device::Reviewed reviewed([&](const auto& changes) { review.look(changes); });
  Answer answer = run(arguments);
  review.addTo(answer);
  return answer;
}

}  // namespace

void addReviews(std::vector<CommandGroup>& groups) {
  for (CommandGroup& group : groups)
    for (cli::Command& command : group.commands)
      if (command.changesSettings && !isAmong(kUnreviewed, std::string_view(command.name)))
        command.run = [run = command.run](const Arguments& arguments) {
          return runReviewed(run, arguments);
        };
}

}  // namespace camcfg::tool::commands
