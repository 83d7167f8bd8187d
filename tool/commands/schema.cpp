#include "document/schema.h"

#include <algorithm>

#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/scratch.h"
#include "document/document.h"
#include "document/sample_set.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kDialect[] = "--dialect";
constexpr char kSample[] = "--sample";

Answer schema(const Arguments& arguments) {
  const auto dialect =
      static_cast<document::Dialect>(choiceOf(arguments, kDialect, document::kDialects, 0));
  const document::Mode mode = modeOf(arguments);
  const auto make = [&] { return document::schemaOf(dialect, mode); };
  Json schema =
      arguments.given(kSample) ? device::onScratchDevice(document::sampleSet(), make) : make();
  const std::string text = document::printJson(schema);
  return {std::move(schema), {Verbatim{text}}};
}

}  // namespace

CommandGroup schemaGroup() {
  return {
      "Export and import",
      {command("schema", "Print the JSON Schema of documents for this device", schema,
               {{Option::Value, kDialect, "2020-12, the default, or draft-07",
                 oneOf({"2020-12", "draft-07"}), nullptr, "DIALECT"},
                {Option::Value, kMode,
                 "Of documents for 'import --mode MODE': in those that are merged, entries may "
                 "leave out members",
                 oneOf({"merge", "replace", "override"}), nullptr, "MODE"},
                {Option::Flag, kSample, "Of documents for the sample device, without a device"}})}};
}

}  // namespace camcfg::tool::commands
