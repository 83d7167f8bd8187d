#include "commands/words.h"

#include <algorithm>

#include "base/decimal.h"
#include "device/language.h"
#include "media/stream_cache.h"
#include "network/network.h"
#include "parameters/parameter.h"
#include "presets/preset.h"
#include "settings/network.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

Candidates plain(const std::vector<std::string>& words) {
  Candidates candidates;
  for (const std::string& word : words) candidates.push_back({word});
  return candidates;
}

cli::Candidate named(std::int32_t id, const std::string& name) {
  return {std::to_string(id), name};
}

Candidates websocketIds(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& session : media::loadWebsocketSessions())
    candidates.push_back(named(session.s32Id, session.strName));
  return candidates;
}

Candidates rtspNames(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const media::RtspSession& session : media::loadRtspSessions())
    candidates.push_back({session->strName});
  return candidates;
}

// Without its address, which may hold a password.
Candidates rtmpIds(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& target : media::loadRtmpTargets())
    candidates.push_back({std::to_string(target.s32Id)});
  return candidates;
}

Candidates ndiIds(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& instance : media::loadNdiInstances())
    candidates.push_back(named(instance.s32Id, instance.strMainStreamName));
  return candidates;
}

Candidates srtIds(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& instance : media::loadSrtInstances())
    candidates.push_back(named(instance.s32Id, instance.strHostname));
  return candidates;
}

struct MediaKind {
  const char* name;
  Candidates (*ids)(const cli::Arguments& before);
};
constexpr MediaKind kMediaKinds[] = {{"source", sourceIdWords},
                                     {"cache", cacheIdWords},
                                     {"websocket", websocketIds},
                                     {"rtsp", rtspNames},
                                     {"rtmp", rtmpIds},
                                     {"ndi", ndiIds},
                                     {"srt", srtIds}};

}  // namespace

Candidates sectionWords(const cli::Arguments& /*before*/) {
  return plain(parameters::Parameters().sections());
}

Candidates parameterWords(const cli::Arguments& before) {
  const parameters::Parameters parameters;
  Candidates candidates;
  for (const parameters::Parameter& parameter :
       before.given("SECTION") ? parameters.in(before.text("SECTION")) : parameters.all()) {
    const char* current = parameter.text("Cur");
    candidates.push_back({parameter.name, current == nullptr ? "" : current});
  }
  return candidates;
}

Candidates valueWords(const cli::Arguments& before) {
  if (before.given("FIELD"))
    return plain(settings::wordsOf(settings::requireCardSetting(before.text("FIELD"))));
  if (!before.given("SECTION") || !before.given("NAME")) return {};
  const parameters::Parameters parameters;
  return plain(parameters.require(before.text("SECTION"), before.text("NAME")).form().options());
}

Candidates cardWords(const cli::Arguments& /*before*/) {
  const network::Network network;
  Candidates candidates;
  for (tinyxml2::XMLElement* card : network.cards()) {
    const Json address = network::attributeOf(network::childOf(*card, "IpAddr"), "Cur");
    candidates.push_back({card->Value(), address.is_null() ? "" : address.get<std::string>()});
  }
  return candidates;
}

Candidates cardFieldWords(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const settings::Setting& setting : settings::cardSettings())
    candidates.push_back({settings::elementOf(setting), setting.help});
  return candidates;
}

Candidates presetWords(const cli::Arguments& before) {
  Candidates candidates = presetIdWords(before);
  const Candidates ids = candidates;
  for (const cli::Candidate& preset : ids) candidates.push_back({preset.help});
  return candidates;
}

Candidates presetIdWords(const cli::Arguments& /*before*/) {
  const presets::Presets presets;
  Candidates candidates;
  for (const presets::Preset& preset : presets.all())
    if (preset.id())
      candidates.push_back({std::to_string(*preset.id()), preset.description().value_or("")});
  return candidates;
}

Candidates sourceIdWords(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const media::StreamSource& source : media::loadStreamSources())
    candidates.push_back(named(source->s32Id, source->strName));
  return candidates;
}

Candidates cacheIdWords(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const media::CacheEntry& cache : media::readCaches())
    candidates.push_back(named(cache.id(), cache.record->strName));
  return candidates;
}

Candidates allowedSourceWords(const cli::Arguments& before) {
  Candidates candidates = sourceIdWords(before);
  const auto id = decimal(before.text("ID"));
  for (const media::CacheEntry& cache : media::readCaches()) {
    if (cache.id() != id) continue;
    const auto isForbidden = [&](const cli::Candidate& source) {
      return !cache.allows(static_cast<int>(*decimal(source.word)));
    };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isForbidden),
                     candidates.end());
  }
  return candidates;
}

Candidates mediaKindWords(const cli::Arguments& /*before*/) {
  Candidates candidates;
  for (const MediaKind& kind : kMediaKinds) candidates.push_back({kind.name});
  return candidates;
}

Candidates mediaIdWords(const cli::Arguments& before) {
  for (const MediaKind& kind : kMediaKinds)
    if (before.text("KIND") == kind.name) return kind.ids(before);
  return {};
}

Candidates languageWords(const cli::Arguments& /*before*/) {
  return plain(device::languages());
}

Candidates textKeyWords(const cli::Arguments& before) {
  return plain(device::keysOf(*device::requireTexts(before.text("LANGUAGE"))));
}

}  // namespace camcfg::tool::commands
