#include "report/facts.h"

#include <camcfg/types.h>
#include <sha256.h>

#include <array>
#include <ctime>
#include <functional>

#include "base/caller.h"
#include "base/host.h"
#include "base/outcome.h"
#include "base/plain_text.h"
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

Json health() {
  Json health = document::deviceHealth().value;
  for (Json& copy : health["copies"]) copy["checksum"] = checksumOf(copy["path"].text());
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

Json factsOf() {
  Json facts = {{"made",
                 {{"by", std::string("camcfg ") + CAMCFG_VERSION},
                  {"at", utcText(std::time(nullptr))},
                  {"command", caller().command},
                  {"anonymous", false}}}};
  facts["health"] = health();
  facts["system"] = orFault(parameters::systemJson);
  facts["findings"] = findingsOf(facts["health"]);
  facts["wiring"] = orFault([&] { return wiring(facts["findings"]); });
  facts["changed"] =
      orFault([] { return document::compareWithCopies(device::Place::Default, false).value; });
  facts["history"] = orFault(history);
  facts["sections"] = sectionsOf();
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
