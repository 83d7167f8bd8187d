#include "commands/groups.h"
#include "exchange/comparison.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

constexpr char kFactory[] = "--factory";
constexpr char kBackup[] = "--backup";
constexpr char kShowSecrets[] = "--show-secrets";
constexpr char kFile[] = "FILE";

Answer diff(const Arguments& arguments) {
  const bool showSecrets = arguments.given(kShowSecrets);
  const int chosen = (arguments.given(kFile) ? 1 : 0) + (arguments.given(kFactory) ? 1 : 0) +
                     (arguments.given(kBackup) ? 1 : 0);
  if (chosen > 1) throw Refusal(Status::Usage, "give one of '--backup', '--factory' and FILE");
  if (arguments.given(kFile)) return compareWithDocument(arguments.text(kFile), showSecrets);
  return compareWithCopies(arguments.given(kFactory) ? Place::Default : Place::Backup, showSecrets);
}

}  // namespace

CommandGroup differencesGroup() {
  return {"Export and import",
          {{"diff",
            "Tell which settings differ from the backups, the factory set or a document",
            {{Option::OptionalHostFile, kFile,
              "A document as 'export' prints it; '-' is standard input"},
             {Option::Flag, kBackup, "Compare with the backups, which is done if nothing is named"},
             {Option::Flag, kFactory, "Compare with the factory set"},
             {Option::Flag, kShowSecrets, "Show passwords"}},
            diff,
            Status::Usage}}};
}

}  // namespace camcfg::tool
