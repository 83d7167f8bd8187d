"""The small changes that can be made to a source file, found by its tokens."""
import dataclasses
import re
from typing import Iterator

TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
      | (?P<string>"(?:\\.|[^"\\\n])*")
      | (?P<character>'(?:\\.|[^'\\\n])+')
      | (?P<number>\d[\w']*(?:\.\d\w*)?)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<operator><<=|>>=|->\*|\.\.\.|[-+*/%&|^=!<>]=|&&|\|\||\+\+|--|->|::|<<|>>|[^\s\w])
    """,
    re.DOTALL | re.MULTILINE | re.VERBOSE,
)

# What is between spaces is an operator; "<", "&" and "&&" of types do not.
BINARY = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="],
    ">=": [">", "<"], "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "+=": ["-="],
    "-=": ["+="], "|": ["&"], "&": ["|"],
}
STEPS = {"++": "--", "--": "++"}
TRUTHS = {"true": "false", "false": "true", "BU_TRUE": "BU_FALSE", "BU_FALSE": "BU_TRUE"}

# A statement that begins so is no step that could be left out.
DECLARING = {
    "case", "class", "const", "constexpr", "default", "else", "enum", "explicit", "extern", "for",
    "friend", "if", "inline", "namespace", "private", "protected", "public", "static",
    "static_assert", "struct", "switch", "template", "try", "typedef", "using", "virtual", "while",
}
# From the one to the other, a change would not compile, or change nothing in the library.
COMPILE_TIME = {"static_assert": ";", "__attribute__": ")"}
LEAVING = {"break", "continue", "return"}
DECLARATION = re.compile(r"(?!delete\b|throw\b|return\b)[\w:]+(?:<[^;=]*>)?(?:\s*[*&]+\s*|\s+)\w")
# Such a result is the default anyway, or becomes it by another change.
EMPTY_RESULTS = {"", "0", "false", "nullptr", "{}", "\"\"", "true"}


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int

    @property
    def end(self) -> int:
        return self.start + len(self.text)


@dataclasses.dataclass(frozen=True)
class Change:
    """Characters `start` to `end` of a file become `new`; lines keep their numbers."""

    file: str
    line: int
    kind: str
    start: int
    end: int
    new: str
    before: str  # the line, or the whole statement, as it is
    after: str

    def apply(self, source: str) -> str:
        return source[: self.start] + self.new + source[self.end :]


def one_line(text: str) -> str:
    return " ".join(text.split())


class Source:
    """A file of the library and the changes that can be made to it."""

    def __init__(self, file: str, text: str) -> None:
        self.file = file
        self.text = text
        self.tokens = [
            Token(match.lastgroup or "", match.group(), match.start())
            for match in TOKEN.finditer(text)
            if match.lastgroup not in ("comment", "directive")
        ]

    def changes(self) -> list[Change]:
        passed_over = self._compile_time_tokens()
        found = [
            change
            for index, token in enumerate(self.tokens)
            if index not in passed_over
            for change in self._of_token(index, token)
        ]
        return found + list(self._of_statements())

    def _compile_time_tokens(self) -> set[int]:
        passed_over = set()
        until = None
        for index, token in enumerate(self.tokens):
            until = until or COMPILE_TIME.get(token.text)
            names_a_language = index > 0 and self.tokens[index - 1].text == "extern"
            if until is not None or names_a_language:
                passed_over.add(index)
            if token.text == until:
                until = None
        return passed_over

    def _of_token(self, index: int, token: Token) -> Iterator[Change]:
        if token.kind == "operator":
            yield from self._of_operator(index, token)
        elif token.text in TRUTHS:
            yield self._replace(token, "truth", TRUTHS[token.text])
        elif token.kind == "number" and re.fullmatch(r"0[xX][0-9a-fA-F]+|\d+", token.text):
            yield from (self._replace(token, "constant", new) for new in neighbours(token.text))
        elif token.kind == "string":
            place = letter_to_change(token)
            if place is not None:
                changed = token.text[:place] + next_letter(token.text[place])
                yield self._replace(token, "letter", changed + token.text[place + 1 :])

    def _of_operator(self, index: int, token: Token) -> Iterator[Change]:
        before, after = self.text[token.start - 1], self.text[token.end : token.end + 1]
        spaced = before.isspace() and after.isspace()
        if spaced and self.tokens[index - 1].text != "template":
            for new in BINARY.get(token.text, []):
                kind = "logic" if token.text in ("&&", "||") else "operator"
                yield self._replace(token, kind, new)
        elif token.text in STEPS:
            yield self._replace(token, "operator", STEPS[token.text])
        elif token.text == "!":
            yield self._replace(token, "negation", "")

    def _replace(self, token: Token, kind: str, new: str) -> Change:
        return self._change(kind, token.start, token.end, new)

    def _change(self, kind: str, start: int, end: int, new: str) -> Change:
        first = self.text.rfind("\n", 0, start) + 1
        last = self.text.find("\n", end)
        last = len(self.text) if last < 0 else last
        before = self.text[first:last]
        after = self.text[first:start] + new + self.text[end:last]
        line = self.text.count("\n", 0, start) + 1
        return Change(self.file, line, kind, start, end, new, one_line(before), one_line(after))

    def _of_statements(self) -> Iterator[Change]:
        for index, controlled in self._statement_starts():
            end = self._end_of_simple_statement(index)
            if end is None:
                continue
            start, stop = self.tokens[index].start, self.tokens[end].end
            text = self.text[start:stop]
            if self.tokens[index].text == "return" and (
                one_line(text[len("return") : -1]) not in EMPTY_RESULTS
            ):
                yield self._change("result", start, stop, "return {};" + "\n" * text.count("\n"))
            if self._is_step(index, end, controlled):
                yield self._change("statement", start, stop, ";" + "\n" * text.count("\n"))

    # The tokens at which a statement begins, and whether that depends on a condition.
    def _statement_starts(self) -> Iterator[tuple[int, bool]]:
        opened: list[bool] = []  # for each open parenthesis, whether it holds a condition
        for index, token in enumerate(self.tokens[:-1]):
            before = self.tokens[index - 1].text if index else ""
            if token.text == "(":
                opened.append(before in ("if", "constexpr", "for", "while"))
            elif token.text == ")":
                if opened and opened.pop():
                    yield index + 1, True
            elif token.text in ("{", "}", ";") and not any(opened):
                yield index + 1, False
            elif token.text in ("else", "do"):
                yield index + 1, True

    def _end_of_simple_statement(self, index: int) -> int | None:
        depth = 0
        for end in range(index, len(self.tokens)):
            text = self.tokens[end].text
            if text == ";" and depth == 0:
                return end
            if text in "{}" and depth == 0 and self.tokens[index].text != "return":
                return None
            depth += text in ("(", "{", "[")
            depth -= text in (")", "}", "]")
            if depth < 0:
                return None
        return None

    def _is_step(self, index: int, end: int, controlled: bool) -> bool:
        first = self.tokens[index]
        if end == index or first.text in DECLARING:
            return False
        if first.text in LEAVING:
            return controlled
        text = self.text[first.start : self.tokens[end].end]
        if re.search(r"=\s*(delete|default|0)\s*;$", text) and "(" in text:
            return False
        return DECLARATION.match(text) is None


def neighbours(number: str) -> list[str]:
    """The whole numbers before and after one, written as it is."""
    hexadecimal = number[:2] in ("0x", "0X")
    octal = not hexadecimal and len(number) > 1 and number[0] == "0"
    value = int(number, 16 if hexadecimal else 8 if octal else 10)
    written = [value + 1] + ([value - 1] if value > 0 else [])
    return [f"0x{n:x}" if hexadecimal else f"0{n:o}" if octal else str(n) for n in written]


def letter_to_change(token: Token) -> int | None:
    """The place of the middle letter of a literal, except for those that say how to print."""
    hidden = re.sub(r"%[-+0-9.]*[a-z]+?|\\.", lambda match: "%" * len(match.group()), token.text)
    places = [match.start() for match in re.finditer("[A-Za-z]", hidden)]
    return places[len(places) // 2] if places else None


def next_letter(letter: str) -> str:
    return {"z": "a", "Z": "A"}.get(letter) or chr(ord(letter) + 1)
