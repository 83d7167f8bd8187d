#include "commands/groups.h"
#include "commands/listing.h"
#include "commands/options.h"
#include "commands/words.h"
#include "media/stream_cache.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kMarked[] = "stream cache {cache}, {mark}: {before} -> {value}";

cli::Answer sources(const cli::Arguments& /*arguments*/) {
  return listingOf(settings::streamSources(), false);
}

cli::Answer caches(const cli::Arguments& /*arguments*/) {
  const std::vector<media::CacheEntry> entries = media::readCaches();
  cli::Answer answer;
  answer.value = media::jsonOf(entries);
  answer.layout = {cli::Table{"",
                              {{kId, "{id}"},
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
  return cli::Answer(media::selectSource(arguments.text(kId), arguments.text(kSource)),
                     {cli::Line{kMarked}});
}

cli::Answer makeDefault(const cli::Arguments& arguments) {
  const bool rehearse = arguments.given(kDryRun);
  return cli::Answer(
      media::makeDefaultSource(arguments.text(kId), arguments.text(kSource), rehearse),
      {cli::Line{rehearse ? kMarked + std::string(" (not saved)") : kMarked}});
}

cli::Answer allow(const cli::Arguments& arguments) {
  return cli::Answer(media::allowSources(arguments.text(kId), arguments.texts(kSource)),
                     {cli::Line{"stream cache {cache} allows {allowed}; before: {before}"}});
}

const cli::Option kAllowedSource{cli::Option::Argument, kSource,
                                 "Id of a source that the cache allows", allowedSourceWords};

}  // namespace

cli::CommandGroup streamGroup() {
  return {
      "Streams",
      {{"stream", "Show stream sources and caches, and change caches", {}, nullptr},
       {"stream sources", "List the stream sources", {}, sources},
       {"stream caches", "List the stream caches and the sources they carry", {}, caches},
       {"stream cache",
        "Change the sources of a stream cache",
        {{cli::Option::Argument, kId, "Id of the cache", cacheIdWords}},
        nullptr},
       {"stream cache select", "Mark a source with \"Enable\", in place", {kAllowedSource}, select},
       {"stream cache default",
        "Mark the source that is loaded, \"Default\"; rewrites all caches",
        {kAllowedSource, {cli::Option::Flag, kDryRun, "Show what would change and change nothing"}},
        makeDefault},
       {"stream cache allow",
        "Replace the sources that the cache allows",
        {{cli::Option::Arguments, kSource, "Ids from 0 to 29"}},
        allow}}};
}

}  // namespace camcfg::tool::commands
