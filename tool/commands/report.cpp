#include <algorithm>

#include "base/concat.h"
#include "commands/groups.h"
#include "device/files.h"
#include "device/scratch.h"
#include "document/document.h"
#include "report/anonymous.h"
#include "report/comparison.h"
#include "report/facts.h"
#include "report/fleet.h"
#include "report/page.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kAnonymize[] = "--anonymize";
constexpr char kKeyIn[] = "--key";
constexpr char kFiles[] = "--files";
constexpr char kCompare[] = "--compare";
constexpr char kFleet[] = "--fleet";
constexpr char kReportEnding[] = ".html";

// Of the device, or of files that are laid out as the main copies of one.
Json factsFor(const Arguments& arguments) {
  if (!arguments.given(kFiles)) return report::factsOf(true);
  std::vector<device::Contents> files;
  Json notes = Json::array(
      {"These are files without a device: copies, factory values and languages are not judged"});
  for (const HostFile& file : arguments.files(kFiles))
    if (file.fault.empty())
      files.push_back({device::pathOf(device::Place::Main, file.path), file.contents});
    else
      notes.push_back(concat(file.path, " cannot be read: ", file.fault));
  if (files.empty())
    throw Refusal(Status::Unusable, arguments.text(kFiles) + ": it has no file of a device");
  Json facts = device::onScratchDevice(files, [] { return report::factsOf(false); });
  for (const Json& note : facts["notes"]) notes.push_back(note);
  facts["notes"] = std::move(notes);
  return facts;
}

void saveKey(const Arguments& arguments, const Json& key, Answer& answer) {
  if (HostDirectory* directory = arguments.directory(kKeyIn))
    answer.notes.push_back("the key to what is hidden is in " +
                           directory->save("camcfg-key.json", document::printJson(key)));
}

// What a page is made from, with placeholders if they were asked for.
Json asGiven(const Arguments& arguments, const Json& facts, const std::vector<std::string>& names,
             Answer& answer) {
  if (!arguments.given(kAnonymize)) return facts;
  Json key;
  Json hidden = report::anonymous(facts, names, key);
  saveKey(arguments, key, answer);
  return hidden;
}

Answer compare(const Arguments& arguments) {
  const std::string& other = arguments.text(kCompare);
  const Json comparison = report::comparisonWith(other, arguments.files(kCompare));
  std::vector<std::string> names = {other, comparison.at("other").text()};
  if (comparison.at("device") != report::kThisDevice)
    names.push_back(comparison.at("device").text());
  Answer answer;
  answer.value = asGiven(arguments, comparison, names, answer);
  answer.layout = {Verbatim{report::comparisonPage(answer.value)}};
  return answer;
}

// Of the reports next to the documents only the names matter.
Answer reportFleet(const Arguments& arguments) {
  std::vector<HostFile> files = arguments.files(kFleet);
  const auto reports = std::partition(files.begin(), files.end(), [](const HostFile& file) {
    return file.path.rfind(kReportEnding) == std::string::npos;
  });
  std::vector<std::string> names;
  for (auto report = reports; report != files.end(); ++report) names.push_back(report->path);
  std::sort(names.begin(), names.end());
  files.erase(reports, files.end());
  const Json fleet = report::fleetOf(files);
  std::vector<std::string> devices;
  for (const char* list : {"devices", "unread"})
    for (const Json& device : fleet.at(list)) devices.push_back(device.at("name").text());
  // The names of reports are those of devices.
  if (arguments.given(kAnonymize)) names.clear();
  Answer answer;
  answer.value = asGiven(arguments, fleet, devices, answer);
  answer.layout = {Verbatim{report::fleetPage(answer.value, names)}};
  return answer;
}

void requireOne(const Arguments& arguments) {
  std::vector<std::string> given;
  for (const char* option : {kFiles, kCompare, kFleet})
    if (arguments.given(option)) given.emplace_back(option);
  if (given.size() > 1)
    throw Refusal(Status::Usage, concat(given[0], " cannot be combined with ", given[1]));
  if (arguments.directory(kKeyIn) != nullptr && !arguments.given(kAnonymize))
    throw Refusal(Status::Usage, "--key is for '--anonymize', which is missing");
}

Answer report(const Arguments& arguments) {
  requireOne(arguments);
  if (arguments.given(kCompare)) return compare(arguments);
  if (arguments.given(kFleet)) return reportFleet(arguments);
  Json facts = factsFor(arguments);
  Answer answer;
  if (arguments.given(kAnonymize)) {
    Json key;
    facts = report::anonymous(facts, key);
    saveKey(arguments, key, answer);
  }
  answer.layout = {Verbatim{report::reportOf(facts)}};
  answer.value = std::move(facts);
  return answer;
}

}  // namespace

CommandGroup reportGroup() {
  Option files{Option::HostFolder, kFiles, "Report on the files in DIR, without a device"};
  files.files = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"};
  Option compared{
      Option::HostFolder, kCompare,
      "Show what differs from another device: its exported document, or its device tree"};
  compared.files = {"cfg0/business_param.xml", "cfg0/mpp_cfg.xml", "cfg0/preset_cfg.xml"};
  compared.isFolderOrFile = true;
  compared.valueName = "OTHER";
  Option fleet{Option::HostFolder, kFleet,
               "Show many devices, by what 'export' or 'report --json' prints for each in DIR"};
  fleet.ending = ".json";
  fleet.listed = kReportEnding;
  return {"Overview",
          {command("report", "Print a page for browsers that shows all of the device", report,
                   {{Option::Flag, kAnonymize,
                     "Put placeholders for addresses, urls and names of hosts and of the device"},
                    {Option::HostDirectory, kKeyIn, "Save what the placeholders replace in DIR"},
                    files,
                    compared,
                    fleet})}};
}

}  // namespace camcfg::tool::commands
