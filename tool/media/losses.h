#ifndef CAMCFG_TOOL_MEDIA_LOSSES_H
#define CAMCFG_TOOL_MEDIA_LOSSES_H

#include <tinyxml2.h>

#include <string>
#include <vector>

namespace camcfg::tool::media {

/// An element as the library writes it when it saves a section whole.
struct ElementForm {
  const char* name;
  std::vector<const char*> attributes;
  std::vector<ElementForm> children;
};

/// What a section holds that is lost when the library saves it whole: comments, texts, elements and
/// attributes that it does not write, each with its line: "the comment at line 7". The section's own
/// attributes stay.
std::vector<std::string> lossesOf(const tinyxml2::XMLElement& section,
                                  const std::vector<ElementForm>& forms);

}  // namespace camcfg::tool::media

#endif
