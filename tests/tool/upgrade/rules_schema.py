"""Checks that the schema of the rules is one, and judges each case as the tool does.

rules_schema.py SCHEMA CASES
"""
import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
with open(sys.argv[2], encoding="utf-8") as file:
    cases = json.load(file)

jsonschema.Draft7Validator.check_schema(schema)
validator = jsonschema.Draft7Validator(schema)
wrong = [case for case in cases if validator.is_valid(case["rules"]) != case["valid"]]
for case in wrong:
    print("valid" if not case["valid"] else "not valid", json.dumps(case["rules"]), file=sys.stderr)
sys.exit(1 if wrong or not cases else 0)
