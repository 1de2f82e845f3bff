# SPDX-License-Identifier: Apache-2.0
"""Finds the places of a C++ source at which one small change makes a mutant.

The sources are formatted: operators of two operands have white space on both sides, which brackets
of templates, pointers and references never have.
"""

import dataclasses
import difflib
import re

SKIPPED = re.compile(
    r"//[^\n]*|/\*.*?\*/"  # comments
    r"|^[ \t]*\#(?:\\\n|[^\n])*"  # lines of the preprocessor
    r"|^[^\n]*\bstatic_assert\b[^\n]*"
    r"|\b\d[\w.']*"  # a number is kept; it may hold quotes that begin no character
    r'|"(?:\\.|[^"\\])*"' + r"|'(?:\\.|[^'\\])*'",
    re.DOTALL | re.MULTILINE,
)

OPERATORS = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "==": ["!="], "!=": ["=="], "&&": ["||"], "||": ["&&"],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
    "<<": [">>"], ">>": ["<<"], "&": ["|"], "|": ["&"], "^": ["&"],
    "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="], "<<=": [">>="], ">>=": ["<<="],
}  # fmt: skip
BETWEEN_OPERANDS = re.compile(r"(?<=\s)([-<>=!&|+*/%^]+)(?=\s)")

WORDS = {
    "true": "false", "false": "true", "min": "max", "max": "min",
    "wrapAdd": "wrapSub", "wrapSub": "wrapAdd", "wrapMul": "wrapDiv", "wrapDiv": "wrapMul",
    "AMEDIA_OK": "AMEDIA_ERROR_UNKNOWN",
}  # fmt: skip
WORD = re.compile(r"\b(?:" + "|".join(WORDS) + r"|(?:AMEDIA_)?ERROR_[A-Z_]+)\b")

NUMBER = re.compile(r"\b(?P<value>0x[0-9A-Fa-f']+|0|[1-9][\d']*)(?P<rest>\.\d+F?|[uUlL]*)\b")
UNARY = {"!": re.compile(r"!(?=[\w(*])"), "++": re.compile(r"\+\+"), "--": re.compile(r"--")}
UNARY_BECOMES = {"!": "", "++": "--", "--": "++"}

CONDITION = re.compile(r"\b(?:if|while) \(")
CHOICE = re.compile(r"(?<=\s)\?(?=\s)")
RETURN = re.compile(r"\breturn\s+([^;]+);")
# What `{}` would mean anyway.
EMPTY_RESULTS = {"0", "false", "nullptr", "std::nullopt", "{}"}
STATUS = re.compile(r"(?:AMEDIA_)?(?:OK|ERROR_[A-Z_]+)")
# A change of its operator negates it.
HAS_OWN_NEGATION = re.compile(r"![^&|?]+|[^&|?]*\s(?:[<>]=?|[!=]=)\s[^&|?]*")

LABEL = re.compile(r"\s*(?:case [\w:]+|default|public|private)\s*:(?!:)\s*")
NO_EXPRESSION = re.compile(
    r"(?:return\s|using|namespace|typedef|struct|class|enum|static|const|constexpr|inline|extern"
    r"|template|explicit|friend|union|virtual)\b"
    r"|[\w:]+(?:<.*>)?[*&]*\s+[*&]*\w+",
    re.DOTALL,
)


@dataclasses.dataclass(frozen=True)
class Change:
    """Replaces the text from `begin` to `end` by `text`."""

    kind: str
    begin: int
    end: int
    text: str

    def apply(self, source):
        return source[: self.begin] + self.text + source[self.end :]

    def line(self, source):
        return source.count("\n", 0, self.begin) + 1

    def diff(self, source):
        """The lines that differ, as a diff shows them."""
        lines = difflib.ndiff(source.splitlines(), self.apply(source).splitlines())
        return "\n".join(line.rstrip() for line in lines if line[0] in "-+")


def masked(source):
    """The source with blanks for all that is never changed; places stay what they are."""

    def blank(found):
        text = found.group()
        return text if text[0].isdigit() else re.sub(r"[^\n]", " ", text)

    return SKIPPED.sub(blank, source)


def closing_of(text, opening):
    """The place of the bracket that closes the one at `opening`."""
    depth = 0
    for place in range(opening, len(text)):
        depth += (text[place] in "([{") - (text[place] in ")]}")
        if depth == 0:
            return place
    raise ValueError(f"Nothing closes the bracket at {opening}")


def operators(text):
    for found in BETWEEN_OPERANDS.finditer(text):
        for other in OPERATORS.get(found.group(), []):
            yield Change("operator", found.start(), found.end(), other)
    for sign, pattern in UNARY.items():
        for found in pattern.finditer(text):
            yield Change("operator", found.start(), found.end(), UNARY_BECOMES[sign])


def words(text):
    for found in WORD.finditer(text):
        kind = "status" if "_" in found.group() else "word"
        yield Change(kind, *found.span(), WORDS.get(found.group(), "AMEDIA_OK"))


def numbers(text):
    for found in NUMBER.finditer(text):
        value = int(found["value"].replace("'", ""), 0)
        for other in {value + 1, max(value - 1, 0)} - {value}:
            yield Change("number", *found.span(), f"{other}{found['rest']}")


def conditions(text):
    """Negates what decides: of `if`, `while`, and between two values."""
    for begin, end in places_of_conditions(text):
        condition = text[begin:end]
        if not HAS_OWN_NEGATION.fullmatch(condition):
            yield Change("condition", begin, end, f"!({condition})")


def places_of_conditions(text):
    for found in CONDITION.finditer(text):
        end = closing_of(text, found.end() - 1)
        # After a separate declaration.
        yield max(found.end(), text.rfind("; ", found.end(), end) + 2), end
    for found in CHOICE.finditer(text):
        end = len(text[: found.start()].rstrip())
        yield beginning_of_operand(text, end), end


def beginning_of_operand(text, end):
    """Returns where the condition before a `?` begins."""
    depth = 0
    for place in range(end - 1, -1, -1):
        depth += (text[place] in ")]}") - (text[place] in "([{")
        before = text[: place + 1]
        if depth < 0 or depth == 0 and re.search(r"(?:[,;:?]|[^=!<>]=|\breturn)\s$", before):
            return place + 1
    return 0


def results(text):
    for found in RETURN.finditer(text):
        if found[1] not in EMPTY_RESULTS and not STATUS.fullmatch(found[1]):
            yield Change("result", *found.span(1), "{}")


def statements(text):
    """Drops calls, assignments and jumps."""
    begin = depth = 0
    for place, sign in enumerate(text):
        depth += (sign in "([") - (sign in ")]")
        if depth > 0 or sign not in ";{}":
            continue
        if sign == ";":
            label = LABEL.match(text, begin, place)
            begin = label.end() if label else begin
            begin += len(text[begin:place]) - len(text[begin:place].lstrip())
            if begin < place and not NO_EXPRESSION.match(text, begin, place):
                yield Change("statement", begin, place, "")
        begin = place + 1


def changes_of(source):
    """All changes of a source, in the order of their places. Some do not compile."""
    text = masked(source)
    found = [
        change
        for maker in (operators, words, numbers, conditions, results, statements)
        for change in maker(text)
    ]
    return sorted(found, key=lambda change: (change.begin, change.end, change.kind, change.text))
