#include "commands/groups.h"
#include "device/media_json.h"
#include "device/stream_cache.h"
#include "device/stream_change.h"
#include "device/words.h"

namespace camcfg::tool {
namespace {

constexpr char kDryRun[] = "--dry-run";

Answer sources(const Arguments& /*arguments*/) {
  Answer answer;
  answer.value = jsonOf(loadStreamSources());
  answer.layout = {Table{"",
                         {{"ID", "{id}"},
                          {"KIND", "{kind}"},
                          {"NAME", "{name}"},
                          {"CHANNEL", "{channel}"},
                          {"ENABLED", "{enabled}"}}}};
  return answer;
}

Answer caches(const Arguments& /*arguments*/) {
  const std::vector<CacheEntry> entries = readCaches();
  Answer answer;
  answer.value = jsonOf(entries);
  answer.layout = {Table{"",
                         {{"ID", "{id}"},
                          {"NAME", "{name}"},
                          {"SIZE", "{size}"},
                          {"ALLOWED", "{allowed}"},
                          {"CARRIES", "{carries}"},
                          {"DEFAULT", "{default}"},
                          {"ENABLE", "{enable}"}}}};
  for (const CacheEntry& cache : entries)
    if (cache.marksDiffer())
      answer.notes.push_back("note: stream cache " + std::to_string(cache.id()) +
                             ": \"Default\", which the loader " + "reads, is at source " +
                             std::to_string(*cache.marked(&AllowedSource::isDefault)) +
                             ", but \"Enable\", which 'select' writes, at source " +
                             std::to_string(*cache.marked(&AllowedSource::isEnabled)));
  return answer;
}

Answer select(const Arguments& arguments) {
  return selectSource(arguments.text("ID"), arguments.text("SOURCE"));
}

Answer makeDefault(const Arguments& arguments) {
  return makeDefaultSource(arguments.text("ID"), arguments.text("SOURCE"),
                           arguments.given(kDryRun));
}

Answer allow(const Arguments& arguments) {
  return allowSources(arguments.text("ID"), arguments.texts("SOURCE"));
}

const Option kSource{Option::Argument, "SOURCE", "Id of a source that the cache allows",
                     allowedSourceWords};

}  // namespace

CommandGroup streamGroup() {
  return {"Streams",
          {{"stream", "Show stream sources and caches, and change caches", {}, nullptr},
           {"stream sources", "List the stream sources", {}, sources},
           {"stream caches", "List the stream caches and the sources they carry", {}, caches},
           {"stream cache",
            "Change the sources of a stream cache",
            {{Option::Argument, "ID", "Id of the cache", cacheIdWords}},
            nullptr},
           {"stream cache select", "Mark a source with \"Enable\", in place", {kSource}, select},
           {"stream cache default",
            "Mark the source that is loaded, \"Default\"; saves all caches anew",
            {kSource, {Option::Flag, kDryRun, "Tell what would change and change nothing"}},
            makeDefault},
           {"stream cache allow",
            "Replace the sources that the cache allows",
            {{Option::Arguments, "SOURCE", "Ids from 0 to 29"}},
            allow}}};
}

}  // namespace camcfg::tool
