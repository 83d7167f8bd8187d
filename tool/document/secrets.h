#ifndef CAMCFG_TOOL_DOCUMENT_SECRETS_H
#define CAMCFG_TOOL_DOCUMENT_SECRETS_H

#include "base/json.h"
#include "device/section.h"

namespace camcfg::tool::document {

// Which members are secrets, the table of a section says.

bool holdsSecrets(const device::Section& section, const Json& value);

/// A section without its secrets.
Json withoutSecrets(const device::Section& section, const Json& value);

/// A section with secrets that are left out taken from the entry with the same key.
Json withKeptSecrets(const device::Section& section, const Json& value, const Json& before);

/// An array of differences, see differences.h, with the secrets on both sides masked.
Json withMaskedSides(Json differences);

}  // namespace camcfg::tool::document

#endif
