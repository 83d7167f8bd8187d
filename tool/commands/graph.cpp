#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"
#include "commands/words.h"
#include "media/wiring_picture.h"

namespace camcfg::tool::commands {
namespace {

// DOT as it is, other formats through Graphviz.
cli::HostProgram programFor(const std::string& format) {
  if (format.empty() || format == "dot") return {};
  if (format == "svg") return {{"dot", "-Tsvg"}, "Graphviz"};
  throw Refusal(Status::Usage, "unknown format '" + format + "'; there are dot and svg");
}

cli::Answer graph(const cli::Arguments& arguments) {
  cli::Answer answer;
  answer.through = programFor(arguments.text(kFormat));
  const media::Wiring wiring = media::readWiring();
  answer.value = media::jsonOf(wiring);
  answer.layout = {cli::Verbatim{media::pictureOf(wiring)}};
  for (const std::string& finding : media::findingsIn(wiring))
    answer.notes.push_back("note: " + finding);
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
