"""Finds words that CONTRIBUTING.md asks not to use, in the files named on standard input.

    git ls-files | scripts/check_words.py

Prints FILE:LINE, the word and the better one for each finding, and how many files were checked.
Ends with 1 if there was a finding and with 2 if nothing was checked.
"""
import os
import re
import sys

RULES = "CONTRIBUTING.md"
HEADING = "## Words"

# In C++: comments, and literals of texts and characters.
CPP = re.compile(r"""//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|'(?:\\[^'\n]+|[^'\\\n])'""",
                 re.S)
TEST = re.compile(r"\b(?:TYPED_)?TEST(?:_[FP])?\(\s*\w+,\s*(\w+)\)")


def pattern(phrase: str) -> re.Pattern:
    """A phrase of the list: whole words in any case; "*" is any letters, "..." up to six words."""
    words = [r"(?:\S+\s+){0,6}?" if word == "..." else re.escape(word).replace(r"\*", r"\w*") + r"\s+"
             for word in phrase.split()]
    return re.compile(r"\b" + "".join(words).removesuffix(r"\s+") + r"\b", re.I)


def read_rules() -> list[tuple[list[re.Pattern], str, list[re.Pattern]]]:
    """Rows of the table: what is looked for, what to say instead, where it is permitted."""
    section = open(RULES, encoding="utf-8").read().partition(f"\n{HEADING}\n")[2].partition("\n## ")[0]
    rules = []
    for row in re.findall(r"^\|(.*)\|$", section, re.M):
        cells = [cell.strip() for cell in row.split("|")]
        phrases = [[pattern(phrase) for phrase in re.findall(r"`([^`]+)`", cell)] for cell in cells]
        if len(cells) == 3 and phrases[0]:
            rules.append((phrases[0], cells[1], phrases[2]))
    return rules


def blank(text: str) -> str:
    return re.sub(r"\S", " ", text)


def words_of(name: str) -> str:
    return re.sub(r"(?<=[a-z0-9])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", " ", name)


def code_as_text(code: str) -> str:
    """Of code, only the names of tests, as words, and the ends of lines."""
    kept = []
    end = 0
    for test in TEST.finditer(code):
        kept.append(blank(code[end:test.start()]) + " " + words_of(test[1]))
        kept.append(" " + "\n" * test[0].count("\n"))
        end = test.end()
    return "".join(kept) + blank(code[end:])


def cpp_as_text(source: str, literals_count: bool) -> str:
    """A C++ source with its code blanked out, line for line."""
    kept = []
    end = 0
    for match in CPP.finditer(source):
        kept.append(code_as_text(source[end:match.start()]))
        is_text = match[0].startswith("/") or literals_count
        kept.append(match[0] if is_text else blank(match[0]))
        end = match.end()
    return "".join(kept) + code_as_text(source[end:])


def text_of(path: str) -> str:
    source = open(path, encoding="utf-8", errors="replace").read()
    if path.endswith((".h", ".cpp")):
        # What the library prints and logs is fixed.
        source = cpp_as_text(source, literals_count=not path.startswith("src/"))
    elif path.endswith((".cmake", "CMakeLists.txt")):
        source = words_of(source)  # names of tests
    elif path == RULES:
        # The list itself.
        before, heading, rest = source.partition(f"\n{HEADING}\n")
        rules, next_heading, after = rest.partition("\n## ")
        source = before + heading + blank(rules) + next_heading + after
    # A phrase may go on in the next line, after the mark of a comment or a quotation mark.
    return re.sub(r'[#/*|"\\]', " ", source)


def findings(text: str, rules) -> list[tuple[int, str, str]]:
    found = []
    for phrases, better, permitted in rules:
        matches = [match for phrase in phrases for match in phrase.finditer(text)]
        if not matches:
            continue
        spans = [match.span() for phrase in permitted for match in phrase.finditer(text)]
        for match in matches:
            if not any(start <= match.start() and match.end() <= end for start, end in spans):
                line = text.count("\n", 0, match.start()) + 1
                found.append((line, " ".join(match[0].split()), better))
    return sorted(set(found))


def main() -> int:
    rules = read_rules()
    checked = 0
    status = 0
    for path in sys.stdin.read().splitlines():
        if not os.path.isfile(path):  # removed, but not yet from the index
            continue
        checked += 1
        for line, word, better in findings(text_of(path), rules):
            print(f"{path}:{line}: \"{word}\": say {better}", file=sys.stderr)
            status = 1
    if checked == 0 or not rules:
        print("check-words.sh: nothing was checked", file=sys.stderr)
        return 2
    print(f"{checked} files checked for {len(rules)} words and phrases")
    return status


if __name__ == "__main__":
    sys.exit(main())
