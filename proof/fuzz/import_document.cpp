#include <camcfg/types.h>

#include "base/outcome.h"
#include "cli/answer.h"
#include "document/exchange.h"
#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

using tool::Status;
using tool::cli::Answer;
using tool::document::Mode;

struct DeviceFile {
  const char* path;
  const char* name;
};

constexpr DeviceFile kFiles[] = {{CFG_FILE_BUSINESS, "business_param.xml"},
                                 {CFG_FILE_MPP, "mpp_cfg.xml"},
                                 {CFG_FILE_PRESET, "preset_cfg.xml"}};

std::string allFiles() {
  std::string all;
  for (const DeviceFile& file : kFiles) all += readFile(file.path);
  return all;
}

Answer import(const std::string& document, bool rehearse) {
  const auto mode = static_cast<Mode>(document.size() % tool::document::kModes.size());
  Answer answer(tool::document::importSettings(document, mode, {rehearse, false},
                                               [](const auto& /*deletions*/) {}));
  tool::cli::renderText(answer);
  tool::cli::renderJson(answer);
  return answer;
}

void importTwice(const std::string& document) {
  const std::string before = allFiles();
  const Answer rehearsed = import(document, true);
  require(allFiles() == before, "a dry run writes nothing");
  const Answer done = import(document, false);
  if (rehearsed.status != Status::Done) {
    require(done.status != Status::Done, "what a dry run refuses is refused");
    require(allFiles() == before, "a document with faults changes nothing");
    return;
  }
  require(done.value["changes"] == rehearsed.value["changes"], "a dry run lists what will change");
  if (done.status != Status::Done) return;
  require(import(document, false).value["changes"].empty(),
          "a document that was imported makes no difference any more");
}

}  // namespace

// A document, whose length decides how it is meant; the files of the device, where they are not those of small_device/.
void importDocument(const Input& input) {
  std::size_t part = 0;
  for (const DeviceFile& file : kFiles) {
    const std::string given = input.part(++part);
    writeFile(file.path, given.empty() ? smallFile(file.name) : given);
  }
  try {
    tool::document::exportSettings({}, {});
    importTwice(input.part(0));
  } catch (const tool::Refusal& refusal) {
    require(*refusal.what() != '\0', "a refusal says why");
  }
}

}  // namespace camcfg::fuzz
