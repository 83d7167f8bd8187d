#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"
#include "document/comparison.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kBackup[] = "--backup";

cli::Answer diff(const cli::Arguments& arguments) {
  const bool showSecrets = arguments.given(kShowSecrets);
  const int chosen = (arguments.given(kFile) ? 1 : 0) + (arguments.given(kFactory) ? 1 : 0) +
                     (arguments.given(kBackup) ? 1 : 0);
  if (chosen > 1) throw Refusal(Status::Usage, "give one of '--backup', '--factory' and FILE");
  if (arguments.given(kFile))
    return document::compareWithDocument(arguments.text(kFile), showSecrets);
  return document::compareWithCopies(
      arguments.given(kFactory) ? device::Place::Default : device::Place::Backup, showSecrets);
}

}  // namespace

cli::CommandGroup differencesGroup() {
  return {"Export and import",
          {{"diff",
            "Tell which settings differ from the backups, the factory set or a document",
            {{cli::Option::OptionalHostFile, kFile,
              "A document as 'export' prints it; '-' is standard input"},
             {cli::Option::Flag, kBackup,
              "Compare with the backups, which is done if nothing is named"},
             {cli::Option::Flag, kFactory, "Compare with the factory set"},
             {cli::Option::Flag, kShowSecrets, "Show passwords"}},
            diff,
            Status::Usage}}};
}

}  // namespace camcfg::tool::commands
