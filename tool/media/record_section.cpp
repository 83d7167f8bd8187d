#include "media/record_section.h"

namespace camcfg::tool::media {

Losses lossNotes(const std::string& name, const MediaSection& section,
                 const std::vector<ElementForm>& forms,
                 const std::function<void(const tinyxml2::XMLElement&, Losses&)>& more) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  tinyxml2::XMLElement* element = requireSection(*document, section);
  Losses losses = lossesOf(*element, forms);
  if (more)
    for (const tinyxml2::XMLElement* entry : entriesOf(element, section)) more(*entry, losses);
  std::string list;
  for (const std::string& loss : losses) list += (list.empty() ? "" : ", ") + loss;
  if (list.empty()) return {};
  return {"note: " + name + " is saved anew, without " + list};
}

}  // namespace camcfg::tool::media
