#ifndef CAMCFG_TOOL_DOCUMENT_FACTORY_H
#define CAMCFG_TOOL_DOCUMENT_FACTORY_H

#include <string>
#include <vector>

#include "document/document.h"
#include "parameters/parameter.h"

namespace camcfg::tool::document {

/// Sections with factory values in place of the device's own: those of the factory set, for parameters
/// and cards without one there their "Def". What has neither stays as it is.
class Factory {
 public:
  /// @param parameters  those that get them
  Json parameters(const Json& before, const std::vector<parameters::Parameter>& parameters);
  Json network(const Json& before);
  /// A section of presets or media, which has factory values in the factory set only.
  /// @throws Refusal if it has none
  const Json& whole(const device::Section& section);

  /// What had no factory value.
  const std::vector<std::string>& without() const { return without_; }
  /// Remarks on where values came from.
  std::vector<std::string> notes() const;

 private:
  const device::FactoryValues values_;
  CopiedSections copies_;
  bool hasDef_ = false;
  std::vector<std::string> without_;
};

}  // namespace camcfg::tool::document

#endif
