#include "document/reset.h"

#include "base/refusal.h"
#include "commands/groups.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kSection[] = "--section";
constexpr char kAll[] = "--all";
constexpr char kYes[] = "--yes";
constexpr char kDryRun[] = "--dry-run";
constexpr char kShowSecrets[] = "--show-secrets";

[[noreturn]] void refuseUsage(const std::string& text) {
  throw Refusal(Status::Usage, text);
}

// Whether exactly one of the three ways of saying what to reset was chosen.
void requireOneScope(const cli::Arguments& arguments) {
  const int scopes = (arguments.given("SECTION") ? 1 : 0) + (arguments.given(kSection) ? 1 : 0) +
                     (arguments.given(kAll) ? 1 : 0);
  if (scopes == 1) return;
  refuseUsage(std::string(scopes == 0 ? "nothing is named" : "more than one thing is named") +
              "; give SECTION NAME, '--section SECTION' or '--all'");
}

cli::Answer reset(const cli::Arguments& arguments) {
  requireOneScope(arguments);
  const document::ImportOptions options{arguments.given(kDryRun), arguments.given(kShowSecrets)};
  if (arguments.given(kSection)) return document::resetSection(arguments.text(kSection), options);
  if (arguments.given(kAll)) {
    if (!options.rehearse && !arguments.given(kYes))
      refuseUsage(
          "'--all' replaces every setting of the device; '--dry-run' shows what would change, "
          "'--yes' does it");
    return document::resetAll(options);
  }
  if (!arguments.given("NAME"))
    refuseUsage("which parameter? '--section " + arguments.text("SECTION") +
                "' resets the whole section");
  return document::resetParameter(arguments.text("SECTION"), arguments.text("NAME"), options);
}

}  // namespace

cli::CommandGroup resetGroup() {
  return {"Export and import",
          {{"reset",
            "Put factory values back: of a parameter, a section or the whole device",
            {{cli::Option::OptionalArgument, "SECTION", "Section of a parameter"},
             {cli::Option::OptionalArgument, "NAME", "Whole name of the parameter"},
             {cli::Option::Value, kSection, "All of a section: System, NetWork, presets, live.srt"},
             {cli::Option::Flag, kAll, "The whole device"},
             {cli::Option::Flag, kYes, "Really reset the whole device"},
             {cli::Option::Flag, kDryRun, "Show what would change and write nothing"},
             {cli::Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            reset}}};
}

}  // namespace camcfg::tool::commands
