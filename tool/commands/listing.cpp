#include "commands/listing.h"

#include <algorithm>

#include "media/media.h"

namespace camcfg::tool::commands {

settings::Settings byRank(settings::Settings settings) {
  std::stable_sort(settings.begin(), settings.end(),
                   [](const auto& a, const auto& b) { return a.column.rank < b.column.rank; });
  return settings;
}

cli::Table columnsOf(const settings::Settings& settings) {
  cli::Table table;
  for (const settings::Setting& setting : byRank(settings))
    if (setting.column.heading != nullptr)
      table.columns.push_back({setting.column.heading, setting.column.cell});
  return table;
}

cli::Answer listingOf(const settings::Table& table, bool showSecrets) {
  cli::Answer answer;
  answer.value = media::shownEntries(table, showSecrets);
  answer.layout = {columnsOf(table.settings)};
  return answer;
}

}  // namespace camcfg::tool::commands
