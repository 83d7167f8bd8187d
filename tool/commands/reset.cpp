#include "exchange/reset.h"

#include "commands/groups.h"
#include "frame/status.h"

namespace camcfg::tool {
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
void requireOneScope(const Arguments& arguments) {
  const int scopes = (arguments.given("SECTION") ? 1 : 0) + (arguments.given(kSection) ? 1 : 0) +
                     (arguments.given(kAll) ? 1 : 0);
  if (scopes == 1) return;
  refuseUsage(std::string(scopes == 0 ? "nothing is named" : "more than one thing is named") +
              "; give SECTION NAME, '--section SECTION' or '--all'");
}

Answer reset(const Arguments& arguments) {
  requireOneScope(arguments);
  const ImportOptions options{arguments.given(kDryRun), arguments.given(kShowSecrets)};
  if (arguments.given(kSection)) return resetSection(arguments.text(kSection), options);
  if (arguments.given(kAll)) {
    if (!options.rehearse && !arguments.given(kYes))
      refuseUsage(
          "'--all' replaces every setting of the device; '--dry-run' shows what would change, "
          "'--yes' does it");
    return resetAll(options);
  }
  if (!arguments.given("NAME"))
    refuseUsage("which parameter? '--section " + arguments.text("SECTION") +
                "' resets the whole section");
  return resetParameter(arguments.text("SECTION"), arguments.text("NAME"), options);
}

}  // namespace

CommandGroup resetGroup() {
  return {"Export and import",
          {{"reset",
            "Put factory values back: of a parameter, a section or the whole device",
            {{Option::OptionalArgument, "SECTION", "Section of a parameter"},
             {Option::OptionalArgument, "NAME", "Whole name of the parameter"},
             {Option::Value, kSection, "All of a section: System, NetWork, presets, live.srt"},
             {Option::Flag, kAll, "The whole device"},
             {Option::Flag, kYes, "Really reset the whole device"},
             {Option::Flag, kDryRun, "Show what would change and write nothing"},
             {Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            reset}}};
}

}  // namespace camcfg::tool
