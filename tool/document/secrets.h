#ifndef CAMCFG_TOOL_DOCUMENT_SECRETS_H
#define CAMCFG_TOOL_DOCUMENT_SECRETS_H

#include <string>

#include "base/json.h"

namespace camcfg::tool::document {

// Secrets are members called "password" that are not empty, and addresses in members called "url"
// that hold a password.

bool holdsSecrets(const Json& value);

/// The value with its secrets replaced by what a reader sees in place of a password.
/// @param place  where the value stands; its last word is the name of a member
Json withMaskedSecrets(const Json& value, const std::string& place = "");

/// An array of differences, see differences.h, with the secrets on both sides replaced.
Json withMaskedSides(Json differences);

/// The value without the members that are secrets.
Json withoutSecrets(const Json& value);

/// The value with members that may be secrets, where they are left out, taken from the element with
/// the same "id".
Json withKeptSecrets(const Json& value, const Json& before);

}  // namespace camcfg::tool::document

#endif
