"""Makes the small faults that a C++ source allows. The sources are formatted by clang-format, so that an operator
between blanks is a binary one, and a line that begins with a name and goes on with a bracket, a member or an
assignment is a statement."""

import re
from dataclasses import dataclass

EXCHANGED = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"], "<<": [">>"],
    ">>": ["<<"], "&": ["|"], "|": ["&"], "^": ["|"], "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="]}

NUMBER = r"\b\d[\w']*(?:\.\d+)?\b"
TEXT = re.compile(
    rf"""//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*|R"(\w*)\(.*?\)\1"
    |"(?:\\.|[^"\\\n])*"|{NUMBER}|'(?:\\.|[^'\\\n])+'""", re.S | re.M | re.X)
WITHOUT_FAULTS = re.compile(r"\b(?:static_assert|using|namespace)\b[^;{]*|\btemplate\s*<[^>]*>")
OPERATOR = re.compile(r"(?<=\s)(?:" + "|".join(sorted(map(re.escape, EXCHANGED), key=len, reverse=True)) + r")(?=\s)")
CONDITION = re.compile(r"\b(if|while) \(")
STATEMENT = re.compile(
    r"(?<=[;{}:])\s*\n[ \t]+((?:break|continue|return);|"
    r"(?!(?:return|case|default|public|private|protected|delete|throw)\b)"
    r"(?:\+\+|--|\*)?[A-Za-z_][\w:]*(?=[.(\[;]|->|\+\+|--| [-+*/|&^%]?= |<[\w:, ]+>\())")
ENUMERATION = re.compile(r"\benum(?: class)? (\w+)[^{;]*\{([^}]*)\}")


@dataclass(frozen=True)
class Fault:
    file: str
    line: int
    kind: str
    begin: int
    end: int
    replacement: str
    before: str  # the lines that it changes, without their indentation
    after: str

    def apply(self, text):
        return text[:self.begin] + self.replacement + text[self.end:]

    @property
    def key(self):
        return self.file, self.before, self.after


def code_only(text):
    """The text with blanks in place of comments, preprocessor lines and what stands in quotation marks."""
    def hide(match):
        found = match[0]
        if found[0].isdigit():
            return found
        blanks = re.sub(r"[^\n]", " ", found)
        return found[0] + blanks[1:-1] + found[-1] if found[0] in "\"'" else blanks
    code = TEXT.sub(hide, text)
    return WITHOUT_FAULTS.sub(lambda match: re.sub(r"[^\n]", " ", match[0]), code)


def enumerations(texts):
    """For each enumerator, written with its enumeration's name, the next one."""
    following = {}
    for text in texts:
        for name, body in ENUMERATION.findall(code_only(text)):
            values = re.findall(r"(?:^|,)\s*(\w+)", body)
            following.update({f"{name}::{a}": f"{name}::{b}" for a, b in zip(values, values[1:] + values[:1]) if a != b})
    return following


def end_of(code, position, ends):
    """Where the first of these characters stands from here on outside brackets; -1 where brackets close before."""
    depth = 0
    for index in range(position, len(code)):
        if depth == 0 and code[index] in ends:
            return index
        depth += (code[index] in "([{") - (code[index] in ")]}")
        if depth < 0:
            return -1
    return -1


def next_number(number):
    digits, suffix = re.fullmatch(r"(0[xX][\da-fA-F']+|[\d'.]+)(\w*)", number).groups()
    digits = digits.replace("'", "")
    if digits[:2] in ("0x", "0X"):
        return f"0x{int(digits, 16) + 1:0{len(digits) - 2}X}" + suffix
    return (str(float(digits) + 1) if "." in digits else str(int(digits) + 1)) + suffix


def changes(text, following):
    """All faults as kind, begin, end, replacement."""
    code = code_only(text)
    for match in OPERATOR.finditer(code):
        if match[0] == "+" and {code[match.start() - 2], code[match.end() + 1]} & {'"', "'"}:
            continue  # texts cannot be subtracted
        for other in EXCHANGED[match[0]]:
            yield "operator", match.start(), match.end(), other
    for match in re.finditer(r"(?<![\w)\]!])!(?=[\w(])", code):
        yield "operator", match.start(), match.end(), ""
    for match in re.finditer(r"\+\+|--", code):
        yield "operator", match.start(), match.end(), "--" if match[0] == "++" else "++"
    for match in re.finditer(NUMBER, code):
        yield "constant", match.start(), match.end(), next_number(match[0])
    for match in re.finditer(r"\b(?:true|false)\b", code):
        yield "constant", match.start(), match.end(), "false" if match[0] == "true" else "true"
    for match in re.finditer(r"\b\w+::\w+\b", code):
        if match[0] in following:
            yield "constant", match.start(), match.end(), following[match[0]]
    for match in TEXT.finditer(text):  # codes that are written as texts: "9600", 'N'
        if code[match.start()] not in "\"'":
            continue
        if re.fullmatch(r'"\d+"', match[0]):
            yield "constant", match.start() + 1, match.end() - 1, str(int(match[0][1:-1]) + 1)
        elif re.fullmatch(r"'[A-Za-z0-9]'", match[0]):
            yield "constant", match.start() + 1, match.end() - 1, chr(ord(match[0][1]) + 1)
    for match in CONDITION.finditer(code):
        end = end_of(code, match.end(), ")")
        begin = max(code.rfind("; ", match.end(), end) + 2, match.end())
        condition = text[begin:end]
        if end < 0 or " = " in condition or condition in ("true", "false"):
            continue
        yield "condition", begin, end, f"!({condition})"
        yield "condition", begin, end, "false"
        if match[1] == "if":
            yield "condition", begin, end, "true"
    for match in STATEMENT.finditer(code):
        end = end_of(code, match.start(1), ";")
        if end > 0:
            yield "statement", match.start(1), end, ""


def faults_in(file, text, following):
    """For each line the faults that begin in it."""
    found = {}
    for kind, begin, end, replacement in changes(text, following):
        first, last = text.rfind("\n", 0, begin) + 1, text.find("\n", end)
        line = text.count("\n", 0, begin) + 1
        plain = lambda lines: " ".join(lines.split())
        before = plain(text[first:last])
        after = plain(text[first:begin] + replacement + text[end:last])
        found.setdefault(line, []).append(Fault(file, line, kind, begin, end, replacement, before, after))
    return list(found.values())


def code_lines(text):
    return sum(1 for line in text.splitlines() if not re.match(r"\s*(//.*)?$", line))
