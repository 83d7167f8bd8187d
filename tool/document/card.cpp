#include "document/card.h"

#include "document/document.h"
#include "network/network.h"

namespace camcfg::tool::document {

Outcome setCard(const std::string& card, const std::vector<std::string>& words, bool force,
                const ImportOptions& options) {
  const device::Section& section = sectionOf(kNetwork);
  const Json before = section.load();
  Target target;
  target.add(section, before, network::setCard(before, card, words, force));
  return carriedOut(target, options);
}

}  // namespace camcfg::tool::document
