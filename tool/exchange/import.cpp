#include "exchange/exchange.h"
#include "exchange/parse.h"
#include "exchange/transitions.h"

namespace camcfg::tool {

Answer importSettings(const std::string& text, const ImportOptions& options) {
  Faults faults;
  const Json document = parseJson(text, faults);
  const std::vector<Transition> transitions = readDocument(document, faults);
  if (!faults.empty()) return refusedFor(faults);
  return carriedOut(transitions, options, "nothing differs from the device");
}

}  // namespace camcfg::tool
