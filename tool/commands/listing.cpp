#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "commands/groups.h"
#include "document/keyed.h"
#include "document/members.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

using settings::Kind;
using settings::Setting;

// Words, limits and unit, or what kind of value it is.
std::string valueOf(const Setting& setting) {
  const std::string permitted = setting.kind == Kind::Switch ? "" : settings::permittedFor(setting);
  const std::string unit = setting.unit == nullptr ? "" : std::string(" ") + setting.unit;
  if (!permitted.empty()) return permitted + unit;
  switch (setting.kind) {
    case Kind::Integer:
    case Kind::Id:
      return "number" + unit;
    case Kind::Switch:
    case Kind::Flag:
      return "true, false";
    case Kind::Ids:
    case Kind::List:
      return document::typedForm(setting);
    default:
      return "text";
  }
}

// "required", or the value; nothing if that is nothing.
Json ifLeftOut(const Setting& setting, const Json& assumed) {
  if (!assumed.contains(setting.member)) return "required";
  const Json& value = assumed.at(setting.member);
  const bool followsFromOthers = setting.assumed != nullptr && !value.is_boolean();
  return followsFromOthers || value.is_array() || document::textOf(value).empty() ? Json() : value;
}

// @param assumed  what an entry has that is left out; null: that is not said
void addRows(const settings::Settings& settings, const std::string& before,
             const char* (*name)(const Setting&), const Json* assumed, Json& rows) {
  for (const Setting& setting : settings) {
    rows.push_back({{"name", before + name(setting)},
                    {"value", valueOf(setting)},
                    {"assumed", assumed == nullptr ? Json() : ifLeftOut(setting, *assumed)},
                    {"help", std::string(setting.help)}});
    if (setting.kind == Kind::List)
      addRows(setting.inner->settings, before + "  ", name,
              assumed == nullptr ? nullptr : &assumed->at(setting.member).at(0), rows);
  }
}

}  // namespace

settings::Settings byRank(settings::Settings settings) {
  std::stable_sort(settings.begin(), settings.end(),
                   [](const auto& a, const auto& b) { return a.column.rank < b.column.rank; });
  return settings;
}

Table columnsOf(const settings::Settings& settings) {
  Table table;
  for (const settings::Setting& setting : byRank(settings))
    if (setting.column.heading != nullptr)
      table.columns.push_back({setting.column.heading, setting.column.cell});
  return table;
}

Answer readableAnswer(device::Readable readable, std::vector<cli::Block> layout) {
  if (readable.value.empty() && !readable.unread.empty())
    throw Refusal(Status::Unusable, readable.unread.front().fault);
  Answer answer(std::move(readable.value), std::move(layout));
  for (const device::Unread& unread : readable.unread)
    answer.notes.push_back("left out: " + unread.fault);
  if (!readable.unread.empty()) answer.status = Status::Degraded;
  return answer;
}

Answer changed(Outcome outcome, const char* unchanged) {
  Answer answer(std::move(outcome));
  if (answer.status != Status::Done) return answer;
  if (answer.value["changes"].empty()) {
    answer.layout = {Line{unchanged}};
    return answer;
  }
  answer.layout = {
      Table{"changes", {{"PLACE", "{place}"}, {"BEFORE", "{before-}"}, {"AFTER", "{after+}"}}}};
  if (answer.value["dryRun"].get<bool>()) answer.layout.emplace_back(Line{"nothing was written"});
  return answer;
}

std::size_t choiceOf(const Arguments& arguments, const char* option,
                     const std::vector<std::string>& words, std::size_t otherwise) {
  if (!arguments.given(option)) return otherwise;
  const std::string word = arguments.text(option);
  const auto found = std::find(words.begin(), words.end(), word);
  if (found == words.end())
    throw Refusal(Status::Usage, concat(option, ": ", quoted(word), " is none of ", joined(words),
                                        didYouMean(word, words)));
  return static_cast<std::size_t>(found - words.begin());
}

document::Mode modeOf(const Arguments& arguments) {
  constexpr auto kOtherwise = static_cast<std::size_t>(document::Mode::Replace);
  return static_cast<document::Mode>(choiceOf(arguments, kMode, document::kModes, kOtherwise));
}

document::ImportOptions importOptions(const Arguments& arguments) {
  return {arguments.given(kDryRun), arguments.given(kShowSecrets), arguments.given(kForce)};
}

std::string membersHelp(const settings::Settings& settings,
                        const char* (*name)(const Setting& setting), const Json* assumed) {
  Answer answer(Json::array(), {cli::Lines{}});
  addRows(settings, "  ", name, assumed, answer.value);
  std::vector<cli::Column> columns = {{"  NAME", "{name}"}, {"VALUE", "{value}"}};
  if (assumed != nullptr) columns.push_back({"IF LEFT OUT", "{assumed}"});
  columns.push_back({"MEANING", "{help}"});
  answer.layout = {Table{"", columns}};
  return renderText(answer);
}

Candidates memberWords(const settings::Settings& settings) {
  Candidates candidates;
  for (const Setting& setting : settings) {
    std::vector<std::string> values;
    for (const settings::Word& word : setting.words) values.emplace_back(word.text);
    if (setting.kind == Kind::Switch || setting.kind == Kind::Flag) values = {"yes", "no"};
    if (values.empty()) values.emplace_back();
    for (const std::string& value : values)
      candidates.push_back({concat(setting.member, "=", value), setting.help});
  }
  return candidates;
}

}  // namespace camcfg::tool::commands
