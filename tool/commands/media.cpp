#include <camcfg/types.h>

#include <algorithm>
#include <list>
#include <string>

#include "base/concat.h"
#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "lint/lint.h"
#include "media/media.h"
#include "media/readable.h"
#include "media/stream_cache.h"
#include "media/wiring.h"
#include "settings/secrets.h"

namespace camcfg::tool::commands {
namespace {

// The entries of a section, a line each, in the columns that its table names.
Answer listingOf(const settings::Table& table, bool showSecrets) {
  return readableAnswer(
      media::asFarAsReadable([&] { return media::shownEntries(table, showSecrets); }, &table),
      {columnsOf(table.settings)});
}

std::string helpOfAll(const std::vector<const settings::Table*>& tables) {
  std::string text;
  for (const settings::Table* table : tables) text += (text.empty() ? "" : "\n") + helpOf(*table);
  return text;
}

Answer sources(const Arguments& /*arguments*/) {
  return listingOf(settings::streamSources(), false);
}

std::string whyUnlike(const Json& cache) {
  return concat("note: stream cache ", cache["id"].dump(),
                ": \"Default\", which the loader reads, is at source ", cache["default"].dump(),
                ", but \"Enable\", which 'select' writes, at source ", cache["enable"].dump());
}

Answer caches(const Arguments& /*arguments*/) {
  Answer answer =
      readableAnswer(media::asFarAsReadable([] { return media::jsonOf(media::readCaches()); },
                                            &settings::streamCaches()),
                     {Table{"",
                            {{kId, "{id}"},
                             {"NAME", "{name}"},
                             {"SIZE", "{size}"},
                             {"ALLOWED", "{allowed}"},
                             {"CARRIES", "{carries}"},
                             {"DEFAULT", "{default}"},
                             {"ENABLE", "{enable}"}}}});
  for (const Json& cache : answer.value)
    if (!cache["default"].is_null() && !cache["enable"].is_null() &&
        cache["default"] != cache["enable"])
      answer.notes.push_back(whyUnlike(cache));
  return answer;
}

// What is said of a change that was made, or is only shown.
std::vector<cli::Block> changeLine(const Arguments& arguments, const std::string& line) {
  return {Line{arguments.given(kDryRun) ? line + " (not saved)" : line}};
}

Answer mark(const Arguments& arguments,
            Outcome (*mark)(const std::string&, const std::string&, bool)) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_MPP}));
  return Answer(mark(arguments.text(kId), arguments.text(kSource), arguments.given(kDryRun)),
                changeLine(arguments, "stream cache {cache}, {mark}: {before} -> {value}"));
}

Answer select(const Arguments& arguments) {
  return mark(arguments, media::selectSource);
}

Answer makeDefault(const Arguments& arguments) {
  return mark(arguments, media::makeDefaultSource);
}

Answer allow(const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_MPP}));
  return Answer(
      media::allowSources(arguments.text(kId), arguments.texts(kSource), arguments.given(kDryRun)),
      changeLine(arguments, "stream cache {cache} allows {allowed}; before: {before}"));
}

const Option kAllowedSource{Option::Argument, kSource, "Id of a source that the cache allows",
                            allowedSourceWords};

cli::Command commandFor(const settings::Table& table) {
  // Kept for as long as the program runs, as other commands' names are.
  static std::list<std::string> texts;
  const char* name = texts.emplace_back("live " + std::string(table.word)).c_str();
  const char* help = texts.emplace_back(concat("List the ", table.entry, "s")).c_str();
  cli::Command command{name, help, {}, [&table](const Arguments& arguments) {
                         return listingOf(
                             table, settings::hasSecrets(table) && arguments.given(kShowSecrets));
                       }};
  if (settings::hasSecrets(table))
    command.options = {{Option::Flag, kShowSecrets, "Show passwords as they are stored"}};
  command.details = [&table] { return helpOf(table); };
  return command;
}

// The rules about what is connected. The picture shows what they complain of.
constexpr const char* kGraphRules[] = {"allowed-source-missing", "channel-missing",
                                       "enable-differs", "enabled-source-disabled",
                                       "enabled-source-missing"};

