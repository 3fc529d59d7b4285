"""Lists the mutants of a C++ source: changes of one token that a compiler is likely to accept."""

import re
from typing import NamedTuple

TOKEN = re.compile(
    r"""(?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*)
      |(?P<string>(?:u8|[LuU])?"(?:\\.|[^"\\\n])*")
      |(?P<character>(?:u8|[LuU])?'(?:\\.|[^'\\\n])+')
      |(?P<number>\.?\d(?:'?[\w.]|[eEpP][+-])*)
      |(?P<name>[A-Za-z_]\w*)
      |(?P<operator><=>|<<=|>>=|->\*?|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|::|\.\.\.|.)""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

# Binary where the formatter puts spaces around them; otherwise they are templates, references or signs.
BINARY = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "^": "|", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "|=": "&=", "&=": "|=", "<<=": ">>=", ">>=": "<<=",
}  # fmt: skip
UNARY = {"++": "--", "--": "++", "!": ""}
NAMES = {"true": "false", "false": "true", "TRUE": "FALSE", "FALSE": "TRUE", "S_OK": "S_FALSE", "S_FALSE": "S_OK",
         "min": "max", "max": "min", "break": "continue", "continue": "break"}  # fmt: skip
DECLARATIONS = {"using", "namespace", "template", "class", "struct", "enum", "static_assert", "return", "throw",
                "delete", "if", "for", "while", "switch", "case", "goto", "else", "do"}  # fmt: skip


class Token(NamedTuple):
    kind: str
    text: str
    start: int
    end: int


class Mutant(NamedTuple):
    file: str
    start: int
    end: int
    text: str  # instead of source[start:end]

    def apply(self, source: str) -> str:
        return source[: self.start] + self.text + source[self.end :]


def tokens(source: str) -> list[Token]:
    return [
        Token(match.lastgroup, match.group(), match.start(), match.end())
        for match in TOKEN.finditer(source)
        if match.lastgroup != "skip"
    ]


def next_number(text: str) -> str | None:
    """The integer literal plus 1."""
    match = re.fullmatch(r"(0[xX][0-9A-Fa-f']+|[0-9']+)([uUlLzZ]*)", text)
    if not match:
        return None
    digits = match[1].replace("'", "")
    value = int(digits, 0 if digits[:2] in ("0x", "0X") else 10) + 1
    return (hex(value) if digits[:2] in ("0x", "0X") else str(value)) + match[2]


def next_character(text: str) -> str | None:
    match = re.fullmatch(r"(\w*)'(.)'", text)
    return f"{match[1]}'{'~' if match[2] in '&[' else chr(ord(match[2]) + 1)}'" if match else None


def other_string(text: str) -> str:
    """The literal without its first character, or with one if it is empty."""
    quote = text.index('"')
    content = text[quote + 1 : -1]
    shorter = re.sub(r"^(\\x[0-9A-Fa-f]+|\\[0-7]+|\\.|.)", "", content, flags=re.DOTALL)
    return f'{text[: quote + 1]}{shorter if content else "~"}"'


def replacement(source: str, token: Token) -> str | None:
    if token.kind == "number":
        return next_number(token.text)
    if token.kind == "character":
        return next_character(token.text)
    if token.kind == "string":
        return other_string(token.text)
    if token.kind == "name":
        return NAMES.get(token.text)
    spaced = source[token.start - 1].isspace() and source[token.end : token.end + 1].isspace()
    return BINARY.get(token.text) if spaced else UNARY.get(token.text)


def closing(items: list[Token], opening: int) -> int:
    """The index of the bracket that closes the one at the index."""
    depth = 0
    for index in range(opening, len(items)):
        if items[index].text in ("(", "[", "{"):
            depth += 1
        elif items[index].text in (")", "]", "}"):
            depth -= 1
            if depth == 0:
                return index
    return len(items) - 1


def arguments(items: list[Token], opening: int) -> list[tuple[int, int]]:
    """The source ranges of the arguments between the bracket at the index and its counterpart."""
    end = closing(items, opening)
    ranges, first, index = [], opening + 1, opening + 1
    while index <= end:
        if items[index].text in ("(", "[", "{") and index < end:
            index = closing(items, index)
        elif items[index].text == "," or index == end:
            if index > first:
                ranges.append((items[first].start, items[index - 1].end))
            first = index + 1
        index += 1
    return ranges


def swapped(file: str, source: str, items: list[Token], opening: int) -> Mutant | None:
    """The call or initialiser with its first two arguments in the other order."""
    ranges = arguments(items, opening)
    if len(ranges) < 2:
        return None
    (first, first_end), (second, second_end) = ranges[:2]
    one, two = source[first:first_end], source[second:second_end]
    if one == two:
        return None
    return Mutant(file, first, second_end, two + source[first_end:second] + one)


def dropped(file: str, items: list[Token], start: int) -> Mutant | None:
    """The statement at the index removed, if it is a call whose result is not used."""
    end = start
    while end < len(items) and items[end].text != ";":
        if items[end].text in ("=", "{", "}", "+=", "-=", "<<", "|=", "&=") or items[end].text in DECLARATIONS:
            return None
        if items[end].text == "(":
            if items[end - 1].kind != "name" and items[end - 1].text not in (">", ")", "*"):
                return None
            end = closing(items, end)
        elif items[end].kind == "name" and end > start and items[end - 1].kind == "name":
            return None  # a declaration
        end += 1
    if end - start < 3 or end >= len(items) or items[end - 1].text != ")":
        return None
    return Mutant(file, items[start].start, items[end - 1].end, "")


def mutants(file: str, source: str) -> list[Mutant]:
    items = tokens(source)
    found = []
    index = 0
    while index < len(items):
        token = items[index]
        if token.text == "static_assert":
            index = closing(items, index + 1)
            continue
        text = replacement(source, token)
        if text is not None and text != token.text:
            found.append(Mutant(file, token.start, token.end, text))
        if token.text == "(" and index and items[index - 1].kind == "name":
            found.append(swapped(file, source, items, index))
        if index and items[index - 1].text in (";", "{", "}", ")") and token.kind == "name":
            found.append(dropped(file, items, index))
        index += 1
    return [mutant for mutant in found if mutant]
