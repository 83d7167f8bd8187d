#include <ctime>
#include <map>

#include "base/plain_text.h"
#include "cli/channel.h"
#include "commands/groups.h"
#include "device/watcher.h"
#include "document/changes.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kExec[] = "--exec";
constexpr char kChangeLine[] = "{time} {place}: {before} -> {after}";

// "2026-11-22T11:15:13.250Z"
std::string timeNow() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  char fraction[16];
  std::snprintf(fraction, sizeof fraction, ".%03dZ", static_cast<int>(now.tv_nsec / 1000000));
  const std::string whole = utcText(now.tv_sec);
  return whole.substr(0, whole.find('Z')) + fraction;
}

Json recordsOf(const Json& differences, const document::Places& places) {
  const std::string time = timeNow();
  Json records = Json::array();
  for (const Json& difference : differences)
    if (places.include(difference["place"].text()))
      records.push_back({{"time", time},
                         {"place", difference["place"]},
                         {"before", difference["before"]},
                         {"after", difference["after"]}});
  return records;
}

using Faults = std::map<std::string, std::string>;

// Says what keeps files from being read, once, and not of a save that is over at the next look.
void tellLasting(const Faults& now, const Faults& former, Faults& told,
                 const cli::Channel& channel) {
  Faults lasting;
  for (const auto& [path, fault] : now)
    if (const auto found = former.find(path); found != former.end() && found->second == fault)
      lasting[path] = fault;
  for (const auto& [path, fault] : lasting)
    if (told[path] != fault) channel.say(fault + "; waiting until it can be read");
  told = lasting;
}

Answer watch(const Arguments& arguments) {
  const cli::Channel& channel = arguments.channel();
  const document::Places places(arguments.texts(kPlace));
  document::Changes changes;
  device::Watcher watcher(document::Changes::files());
  Faults told;
  for (bool isFirst = true;; isFirst = false) {
    watcher.arm();
    const Faults former = changes.faults();
    const Json records =
        recordsOf(document::differencesOf(changes.look(), arguments.given(kShowSecrets)), places);
    tellLasting(changes.faults(), isFirst ? changes.faults() : former, told, channel);
    if (!records.empty()) channel.answer(records, kChangeLine);
    if (!records.empty() && arguments.given(kExec))
      channel.feed(arguments.text(kExec), records, kChangeLine);
    watcher.wait([&](int events, int most) { return channel.wait(events, most); },
                 changes.isUneasy());
  }
}

}  // namespace

CommandGroup watchGroup() {
  CommandGroup group{
      "Parameters",
      {command("watch", "Print each setting that changes, whoever changes it, until it is stopped",
               watch,
               {{Option::OptionalArguments, kPlace,
                 "Only these: System, System Rtsp, live.srt, live.srt[].port"},
                {Option::Value, kExec,
                 "Run this line of the shell for each burst of changes, with them on its standard "
                 "input"},
                {Option::Flag, kShowSecrets, "Show passwords"}})}};
  group.commands.front().goesOn = true;
  return group;
}

}  // namespace camcfg::tool::commands
