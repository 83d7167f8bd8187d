#include "commands/groups.h"
#include "commands/listing.h"
#include "commands/words.h"
#include "media/stream_cache.h"
#include "media/stream_change.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kDryRun[] = "--dry-run";

cli::Answer sources(const cli::Arguments& /*arguments*/) {
  return listingOf(settings::streamSources(), false);
}

cli::Answer caches(const cli::Arguments& /*arguments*/) {
  const std::vector<media::CacheEntry> entries = media::readCaches();
  cli::Answer answer;
  answer.value = media::jsonOf(entries);
  answer.layout = {cli::Table{"",
                              {{"ID", "{id}"},
                               {"NAME", "{name}"},
                               {"SIZE", "{size}"},
                               {"ALLOWED", "{allowed}"},
                               {"CARRIES", "{carries}"},
                               {"DEFAULT", "{default}"},
                               {"ENABLE", "{enable}"}}}};
  for (const media::CacheEntry& cache : entries)
    if (cache.marksDiffer())
      answer.notes.push_back("note: stream cache " + std::to_string(cache.id()) +
                             ": \"Default\", which the loader " + "reads, is at source " +
                             std::to_string(*cache.marked(&media::AllowedSource::isDefault)) +
                             ", but \"Enable\", which 'select' writes, at source " +
                             std::to_string(*cache.marked(&media::AllowedSource::isEnabled)));
  return answer;
}

cli::Answer select(const cli::Arguments& arguments) {
  return media::selectSource(arguments.text("ID"), arguments.text("SOURCE"));
}

cli::Answer makeDefault(const cli::Arguments& arguments) {
  return media::makeDefaultSource(arguments.text("ID"), arguments.text("SOURCE"),
                                  arguments.given(kDryRun));
}

cli::Answer allow(const cli::Arguments& arguments) {
  return media::allowSources(arguments.text("ID"), arguments.texts("SOURCE"));
}

const cli::Option kSource{cli::Option::Argument, "SOURCE", "Id of a source that the cache allows",
                          allowedSourceWords};

}  // namespace

cli::CommandGroup streamGroup() {
  return {"Streams",
          {{"stream", "Show stream sources and caches, and change caches", {}, nullptr},
           {"stream sources", "List the stream sources", {}, sources},
           {"stream caches", "List the stream caches and the sources they carry", {}, caches},
           {"stream cache",
            "Change the sources of a stream cache",
            {{cli::Option::Argument, "ID", "Id of the cache", cacheIdWords}},
            nullptr},
           {"stream cache select", "Mark a source with \"Enable\", in place", {kSource}, select},
           {"stream cache default",
            "Mark the source that is loaded, \"Default\"; saves all caches anew",
            {kSource, {cli::Option::Flag, kDryRun, "Tell what would change and change nothing"}},
            makeDefault},
           {"stream cache allow",
            "Replace the sources that the cache allows",
            {{cli::Option::Arguments, "SOURCE", "Ids from 0 to 29"}},
            allow}}};
}

}  // namespace camcfg::tool::commands
