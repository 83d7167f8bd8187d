#include "document/exchange.h"
#include "document/parse.h"
#include "document/transitions.h"

namespace camcfg::tool::document {

cli::Answer importSettings(const std::string& text, const ImportOptions& options) {
  settings::Faults faults;
  const Json document = parseJson(text, faults);
  const std::vector<Transition> transitions = readDocument(document, faults);
  if (!faults.empty()) return refusedFor(faults);
  return carriedOut(transitions, options, "nothing differs from the device");
}

}  // namespace camcfg::tool::document
