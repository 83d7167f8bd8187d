#include "commands/listing.h"

#include <algorithm>

#include "media/media.h"

namespace camcfg::tool::commands {

cli::Answer listingOf(const settings::Table& table, bool showSecrets) {
  std::vector<settings::Column> columns;
  for (const settings::Setting& setting : table.settings)
    if (setting.column.heading != nullptr) columns.push_back(setting.column);
  std::stable_sort(columns.begin(), columns.end(),
                   [](const auto& a, const auto& b) { return a.rank < b.rank; });
  cli::Table layout;
  for (const settings::Column& column : columns)
    layout.columns.push_back({column.heading, column.cell});
  cli::Answer answer;
  answer.value = media::shownEntries(table, showSecrets);
  answer.layout = {layout};
  return answer;
}

}  // namespace camcfg::tool::commands
