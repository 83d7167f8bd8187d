"""Documents: where they come from, and what is secret in them."""

from __future__ import annotations

import re
from collections.abc import Mapping, Sequence

VERSION = 1

# In an address: a password, and what follows the application of a stream or a question mark.
URL_PASSWORD = re.compile(r"^[^/]*//[^/@]*:([^/@]+)@")
URL_KEY = re.compile(r"^rtmps?://[^/]+/[^/]+/(.+)$")
URL_QUERY = re.compile(r"\?(.+)$")


def plain(value):
    """A value as JSON has it. Texts from a vault are decrypted here and nowhere earlier."""
    if value is None or isinstance(value, (bool, int, float)):
        return value
    if isinstance(value, Mapping):
        return {str(name): plain(member) for name, member in value.items()}
    if isinstance(value, Sequence) and type(value).__name__ not in VAULTED and not isinstance(value, str):
        return [plain(element) for element in value]
    return str(value)


# Texts that are sequences without being str.
VAULTED = ("AnsibleVaultEncryptedUnicode", "EncryptedString")


def completed(document):
    """A document with its version, which need not be given."""
    return {"version": VERSION, **plain(document)}


def secrets_of(value, name=""):
    """The texts in a document that no result may hold."""
    if isinstance(value, dict):
        found = (secrets_of(member, key) for key, member in value.items())
    elif isinstance(value, list):
        found = (secrets_of(element, name) for element in value)
    elif isinstance(value, str):
        found = [secret_texts(name.lower(), value)]
    else:
        found = []
    return frozenset().union(*found)


def secret_texts(name, text):
    if "password" in name:
        return {text} if text else frozenset()
    if name == "url":
        return {match.group(1) for rule in (URL_PASSWORD, URL_KEY, URL_QUERY)
                for match in [rule.search(text)] if match}
    return frozenset()
