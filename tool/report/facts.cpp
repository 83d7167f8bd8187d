#include "report/facts.h"

#include <camcfg/types.h>
#include <sha256.h>

#include <array>
#include <ctime>
#include <functional>

#include "base/caller.h"
#include "base/concat.h"
#include "base/host.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/salvage.h"
#include "device/salvage_copy.h"
#include "device/scratch.h"
#include "document/document.h"
#include "document/exchange.h"
#include "document/health.h"
#include "document/past.h"
#include "media/readable.h"
#include "media/wiring.h"
#include "parameters/system.h"
#include "report/sources.h"

namespace camcfg::tool::report {
namespace {

Json orFault(const std::function<Json()>& read) try {
  return read();
} catch (const Refusal& refusal) {
  return {{kFault, refusal.what()}};
}

Json checksumOf(const std::string& path) {
  const std::optional<std::string> bytes = readFile(path);
  if (!bytes) return nullptr;
  std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
  SHA256Data(reinterpret_cast<const std::uint8_t*>(bytes->data()), bytes->size(), digits.data());
  return digits.data();
}

Json health(bool isDevice) {
  Json health = document::deviceHealth().value;
  Json copies = Json::array();
  for (Json& copy : health["copies"]) {
    if (!isDevice && copy.at("copy") != device::wordFor(device::Place::Main)) continue;
    copy["checksum"] = checksumOf(copy["path"].text());
    if (!isDevice) copy["changed"] = copy["atStart"] = nullptr;  // it was laid out just now
    copies.push_back(std::move(copy));
  }
  health["copies"] = std::move(copies);
  return health;
}

Json wiring(const Json& findings) {
  std::vector<media::Remark> remarks;
  for (const Json& finding : findings)
    if (finding.at("file") == CFG_FILE_MPP && !finding.at("line").is_null())
      remarks.push_back({finding.at("line").get<int>(), finding.at("text").text()});
  Json wiring;
  device::Readable readable =
      media::asFarAsReadable([] { return media::jsonOf(media::readWiring()); });
  wiring = std::move(readable.value);
  if (wiring.is_null()) throw Refusal(Status::Unusable, readable.unread.front().fault);
  wiring["unread"] = Json::array();
  for (const device::Unread& unread : readable.unread) wiring["unread"].push_back(unread.fault);
  wiring["remarks"] = media::remarksByNode(*device::requireDocument(CFG_FILE_MPP), remarks);
  return wiring;
}

// What the files of a device hold.
Json contents(const document::CopiedSections& factory, const Json& findings) {
  return {{"system", orFault(parameters::systemJson)},
          {"wiring", orFault([&] { return wiring(findings); })},
          {"sections", sectionsOf(factory)}};
}

// A file whose main copy does not load, as far as its other copies or what is left of it have it.
std::optional<std::string> replacementOf(const device::ConfigFile& file, Json& notes) {
  const std::string main = file.path(device::Place::Main);
  const std::string backup = file.path(device::Place::Backup);
  if (file.backup.state == device::State::Good) {
    notes.push_back(
        concat(main, " cannot be read: its settings below are those of its backup, ", backup));
    return readFile(backup);
  }
  const std::optional<std::string> factory = readFile(file.path(device::Place::Default));
  if (!factory) return std::nullopt;
  std::optional<device::SalvagedFile> salvaged =
      device::salvaged(readFile(main), readFile(backup), *factory);
  if (!salvaged || salvaged->from(device::kFromFactory) == salvaged->settings.size())
    return std::nullopt;
  notes.push_back(main +
                  " cannot be read as a whole: below is what 'camcfg salvage' brings back of "
                  "it; the rest has factory values");
  return std::move(salvaged->bytes);
}

// Of a device with damaged main copies, what its other copies hold in their place is shown.
Json contentsOf(const Json& findings, Json& notes) {
  const document::CopiedSections factory = factorySet();
  std::vector<device::Contents> files;
  for (const char* path : {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET}) {
    const device::ConfigFile file = device::surveyFile(device::nameOf(path));
    const std::optional<std::string> bytes =
        file.main.loads() ? readFile(path) : replacementOf(file, notes);
    if (bytes) files.push_back({path, *bytes});
  }
  if (!notes.empty()) try {
      return device::onScratchDevice(files, [&] { return contents(factory, Json::array()); });
    } catch (const Refusal&) {
      notes = Json::array();
    }
  return contents(factory, findings);
}

Json history() {
  Json changes = Json::array();
  const Outcome kept = document::listChanges();
  const Json& list = kept.value.at("changes");
  for (std::size_t i = list.size(); i-- > 0;) {
    Json change = list[i];
    change["changes"] = orFault([&] {
      return document::showChange(change.at("number").get<int>(), false).value.at("changes");
    });
    changes.push_back(std::move(change));
  }
  return changes;
}

}  // namespace

Json factsOf(bool isDevice) {
  Json facts = {{"made",
                 {{"by", std::string("camcfg ") + CAMCFG_VERSION},
                  {"at", utcText(std::time(nullptr))},
                  {"command", caller().command},
                  {"anonymous", false}}}};
  facts["health"] = health(isDevice);
  facts["findings"] = findingsOf(facts["health"], isDevice);
  facts["notes"] = Json::array();
  const Json contents = contentsOf(facts["findings"], facts["notes"]);
  for (const auto& [name, value] : contents.items()) facts[name] = value;
  facts["changed"] =
      orFault([] { return document::compareWithCopies(device::Place::Default, false).value; });
  facts["history"] = orFault(history);
  const auto sectionCalled = [&](const char* name) -> Json {
    for (const Json& section : facts["sections"])
      if (section.at("name") == name) return section;
    return {{kFault, std::string(name) + " is missing"}};
  };
  facts["network"] = sectionCalled(document::kNetwork);
  facts["presets"] = sectionCalled(document::kPresets);
  facts["services"] = servicesOf(facts);
  return facts;
}

}  // namespace camcfg::tool::report
