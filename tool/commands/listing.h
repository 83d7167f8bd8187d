#ifndef CAMCFG_TOOL_COMMANDS_LISTING_H
#define CAMCFG_TOOL_COMMANDS_LISTING_H

#include "cli/answer.h"
#include "settings/setting.h"

namespace camcfg::tool::commands {

/// Settings by the ranks of their columns.
settings::Settings byRank(settings::Settings settings);

/// A table of the settings that are listed.
cli::Table columnsOf(const settings::Settings& settings);

/// The entries of a media section, a line each, in the columns that its table names.
cli::Answer listingOf(const settings::Table& table, bool showSecrets);

}  // namespace camcfg::tool::commands

#endif
