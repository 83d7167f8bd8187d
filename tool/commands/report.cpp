#include <camcfg/types.h>

#include "commands/groups.h"
#include "device/files.h"
#include "device/scratch.h"
#include "document/document.h"
#include "report/anonymous.h"
#include "report/facts.h"
#include "report/page.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kAnonymize[] = "--anonymize";
constexpr char kKeyIn[] = "--key";
constexpr char kFiles[] = "--files";

// Of the device, or of files that are laid out as the main copies of one.
Json factsFor(const Arguments& arguments) {
  if (!arguments.given(kFiles)) return report::factsOf();
  std::vector<device::Contents> files;
  for (const HostFile& file : arguments.files(kFiles)) {
    if (!file.fault.empty()) throw Refusal(Status::Unusable, file.path + ": " + file.fault);
    files.push_back({device::pathOf(device::Place::Main, file.path), file.contents});
  }
  if (files.empty())
    throw Refusal(Status::Unusable, arguments.text(kFiles) + ": it has no file of a device");
  return device::onScratchDevice(files, report::factsOf);
}

Answer report(const Arguments& arguments) {
  if (arguments.directory(kKeyIn) != nullptr && !arguments.given(kAnonymize))
    throw Refusal(Status::Usage, "--key is for '--anonymize', which is missing");
  Json facts = factsFor(arguments);
  Answer answer;
  if (arguments.given(kAnonymize)) {
    Json key;
    facts = report::anonymous(facts, key);
    if (HostDirectory* directory = arguments.directory(kKeyIn))
      answer.notes.push_back("the key to what is hidden is in " +
                             directory->save("camcfg-key.json", document::printJson(key)));
  }
  answer.layout = {Verbatim{report::reportOf(facts)}};
  answer.value = std::move(facts);
  return answer;
}

}  // namespace

CommandGroup reportGroup() {
  Option files{Option::HostFolder, kFiles, "Report on the files in DIR, without a device"};
  files.files = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"};
  return {"Overview",
          {command("report", "Print a page for browsers that shows all of the device", report,
                   {{Option::Flag, kAnonymize,
                     "Put placeholders for addresses, urls and names of hosts and of the device"},
                    {Option::HostDirectory, kKeyIn, "Save what the placeholders replace in DIR"},
                    files})}};
}

}  // namespace camcfg::tool::commands
