"""Reading the settings of a device as a document."""

from __future__ import annotations

OPTIONS = {
    "sections": {"type": "list", "elements": "str", "default": []},
    "changed_only": {"type": "bool", "default": False},
    "secrets": {"type": "bool", "default": False},
}


def gathered(action):
    words = list(action.params["sections"])
    if action.params["changed_only"]:
        words.append("--changed")
    if not action.params["secrets"]:
        words.append("--no-secrets")
    return {"changed": False, "document": action.ask("export", *words)}
