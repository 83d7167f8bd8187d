#include "document/reset.h"

#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kAll[] = "--all";
constexpr char kYes[] = "--yes";

[[noreturn]] void refuseUsage(const std::string& text) {
  throw Refusal(Status::Usage, text);
}

// Whether exactly one of the three ways of saying what to reset was chosen.
void requireOneScope(const cli::Arguments& arguments) {
  const int scopes = (arguments.given(kSection) ? 1 : 0) +
                     (arguments.given(kSectionOption) ? 1 : 0) + (arguments.given(kAll) ? 1 : 0);
  if (scopes == 1) return;
  refuseUsage(std::string(scopes == 0 ? "nothing is named" : "more than one thing is named") +
              "; give SECTION NAME, '--section SECTION' or '--all'");
}

cli::Answer reset(const cli::Arguments& arguments) {
  requireOneScope(arguments);
  const document::ImportOptions options{arguments.given(kDryRun), arguments.given(kShowSecrets)};
  if (arguments.given(kSectionOption))
    return document::resetSection(arguments.text(kSectionOption), options);
  if (arguments.given(kAll)) {
    if (!options.rehearse && !arguments.given(kYes))
      refuseUsage(
          "'--all' replaces every setting of the device; '--dry-run' shows what would change, "
          "'--yes' does it");
    return document::resetAll(options);
  }
  if (!arguments.given(kName))
    refuseUsage("which parameter? '--section " + arguments.text(kSection) +
                "' resets the whole section");
  return document::resetParameter(arguments.text(kSection), arguments.text(kName), options);
}

}  // namespace

cli::CommandGroup resetGroup() {
  return {"Export and import",
          {{"reset",
            "Put factory values back: of a parameter, a section or the whole device",
            {{cli::Option::OptionalArgument, kSection, "Section of a parameter"},
             {cli::Option::OptionalArgument, kName, "Whole name of the parameter"},
             {cli::Option::Value, kSectionOption,
              "All of a section: System, NetWork, presets, live.srt"},
             {cli::Option::Flag, kAll, "The whole device"},
             {cli::Option::Flag, kYes, "Really reset the whole device"},
             {cli::Option::Flag, kDryRun, "Show what would change and write nothing"},
             {cli::Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            reset}}};
}

}  // namespace camcfg::tool::commands
