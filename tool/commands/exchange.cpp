#include "document/exchange.h"

#include "commands/groups.h"
#include "commands/options.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kNoSecrets[] = "--no-secrets";

std::vector<cli::Candidate> exportable(const cli::Arguments& /*before*/) {
  std::vector<cli::Candidate> candidates;
  for (const std::string& name : document::exportNames()) candidates.push_back({name});
  return candidates;
}

cli::Answer exportDocument(const cli::Arguments& arguments) {
  return document::exportSettings(arguments.texts(kSection), !arguments.given(kNoSecrets));
}

cli::Answer importDocument(const cli::Arguments& arguments) {
  return document::importSettings(arguments.text(kFile),
                                  {arguments.given(kDryRun), arguments.given(kShowSecrets)});
}

}  // namespace

cli::CommandGroup exchangeGroup() {
  return {"Export and import",
          {{"export",
            "Print settings as one JSON document",
            {{cli::Option::OptionalArguments, kSection, "Only these, such as stream or live.srt",
              exportable},
             {cli::Option::Flag, kNoSecrets, "Leave passwords out"}},
            exportDocument},
           {"import",
            "Bring the device to what such a document holds",
            {{cli::Option::HostFile, kFile, "The document; '-' is standard input"},
             {cli::Option::Flag, kDryRun, "Show what would change and write nothing"},
             {cli::Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            importDocument}}};
}

}  // namespace camcfg::tool::commands
