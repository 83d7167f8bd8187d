#include "exchange/exchange.h"

#include "commands/groups.h"

namespace camcfg::tool {
namespace {

constexpr char kNoSecrets[] = "--no-secrets";
constexpr char kShowSecrets[] = "--show-secrets";
constexpr char kDryRun[] = "--dry-run";

std::vector<Candidate> exportable(const Arguments& /*before*/) {
  std::vector<Candidate> candidates;
  for (const std::string& name : exportNames()) candidates.push_back({name});
  return candidates;
}

Answer exportDocument(const Arguments& arguments) {
  return exportSettings(arguments.texts("SECTION"), !arguments.given(kNoSecrets));
}

Answer importDocument(const Arguments& arguments) {
  return importSettings(arguments.text("FILE"),
                        {arguments.given(kDryRun), arguments.given(kShowSecrets)});
}

}  // namespace

CommandGroup exchangeGroup() {
  return {"Export and import",
          {{"export",
            "Print settings as one JSON document",
            {{Option::OptionalArguments, "SECTION", "Only these, such as stream or live.srt",
              exportable},
             {Option::Flag, kNoSecrets, "Leave passwords out"}},
            exportDocument},
           {"import",
            "Bring the device to what such a document holds",
            {{Option::HostFile, "FILE", "The document; '-' is standard input"},
             {Option::Flag, kDryRun, "Show what would change and write nothing"},
             {Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            importDocument}}};
}

}  // namespace camcfg::tool
