#include <camcfg/types.h>

#include "base/plain_text.h"
#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"
#include "commands/words.h"
#include "lint/lint.h"
#include "media/wiring.h"

namespace camcfg::tool::commands {
namespace {

// DOT as it is, other formats through Graphviz.
cli::HostProgram programFor(const std::string& format) {
  if (format.empty() || format == "dot") return {};
  if (format == "svg") return {{"dot", "-Tsvg"}, "Graphviz"};
  throw Refusal(Status::Usage, "unknown format '" + format + "'; there are dot and svg");
}

// The rules about what is connected. The picture shows what they complain of.
constexpr const char* kRules[] = {"allowed-source-missing", "channel-missing", "enable-differs",
                                  "enabled-source-disabled", "enabled-source-missing"};

std::vector<std::string> findings() {
  std::vector<lint::Source> sources(1);
  lint::Source& source = sources.front();
  source.name = CFG_FILE_MPP;
  source.kind = lint::Kind::Media;
  source.parsed = device::requireDocument(CFG_FILE_MPP);
  source.document = source.parsed.get();
  std::vector<std::string> texts;
  for (const lint::Finding& finding : lint::lint(sources))
    if (isAmong(kRules, std::string(finding.rule->id)))
      texts.push_back(finding.text + " [" + finding.rule->id + "]");
  return texts;
}

cli::Answer graph(const cli::Arguments& arguments) {
  cli::Answer answer;
  answer.through = programFor(arguments.text(kFormat));
  const media::Wiring wiring = media::readWiring();
  answer.value = media::jsonOf(wiring);
  answer.layout = {cli::Verbatim{media::pictureOf(wiring)}};
  answer.value["findings"] = Json::array();
  for (const std::string& finding : findings()) {
    answer.value["findings"].push_back(finding);
    answer.notes.push_back("note: " + finding);
  }
  return answer;
}

}  // namespace

cli::CommandGroup graphGroup() {
  return {"Live media",
          {{"graph",
            "Draw which sources, caches and services feed which",
            {{cli::Option::Value, kFormat, "dot, the default, or svg, which needs Graphviz' 'dot'",
              oneOf({"dot", "svg"})}},
            graph}}};
}

}  // namespace camcfg::tool::commands
