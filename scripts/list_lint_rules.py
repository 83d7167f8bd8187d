"""Prints a document with the rules of lint in it.

usage: list_lint_rules.py RULES CORPUS DOCUMENT

The rules replace what is between the heading "## Rules" and the next one of its rank, after the comment that
ends the section's introduction. Rows of the table of figures get their number and what the tables in the
directory CORPUS say, which a test holds true. Fails unless the tables of attributes have all rules, and no others.
"""
import collections
import re
import sys

BEGIN = "<!-- Made from tool/lint/rules.txt by scripts/list-lint-rules.sh: change that. -->\n"
MEMBERS = ["rule", "severity", "subject", "explanation", "example", "why", "fix"]


def rules_in(text):
    rules = []
    for block in re.split(r"\n\n+", re.sub(r"(?m)^#.*\n", "", text).strip()):
        rule = dict(line.split(": ", 1) for line in block.split("\n"))
        if list(rule) != MEMBERS:
            sys.exit(f"tool/lint/rules.txt: this is no rule:\n{block}")
        rules.append(rule)
    return rules


def in_markdown(text):
    """Prose whose XML, commands, attributes and paths are set as code."""
    codes = [
        r"(<[^<>]*>(?:[^<>\s]*<[^<>]*>)*)",
        r"'(camcfg[^']*)'",
        r'([A-Za-z]\w*="[^"]*")',
        r"\b(CFG_\w+)",
        r"((?:docs/files\.md|business_param\.xml)\b)",
        r"(?<![\w.])(/(?:app|cfg[01])(?:/[\w.]+)*/?)",
    ]
    text = re.sub("|".join(codes), lambda found: f"`{found[found.lastindex]}`", text)
    text = text.replace("`docs/files.md`", "[files.md](files.md)")
    return "".join(part if i % 2 else part.replace("<", "&lt;")
                   for i, part in enumerate(re.split(r"(`[^`]*`)", text)))


def section(rule):
    return f"""#### {rule['rule']}

{rule['severity'].capitalize()}. {in_markdown(rule['explanation'])}

- Why it matters: {in_markdown(rule['why'])}
- Example: {in_markdown(rule['example'])}
- Fix: {in_markdown(rule['fix'])}
"""


def count(rules, severity):
    return sum(rule["severity"] == severity for rule in rules)


def number(rules):
    return f"{len(rules)}: {count(rules, 'error')} errors, {count(rules, 'warning')} warnings"


def sections(rules):
    subjects = list(dict.fromkeys(rule["subject"] for rule in rules))
    lines = []
    for subject in subjects:
        lines.append(f"### {subject[0].upper()}{subject[1:]}\n")
        lines += [section(rule) for rule in rules if rule["subject"] == subject]
    return "\n".join(lines)


def marks_in(path):
    with open(path, encoding="utf-8") as file:
        return collections.Counter(re.findall(r"(?m)^(found|missed|clean|passed|alarmed) ", file.read()))


def figures(rules, corpus):
    hazards = marks_in(f"{corpus}/hazards.txt")
    sound = marks_in(f"{corpus}/sound.txt")
    return {
        "rules": number(rules),
        "hazards tried": hazards.total(),
        "hazards found": f"{hazards['found']}, {100 * hazards['found'] // hazards.total()} %",
        "sound files tried": sound.total(),
        "sound files with a warning": sound["passed"],
        "false alarms": sound["alarmed"],
    }


def check_tables(document, rules):
    tables = document.partition("\n## Every attribute, question by question\n")[2].partition("\n## ")[0]
    rows = [row.split(" | ") for row in tables.split("\n") if row.startswith("|")]
    named = {name for row in rows if len(row) > 1 for name in re.findall(r"`([a-z-]+)`", row[1])}
    ids = {rule["rule"] for rule in rules}
    if named != ids:
        sys.exit(f"the tables of attributes lack {sorted(ids - named)}, and have {sorted(named - ids)}, "
                 "which are no rules")


def main(rules_path, corpus, document_path):
    with open(rules_path, encoding="utf-8") as file:
        rules = rules_in(file.read())
    with open(document_path, encoding="utf-8") as file:
        document = file.read()
    check_tables(document, rules)
    before, begin, after = document.partition(BEGIN)
    if not begin or "\n## " not in after:
        sys.exit(f"{document_path} has no place for the rules: {BEGIN}")
    rest = after[after.index("\n## "):]
    text = f"{before}{begin}\n{sections(rules)}{rest}"
    for name, figure in figures(rules, corpus).items():
        text, rows = re.subn(rf"(?m)^\| {name} \|.*$", f"| {name} | {figure} |", text)
        if rows != 1:
            sys.exit(f'{document_path} has {rows} rows "| {name} |" instead of one')
    sys.stdout.write(text)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
