#include "document/entries.h"

#include <camcfg/types.h>

#include <algorithm>
#include <iterator>
#include <list>

#include "base/secret_input.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "document/keyed.h"
#include "document/members.h"
#include "settings/media.h"
#include "settings/secrets.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kCascade[] = "--cascade";
constexpr char kEntry[] = "ENTRY";
constexpr char kMember[] = "MEMBER=VALUE";

using settings::Setting;

bool isAskedFor(const settings::Table& table, const std::string& word) {
  const Setting* setting = document::memberOf(table.settings, word);
  return setting != nullptr && setting->masked != nullptr && word.substr(word.find('=') + 1) == "-";
}

// A secret that is given as "-" is not seen by whoever lists processes. It is not asked for where another
// word is faulty.
std::vector<std::string> withSecrets(const settings::Table& table, const Arguments& arguments) {
  std::vector<std::string> words = arguments.texts(kMember);
  for (std::string& word : words) {
    if (!isAskedFor(table, word)) continue;
    Json unused = Json::object();
    document::assign(table.settings, words, document::placeOf(table.place, arguments.text(kEntry)),
                     unused);
    word.replace(word.size() - 1, 1, readSecret(document::memberOf(table.settings, word)->member));
  }
  return words;
}

using Carry = Outcome (*)(const settings::Table&, const Arguments&);

document::ImportOptions optionsOf(const settings::Table& table, const Arguments& arguments) {
  return {arguments.given(kDryRun), settings::hasSecrets(table) && arguments.given(kShowSecrets)};
}

device::Turn turnFor(const Arguments& arguments) {
  return device::Turn(filesFor(arguments, {CFG_FILE_MPP}));
}

Outcome add(const settings::Table& table, const Arguments& arguments) {
  const std::vector<std::string> members = withSecrets(table, arguments);
  const device::Turn turn = turnFor(arguments);
  return document::addEntry(table, arguments.text(kEntry), members, optionsOf(table, arguments));
}

Outcome change(const settings::Table& table, const Arguments& arguments) {
  const std::vector<std::string> members = withSecrets(table, arguments);
  const device::Turn turn = turnFor(arguments);
  return document::setEntry(table, arguments.text(kEntry), members, optionsOf(table, arguments));
}

Outcome remove(const settings::Table& table, const Arguments& arguments) {
  const device::Turn turn = turnFor(arguments);
  return document::deleteEntry(table, arguments.text(kEntry), arguments.given(kCascade),
                               optionsOf(table, arguments));
}

// Names and helps are kept for as long as the program runs, as other commands' are.
const char* kept(std::string text) {
  static std::list<std::string> texts;
  return texts.emplace_back(std::move(text)).c_str();
}

// What each verb is shown with, on the sample device.
struct Examples {
  const settings::Table& table;
  const char* add;
  const char* set;
  const char* remove;
};

const Examples& examplesFor(const settings::Table& table) {
  static const Examples all[] = {
      {settings::streamSources(), "stream source add 12 kind=VENC name=ch5-main channel=8",
       "stream source set 9 enabled=yes", "stream source delete mic-pcm --cascade"},
      {settings::streamCaches(), "stream cache add 11 name=aux size=2MiB allowed=0,2 default=0",
       "stream cache set program size=16MiB", "stream cache delete audio-pcm"},
      {settings::websocket(), "live websocket add preview-9 id=2",
       "live websocket set preview-1 name=lobby", "live websocket delete 8"},
      {settings::rtsp(), "live rtsp add ch9 channels=0:video,8:audio",
       "live rtsp set ch1/main name=stage", "live rtsp delete ch4/sub"},
      {settings::rtmp(),
       "live rtmp add 2 url=rtmp://live.example/app/key video=12 audio=8 enabled=no",
       "live rtmp set 1 enabled=yes password=-", "live rtmp delete 1"},
      {settings::ndi(), "live ndi add 4 enabled=yes mainStreamName=Stage mainVideo=12 audio=8",
       "live ndi set 0 groupName=studio", "live ndi delete 3"},
      {settings::srt(),
       "live srt add 2 mode=caller hostname=relay.example port=9001 streams=program:12+8",
       "live srt set 1 latency=250 password=-", "live srt delete ingest.example.com"}};
  return *std::find_if(std::begin(all), std::end(all),
                       [&](const Examples& examples) { return &examples.table == &table; });
}

cli::Command commandFor(const settings::Table& table, const std::string& name, const char* verb,
                        Carry carry, std::vector<Option> options, const char* example) {
  cli::Command command{kept(name), kept(std::string(verb) + table.entry), std::move(options),
                       [&table, carry](const Arguments& arguments) {
                         return changed(carry(table, arguments), kSoAlready);
                       }};
  command.options.push_back(dryRun());
  if (settings::hasSecrets(table))
    command.options.push_back(
        {Option::Flag, kShowSecrets, "Show passwords in the list of changes"});
  command.changesDevice = command.changesSettings = true;
  command.details = [&table] { return helpOf(table); };
  command.examples = {example};
  return command;
}

}  // namespace

std::vector<cli::Command> commandsForEntries(const settings::Table& table,
                                             const std::string& above) {
  const auto words = [&table](const Arguments&) { return entryWords(table); };
  const auto members = [&table](const Arguments&) { return memberWords(table.settings); };
  const char* meaning =
      kept("Its " + std::string(table.key) +
           (table.label == nullptr ? "" : std::string(", or its ") + table.label));
  const char* member = settings::hasSecrets(table) ? "A member as below and its value; a secret "
                                                     "that is '-' is asked for at the terminal, or "
                                                     "is the next line of standard input"
                                                   : "A member as below and its value";
  const Option entry{Option::Argument, kEntry, meaning, words};
  const Examples& examples = examplesFor(table);
  return {commandFor(table, above + " add", "Add one ", add,
                     {{Option::Argument, kEntry, meaning, anyWord},
                      {Option::OptionalArguments, kMember, member, members}},
                     examples.add),
          commandFor(table, above + " set", "Change members of one ", change,
                     {entry, {Option::Arguments, kMember, member, members}}, examples.set),
          commandFor(table, above + " delete", "Delete one ", remove,
                     {entry,
                      {Option::Flag, kCascade,
                       "Take it out of what refers to it; what cannot be without it goes, too"}},
                     examples.remove)};
}

std::string helpOf(const settings::Table& table) {
  return std::string("Each ") + table.entry + " in exported documents (" + table.place + "):\n" +
         membersHelp(table.settings,
                     [](const settings::Setting& setting) { return setting.member; });
}

}  // namespace camcfg::tool::commands
