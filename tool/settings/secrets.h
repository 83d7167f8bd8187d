#ifndef CAMCFG_TOOL_SETTINGS_SECRETS_H
#define CAMCFG_TOOL_SETTINGS_SECRETS_H

#include <string>

#include "settings/setting.h"

namespace camcfg::tool::settings {

// What answers show in place of a secret. An empty secret stays empty.

std::string maskedPassword(const std::string& password);

/// The address of an RTMP target, with the key of its stream masked, and what else may be secret.
std::string maskedUrl(const std::string& url);

/// Whether entries of a table may hold a secret.
bool hasSecrets(const Table& table);

/// The value with each secret masked.
Json withMaskedSecrets(const Json& value, const Settings& settings);

/// Whether a place of a document may have a secret: "live.srt[1].password".
bool isSecretAt(const std::string& place);

/// What a place of a document has, "live.srt[1].password", with each secret masked.
Json maskedAt(const std::string& place, const Json& value);

/// The value without its secrets.
Json withoutSecrets(const Json& value, const Settings& settings);

/// Entries of a table with secrets that are left out taken from the entry with the same key.
Json withKeptSecrets(Json entries, const Table& table, const Json& before);

}  // namespace camcfg::tool::settings

#endif
