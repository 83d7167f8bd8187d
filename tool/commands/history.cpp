#include "device/history.h"
#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "document/past.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kChange[] = "N";
constexpr char kKeep[] = "--keep";

int numberIn(const std::string& text, int least) {
  const std::optional<std::int32_t> number = decimal32(text);
  if (!number || *number < least)
    throw Refusal(Status::Usage, concat(quoted(text), " is not a number from ", least));
  return *number;
}

Candidates changes(const Arguments& /*before*/) {
  Candidates candidates;
  for (const device::RecordedChange& change : device::history())
    candidates.push_back({std::to_string(change.number), change.command});
  return candidates;
}

const Table& changedSettings() {
  static const Table table{"changes",
                           {{"PLACE", "{place}"}, {"BEFORE", "{before-}"}, {"AFTER", "{after+}"}}};
  return table;
}

Answer keep(int most) {
  const device::Turn turn(device::Turn::allFiles());
  device::setHistoryLimit(most);
  const Json value = {{"keep", most}};
  return {value, {Line{"changes that are kept: {keep}"}}};
}

Answer history(const Arguments& arguments) {
  if (arguments.given(kKeep)) {
    if (arguments.given(kChange))
      throw Refusal(Status::Usage, concat(kKeep, " cannot be combined with ", kChange));
    return keep(numberIn(arguments.text(kKeep), 0));
  }
  if (arguments.given(kChange)) {
    Answer answer(
        document::showChange(numberIn(arguments.text(kChange), 1), arguments.given(kShowSecrets)),
        {Fields{{{"number", "{number}"},
                 {"time", "{time}"},
                 {"caller", "{caller}"},
                 {"command", "{command}"},
                 {"files", "{files}"}}}});
    answer.layout.emplace_back(answer.value["changes"].empty()
                                   ? cli::Block(Line{"no setting was changed"})
                                   : cli::Block(changedSettings()));
    return answer;
  }
  Answer answer(document::listChanges());
  if (answer.value["changes"].empty())
    answer.layout = {Line{"no change is kept"}};
  else
    answer.layout = {Table{
        "changes",
        {{"N", "{number}"}, {"TIME", "{time}"}, {"CALLER", "{caller}"}, {"COMMAND", "{command}"}}}};
  return answer;
}

Answer undo(const Arguments& arguments) {
  const bool isRehearsal = arguments.given(kDryRun);
  const device::Turn turn(isRehearsal ? device::Turn::Files() : device::Turn::allFiles());
  std::optional<int> number;
  if (arguments.given(kChange)) number = numberIn(arguments.text(kChange), 1);
  Answer answer(document::undoChanges(number, arguments.given(kForce),
                                      {isRehearsal, arguments.given(kShowSecrets)}));
  if (answer.status != Status::Done) return answer;
  if (answer.value["changes"].empty())
    answer.layout = {Line{"no setting differs from then"}};
  else
    answer.layout = {changedSettings()};
  if (isRehearsal) answer.layout.emplace_back(Line{"nothing was written"});
  return answer;
}

}  // namespace

std::vector<std::string> remarks() {
  const std::optional<device::RecordedChange> change = device::interruptedChange();
  if (!change) return {};
  return {concat("an interrupted change is waiting: ", device::describe(*change),
                 "; 'camcfg boot' or the next change brings it to its end")};
}

CommandGroup historyGroup() {
  return {
      "History",
      {command("history", "List the last changes, or show what one of them changed", history,
               {{Option::OptionalArgument, kChange, "Number of a change", changes},
                {Option::Value, kKeep, "Keep so many changes; 0 keeps none", {}, nullptr, "N"},
                {Option::Flag, kShowSecrets, "Show passwords"}}),
       changer(
           "undo", "Bring settings back to what they were before a change", undo,
           {{Option::OptionalArgument, kChange,
             "Take back this change and all later ones; without it the last one", changes},
            {Option::Flag, kForce,
             "Also settings that were set to something else since, and confirm a change that is on "
             "trial first"},
            {Option::Flag, kDryRun, "Show what would change and change nothing"},
            {Option::Flag, kShowSecrets, "Show passwords"}})}};
}

}  // namespace camcfg::tool::commands
