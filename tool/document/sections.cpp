#include "document/sections.h"

#include "media/sections.h"
#include "network/section.h"
#include "parameters/section.h"
#include "presets/section.h"

namespace camcfg::tool::document {
namespace {

std::vector<device::Section> collected() {
  std::vector<device::Section> all = media::sections();
  all.insert(all.end(), {parameters::parametersSection(), network::networkSection(),
                         presets::presetsSection()});
  return all;
}

}  // namespace

const std::vector<device::Section>& allSections() {
  static const std::vector<device::Section> all = collected();
  return all;
}

}  // namespace camcfg::tool::document
