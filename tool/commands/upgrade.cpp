#include "upgrade/upgrade.h"
#include "base/concat.h"

#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kFrom[] = "--from";
constexpr char kRulesFile[] = "--rules";
constexpr char kOnConflict[] = "--on-conflict";
constexpr char kCheckRules[] = "--check-rules";
constexpr const char* kConflictWords[] = {"user", "factory", "stop"};

upgrade::OnConflict onConflictIn(const Arguments& arguments) {
  if (!arguments.given(kOnConflict)) return upgrade::OnConflict::User;
  const std::string word = arguments.text(kOnConflict);
  if (word == kConflictWords[0]) return upgrade::OnConflict::User;
  if (word == kConflictWords[1]) return upgrade::OnConflict::Factory;
  if (word == kConflictWords[2]) return upgrade::OnConflict::Stop;
  throw Refusal(Status::Usage,
                concat(kOnConflict, ": ", quoted(word), " is none of ", joined(kConflictWords)));
}

std::optional<std::string> rulesIn(const Arguments& arguments) {
  if (!arguments.given(kRulesFile)) return std::nullopt;
  return arguments.text(kRulesFile);
}

Answer checkRules(const Arguments& arguments) {
  for (const char* other : {kFrom, kOnConflict, kDryRun})
    if (arguments.given(other))
      throw Refusal(Status::Usage, concat(kCheckRules, " cannot be combined with ", other));
  Answer answer(upgrade::checkRules(rulesIn(arguments)));
  if (answer.status == Status::Done)
    answer.layout = {Line{"version {version}, rules: {rules}; no fault"}};
  else
    answer.layout = {cli::Lines{"faults", "{place}: {reason}"}};
  return answer;
}

upgrade::UpgradeOptions upgradeOptions(const Arguments& arguments) {
  upgrade::UpgradeOptions options;
  if (arguments.given(kFrom)) {
    options.fromName = arguments.text(kFrom);
    options.from = upgrade::setOf(options.fromName, arguments.files(kFrom));
  }
  options.rules = rulesIn(arguments);
  options.onConflict = onConflictIn(arguments);
  options.rehearse = arguments.given(kDryRun);
  options.showSecrets = arguments.given(kShowSecrets);
  return options;
}

Answer upgradeDevice(const Arguments& arguments) {
  if (arguments.given(kCheckRules)) return checkRules(arguments);
  const upgrade::UpgradeOptions options = upgradeOptions(arguments);
  const device::Turn turn(options.rehearse ? device::Turn::Files() : device::Turn::allFiles());
  Answer answer(upgrade::upgrade(options));
  if (!answer.value["changes"].empty())
    answer.layout.emplace_back(Table{"changes",
                                     {{"WHAT", "{what}"},
                                      {"PLACE", "{place}"},
                                      {"BEFORE", "{before-}"},
                                      {"AFTER", "{after+}"},
                                      {"REASON", "{reason}"}}});
  if (!answer.value["findings"].empty())
    answer.layout.emplace_back(cli::Lines{"findings", "found now: {}"});
  if (answer.status != Status::Done) return answer;
  if (answer.value["mergedBefore"] == true && answer.value["files"].empty())
    answer.layout.emplace_back(Line{"the factory set in place has been merged before"});
  else if (answer.value["files"].empty())
    answer.layout.emplace_back(Line{"no file differs from what the new factory set makes of it"});
  else if (options.rehearse)
    answer.layout.emplace_back(Line{"nothing was written"});
  return answer;
}

}  // namespace

CommandGroup upgradeGroup() {
  Option from{Option::HostFolder, kFrom, "Old factory set; without it the one that is kept"};
  from.files = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml", "upgrade.json",
                "../upgrade.json"};
  return {"Files",
          {changer(
              "upgrade", "Bring the settings to a new factory set, keeping what was changed",
              upgradeDevice,
              {from,
               {Option::HostFileValue, kRulesFile,
                "Rules for what a merge cannot know; without it /app/resource/upgrade.json"},
               {Option::Value, kOnConflict,
                "Whose value counts where both have changed it: user, factory; or stop",
                oneOf({kConflictWords[0], kConflictWords[1], kConflictWords[2]}), nullptr, "WHOSE"},
               {Option::Flag, kDryRun, "Show what would change and write nothing"},
               {Option::Flag, kCheckRules, "Only check the rules"},
               {Option::Flag, kShowSecrets, "Show passwords in the list of changes"}})}};
}

}  // namespace camcfg::tool::commands