std::vector<lint::Finding> findings(const device::Document& document) {
  std::vector<lint::Source> sources(1);
  lint::Source& source = sources.front();
  source.name = CFG_FILE_MPP;
  source.kind = lint::FileKind::Media;
  source.document = document.get();
  std::vector<lint::Finding> found;
  for (lint::Finding& finding : lint::lint(sources))
    if (isAmong(kGraphRules, std::string(finding.rule->id))) found.push_back(std::move(finding));
  return found;
}

bool isSvg(const Arguments& arguments) {
  const std::string format = arguments.text(kFormat);
  if (format == "svg") return true;
  if (format.empty() || format == "dot") return false;
  throw Refusal(Status::Usage, concat("unknown format '", format, "'; there are dot and svg"));
}

// What can be read of the wiring, and the same in DOT.
device::Readable readableWiring() {
  const auto read = [] {
    const media::Wiring wiring = media::readWiring();
    return Json{{"wiring", media::jsonOf(wiring)}, {"picture", media::pictureOf(wiring)}};
  };
  device::Readable readable = media::asFarAsReadable(read);
  const Json& wiring = readable.value["wiring"];
  if (!readable.unread.empty() &&
      std::all_of(wiring.begin(), wiring.end(), [](const Json& list) { return list.empty(); }))
    readable.value = nullptr;
  return readable;
}

Answer graph(const Arguments& arguments) {
  const bool asSvg = isSvg(arguments);
  const Answer read = readableAnswer(readableWiring(), {});
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  Answer answer(read.value["wiring"], {});
  answer.notes = read.notes;
  answer.status = read.status;
  std::vector<media::Remark> remarks;
  answer.value["findings"] = Json::array();
  for (const lint::Finding& finding : findings(document)) {
    const std::string text = concat(finding.text, " [", finding.rule->id, "]");
    remarks.push_back({finding.line, text});
    answer.value["findings"].push_back(text);
    answer.notes.push_back("note: " + text);
  }
  answer.layout = {Verbatim{
      asSvg ? media::drawingOf(answer.value, media::remarksByNode(*document, remarks), true)
            : read.value["picture"].text()}};
  return answer;
}

}  // namespace

CommandGroup streamGroup() {
  CommandGroup group{
      "Streams",
      {withDetails(command("stream", "Show stream sources and caches, and change them", nullptr),
                   [] {
                     return helpOfAll({&settings::streamSources(), &settings::streamCaches()});
                   }),
       withDetails(command("stream sources", "List the stream sources", sources),
                   [] { return helpOf(settings::streamSources()); }),
       withDetails(
           command("stream caches", "List the stream caches and the sources they carry", caches),
           [] { return helpOf(settings::streamCaches()); }),
       command("stream cache", "Change the stream caches", nullptr,
               {{Option::Argument, kId, "Id of the cache", cacheIdWords}}),
       changer("stream cache select", "Mark a source with \"Enable\", in place", select,
               {kAllowedSource, dryRun()}),
       changer("stream cache default",
               "Mark the source that is loaded, \"Default\"; rewrites all caches", makeDefault,
               {kAllowedSource, dryRun()}),
       changer("stream cache allow", "Replace the sources that the cache allows", allow,
               {{Option::Arguments, kSource, "Ids from 0 to 29"}, dryRun()}),
       command("stream source", "Change the stream sources", nullptr)}};
  for (const auto& [table, above] : {std::pair{&settings::streamSources(), "stream source"},
                                     std::pair{&settings::streamCaches(), "stream cache"}})
    for (cli::Command& command : commandsForEntries(*table, above)) {
      command.standsAlone = true;
      group.commands.push_back(std::move(command));
    }
  return group;
}

CommandGroup liveGroup() {
  CommandGroup group{
      "Live media",
      {withDetails(
          command("live", "Show what the live media services send, and change it", nullptr),
          [] { return helpOfAll(settings::liveTables()); })}};
  for (const settings::Table* table : settings::liveTables()) {
    cli::Command listing = commandFor(*table);
    std::vector<cli::Command> changers = commandsForEntries(*table, listing.name);
    group.commands.push_back(std::move(listing));
    for (cli::Command& command : changers) group.commands.push_back(std::move(command));
  }
  return group;
}

CommandGroup graphGroup() {
  return {"Live media",
          {command("graph", "Draw which sources, caches and services feed which", graph,
                   {{Option::Value, kFormat, "dot, the default, or svg, a picture for any browser",
                     oneOf({"dot", "svg"})}})}};
}

}  // namespace camcfg::tool::commands
