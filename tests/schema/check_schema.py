"""Compares the schema of the sample device with what its import takes.

For every value of an exported document: one below its limits, at them, one above, of the wrong type, missing,
unknown. Schema and import agree, except for what the rows of cannot_say.json say that a schema cannot say.

    check_schema.py TOOL DEVICE CASES

writes each document with the schema's verdict to CASES, a line of JSON each, for other validators.
"""

import copy
import json
import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor

import jsonschema

HERE = os.path.dirname(os.path.abspath(__file__))
DIALECTS = {"2020-12": jsonschema.Draft202012Validator, "draft-07": jsonschema.Draft7Validator}
REMOVED = object()


def run(tool, device, arguments, document=None):
    return subprocess.run([tool, "--root", device, *arguments], check=False, capture_output=True,
                          encoding="utf-8", errors="replace", timeout=60, input=document)


def resolved(schema, root):
    """What is behind a reference, or the first of alternatives."""
    while True:
        if "$ref" in schema:
            for name in schema["$ref"].split("/")[1:]:
                schema = schema["$defs" if name == "$defs" else name] if name in schema else root[name]
        elif "else" in schema:
            schema = schema["else"]
        elif "anyOf" in schema and "type" not in schema:
            schema = schema["anyOf"][0]
        elif "allOf" in schema:
            schema = {**{k: v for k, v in schema.items() if k != "allOf"},
                      **resolved(schema["allOf"][0], root)}
        else:
            return schema


def values_for(schema):
    """Values around the limits of a leaf."""
    if schema.get("type") == "integer":
        least, most = schema["minimum"], schema["maximum"]
        return [least - 1, least, most, most + 1, -1, 1.5, float(least), "1", True, None, [], {}]
    if schema.get("type") == "boolean":
        return [True, False, 1, "true", None]
    if "enum" in schema:
        return [*schema["enum"], "no such word", schema["enum"][0][:-1], 7, None, True]
    if "const" in schema:
        return [schema["const"], "other", 7, None]
    most = schema.get("maxLength", 40)
    return ["", "a text", "x" * most, "x" * (most + 1), "\u00e4" * most, "\u0001", "a\nb", 5, True, None,
            {"$bytes": "fe"}, {"$bytes": "f"}, {"$bytes": "fe", "more": 1}]


def changes_at(value, schema, root):
    """Values in place of this one, and paths below it with theirs."""
    schema = resolved(schema, root)
    kind = schema.get("type")
    if kind == "object" and isinstance(value, dict):
        yield [], {**value, "no such member": 1}
        yield [], []
        for name, member in value.items():
            yield [name], REMOVED
            for path, other in changes_at(member, schema["properties"][name], root):
                yield [name, *path], other
    elif kind == "array" and isinstance(value, list):
        yield [], {}
        yield [], None
        yield [], []
        if value:
            yield [], [*value, value[0]]
            for path, other in changes_at(value[0], schema["items"], root):
                yield [0, *path], other
            if isinstance(value[0], dict):
                for other in absent_entries(value[0]):
                    yield [], [*value, other]
    else:
        for other in values_for(schema):
            if other != value or type(other) is not type(value):
                yield [], other


def absent_entries(entry):
    for key in ("id", "name"):
        if key in entry:
            yield {key: entry[key], "absent": True}
            yield {key: entry[key], "absent": False}
    yield {"absent": True}
    yield {**entry, "absent": True}


def changed(document, path, value):
    document = copy.deepcopy(document)
    if not path:
        return value
    place = document
    for name in path[:-1]:
        place = place[name]
    if value is REMOVED:
        del place[path[-1]]
    else:
        place[path[-1]] = value
    return document


def related_parts(document):
    """Documents whose parts are fine, each by itself."""
    target = {**document["live"]["rtmp"][0], "id": 77}
    del target["url"]
    yield {"version": 1, "live": {"rtmp": [target]}}
    cache = {**document["stream"]["caches"][0], "name": "other"}
    yield {"version": 1, "stream": {"sources": document["stream"]["sources"][1:], "caches": [cache]}}


def faults_of(tool, device, document):
    """What an import has against a document; findings of lint are about what a document means."""
    done = run(tool, device, ["--json", "import", "--dry-run", "-"], json.dumps(document))
    answer = json.loads(done.stdout)
    if "error" in answer:
        return [answer["error"]["text"]]
    return [f'{each["place"]}: {each["reason"]}' for each in answer["faults"]]


def main():
    tool, device, cases = sys.argv[1:]
    schemas = {name: json.loads(run(tool, device, ["schema", "--dialect", name]).stdout)
               for name in DIALECTS}
    for name, validator in DIALECTS.items():
        validator.check_schema(schemas[name])
    document = json.loads(run(tool, device, ["export"]).stdout)
    root = schemas["2020-12"]
    validators = {name: each(schemas[name]) for name, each in DIALECTS.items()}
    for validator in validators.values():
        validator.validate(document)
    documents = [document, {"version": 1, "$schema": "device.json"}, {"version": 1, "$schema": 7},
                 {"version": 2}, {}, [], "text"]
    documents += [changed(document, path, value) for path, value in changes_at(document, root, root)]
    documents += related_parts(document)
    with ThreadPoolExecutor(4) as pool:
        refused = list(pool.map(lambda each: faults_of(tool, device, each), documents))
    with open(os.path.join(HERE, "cannot_say.json"), encoding="utf-8") as file:
        rows = [(re.compile(row["reason"]), row) for row in json.load(file)]
    unused = {row["reason"] for _, row in rows}
    wrong = 0
    with open(cases, "w", encoding="utf-8") as file:
        for each, faults in zip(documents, refused):
            verdicts = {name: validator.is_valid(each) for name, validator in validators.items()}
            file.write(json.dumps({"valid": verdicts["2020-12"], "document": each}) + "\n")
            said = {row["reason"] for fault in faults for form, row in rows if form.search(fault)}
            unsaid = [fault for fault in faults if not any(form.search(fault) for form, _ in rows)]
            if len(set(verdicts.values())) != 1:
                wrong += report("the dialects disagree", each, document, faults)
            elif verdicts["2020-12"] and unsaid:
                wrong += report("valid, but refused", each, document, unsaid)
            elif not verdicts["2020-12"] and not faults:
                error = next(validators["2020-12"].iter_errors(each)).message[:200]
                wrong += report(f"not valid ({error}), but taken", each, document, faults)
            elif verdicts["2020-12"]:
                unused -= said
    for reason in sorted(unused):
        print(f"no document shows that a schema cannot say: {reason}")
    print(f"{len(documents)} documents: {sum(not each for each in refused)} taken, {wrong} wrong")
    return 1 if wrong or unused else 0


def report(what, each, document, faults):
    print(f"{what}: {first_difference(each, document)}: {faults}")
    return 1


def first_difference(one, other, place=""):
    if isinstance(one, dict) and isinstance(other, dict):
        for name in {**other, **one}:
            if name not in one:
                return f"{place}.{name} is missing"
            if name not in other:
                return f"{place}.{name} is new"
            if one[name] != other[name] or type(one[name]) is not type(other[name]):
                return first_difference(one[name], other[name], f"{place}.{name}")
    if isinstance(one, list) and isinstance(other, list):
        for index, (left, right) in enumerate(zip(one, other)):
            if left != right or type(left) is not type(right):
                return first_difference(left, right, f"{place}[{index}]")
    return f"{place} = {json.dumps(one)[:100]}"


if __name__ == "__main__":
    sys.exit(main())
