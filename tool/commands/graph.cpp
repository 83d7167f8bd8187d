#include "commands/groups.h"
#include "commands/vocabulary.h"
#include "device/wiring_picture.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

constexpr char kFormat[] = "--format";

// DOT as it is, other formats through Graphviz.
HostProgram programFor(const std::string& format) {
  if (format.empty() || format == "dot") return {};
  if (format == "svg") return {{"dot", "-Tsvg"}, "Graphviz"};
  throw Refusal(Status::Usage, "unknown format '" + format + "'; there are dot and svg");
}

Answer graph(const Arguments& arguments) {
  Answer answer;
  answer.through = programFor(arguments.text(kFormat));
  const Wiring wiring = readWiring();
  answer.value = jsonOf(wiring);
  answer.layout = {Verbatim{pictureOf(wiring)}};
  for (const std::string& finding : findingsIn(wiring)) answer.notes.push_back("note: " + finding);
  return answer;
}

}  // namespace

CommandGroup graphGroup() {
  return {"Live media",
          {{"graph",
            "Draw which sources, caches and services feed which",
            {{Option::Value, kFormat, "dot, the default, or svg, which needs Graphviz' 'dot'",
              oneOf({"dot", "svg"})}},
            graph}}};
}

}  // namespace camcfg::tool
