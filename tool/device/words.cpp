#include "device/words.h"

#include <algorithm>

#include "device/language.h"
#include "device/network.h"
#include "device/network_field.h"
#include "device/parameter.h"
#include "device/preset.h"
#include "device/stream_cache.h"
#include "frame/decimal.h"

namespace camcfg::tool {
namespace {

Candidates plain(const std::vector<std::string>& words) {
  Candidates candidates;
  for (const std::string& word : words) candidates.push_back({word});
  return candidates;
}

Candidates fieldValues(const std::string& name) {
  return plain(requireNetworkField(name).words);
}

// The texts of "OptTxt", which stand there with commas between them.
Candidates parameterValues(const Parameter& parameter) {
  Candidates candidates;
  const char* found = parameter.text("OptTxt");
  const std::string options = found == nullptr ? "" : found;
  for (std::size_t start = 0; start < options.size();) {
    const std::size_t end = std::min(options.find(',', start), options.size());
    candidates.push_back({options.substr(start, end - start)});
    start = end + 1;
  }
  return candidates;
}

Candidate named(std::int32_t id, const std::string& name) {
  return {std::to_string(id), name};
}

Candidates websocketIds(const Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& session : loadWebsocketSessions())
    candidates.push_back(named(session.s32Id, session.strName));
  return candidates;
}

Candidates rtspNames(const Arguments& /*before*/) {
  Candidates candidates;
  for (const RtspSession& session : loadRtspSessions()) candidates.push_back({session->strName});
  return candidates;
}

// Without its address, which may hold a password.
Candidates rtmpIds(const Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& target : loadRtmpTargets()) candidates.push_back({std::to_string(target.s32Id)});
  return candidates;
}

Candidates ndiIds(const Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& instance : loadNdiInstances())
    candidates.push_back(named(instance.s32Id, instance.strMainStreamName));
  return candidates;
}

Candidates srtIds(const Arguments& /*before*/) {
  Candidates candidates;
  for (const auto& instance : loadSrtInstances())
    candidates.push_back(named(instance.s32Id, instance.strHostname));
  return candidates;
}

struct MediaKind {
  const char* name;
  Candidates (*ids)(const Arguments& before);
};
constexpr MediaKind kMediaKinds[] = {{"source", sourceIdWords},
                                     {"cache", cacheIdWords},
                                     {"websocket", websocketIds},
                                     {"rtsp", rtspNames},
                                     {"rtmp", rtmpIds},
                                     {"ndi", ndiIds},
                                     {"srt", srtIds}};

}  // namespace

Candidates sectionWords(const Arguments& /*before*/) {
  return plain(Parameters().sections());
}

Candidates parameterWords(const Arguments& before) {
  const Parameters parameters;
  Candidates candidates;
  for (const Parameter& parameter :
       before.given("SECTION") ? parameters.in(before.text("SECTION")) : parameters.all()) {
    const char* current = parameter.text("Cur");
    candidates.push_back({parameter.name, current == nullptr ? "" : current});
  }
  return candidates;
}

Candidates valueWords(const Arguments& before) {
  if (before.given("FIELD")) return fieldValues(before.text("FIELD"));
  if (!before.given("SECTION") || !before.given("NAME")) return {};
  return parameterValues(Parameters().require(before.text("SECTION"), before.text("NAME")));
}

Candidates cardWords(const Arguments& /*before*/) {
  const Network network;
  Candidates candidates;
  for (tinyxml2::XMLElement* card : network.cards()) {
    const Json address = attributeOf(childOf(*card, "IpAddr"), "Cur");
    candidates.push_back({card->Value(), address.is_null() ? "" : address.get<std::string>()});
  }
  return candidates;
}

Candidates cardFieldWords(const Arguments& /*before*/) {
  Candidates candidates;
  for (const NetworkField& field : networkFields()) candidates.push_back({field.name});
  return candidates;
}

Candidates presetWords(const Arguments& before) {
  Candidates candidates = presetIdWords(before);
  const Candidates ids = candidates;
  for (const Candidate& preset : ids) candidates.push_back({preset.help});
  return candidates;
}

Candidates presetIdWords(const Arguments& /*before*/) {
  const Presets presets;
  Candidates candidates;
  for (const Preset& preset : presets.all())
    if (preset.id)
      candidates.push_back({std::to_string(*preset.id), preset.description.value_or("")});
  return candidates;
}

Candidates sourceIdWords(const Arguments& /*before*/) {
  Candidates candidates;
  for (const StreamSource& source : loadStreamSources())
    candidates.push_back(named(source->s32Id, source->strName));
  return candidates;
}

Candidates cacheIdWords(const Arguments& /*before*/) {
  Candidates candidates;
  for (const CacheEntry& cache : readCaches())
    candidates.push_back(named(cache.id(), cache.record->strName));
  return candidates;
}

Candidates allowedSourceWords(const Arguments& before) {
  Candidates candidates = sourceIdWords(before);
  const auto id = decimal(before.text("ID"));
  for (const CacheEntry& cache : readCaches()) {
    if (cache.id() != id) continue;
    const auto isForbidden = [&](const Candidate& source) {
      return !cache.allows(static_cast<int>(*decimal(source.word)));
    };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isForbidden),
                     candidates.end());
  }
  return candidates;
}

Candidates mediaKindWords(const Arguments& /*before*/) {
  Candidates candidates;
  for (const MediaKind& kind : kMediaKinds) candidates.push_back({kind.name});
  return candidates;
}

Candidates mediaIdWords(const Arguments& before) {
  for (const MediaKind& kind : kMediaKinds)
    if (before.text("KIND") == kind.name) return kind.ids(before);
  return {};
}

Candidates languageWords(const Arguments& /*before*/) {
  return plain(languages());
}

Candidates textKeyWords(const Arguments& before) {
  return plain(keysOf(*requireTexts(before.text("LANGUAGE"))));
}

}  // namespace camcfg::tool
