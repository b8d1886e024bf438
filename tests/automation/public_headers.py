# Reads the public members of the classes in include/pelm: enough C++ for our headers, and an error
# for anything else, so that nothing is passed over in silence.
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|#[^\n]*|"(?:\\.|[^"\\])*"|[A-Za-z_]\w*|-?\d+|::|&&|\s+|.', re.DOTALL)
OPENING = {"(": ")", "{": "}", "<": ">", "[": "]"}


class Parameter:
    def __init__(self, type_, name, default):
        self.type, self.name, self.default = type_, name, default  # default: None, or its text

    def __repr__(self):
        return f"{self.type} {self.name}" + (f" = {self.default}" if self.default is not None else "")


class Member:
    """A field (parameters None) or a function."""

    def __init__(self, name, type_, parameters):
        self.name, self.type, self.parameters = name, type_, parameters


class Class:
    def __init__(self, name, base, members):
        self.name, self.base, self.members = name, base, members


def tokens_of(text):
    return [t for t in TOKEN.findall(text) if not t.isspace() and not t.startswith(("//", "/*", "#"))]


def balanced(tokens, start):
    """The index behind the bracket that closes the one at `start`."""
    closing, depth = OPENING[tokens[start]], 0
    for i in range(start, len(tokens)):
        depth += (tokens[i] == tokens[start]) - (tokens[i] == closing)
        if depth == 0:
            return i + 1
    raise ValueError(f"nothing closes {tokens[start]}")


def split_at(tokens, separator):
    """The pieces between separators that stand outside of every bracket."""
    pieces, depth, piece = [], 0, []
    for token in tokens:
        depth += (token in OPENING) - (token in OPENING.values())
        if token == separator and depth == 0:
            pieces.append(piece)
            piece = []
        else:
            piece.append(token)
    return pieces + [piece] if piece or pieces else []


def written(tokens):
    """Tokens as a text of one look: blanks between words alone."""
    text = ""
    for token in tokens:
        text += (" " if text and re.match(r"\w", token) and re.search(r"\w$", text) else "") + token
    return text


def parameter(tokens):
    halves = split_at(tokens, "=")
    if not re.fullmatch(r"[A-Za-z_]\w*", halves[0][-1]) or len(halves[0]) < 2:
        raise ValueError(f"a parameter without a name: {written(tokens)}")
    return Parameter(written(halves[0][:-1]), halves[0][-1],
                     written(halves[1]) if len(halves) > 1 else None)


def member(tokens, class_name):
    """A declaration without its body; None for what no caller calls by name."""
    while tokens[:2] == ["[", "["] or tokens[0] in ("virtual", "explicit", "static"):
        tokens = tokens[balanced(tokens, 0):] if tokens[0] == "[" else tokens[1:]
    if tokens[0] in ("friend", "using", "enum", "~", class_name) or "operator" in tokens:
        return None
    angle = 0
    for i, token in enumerate(tokens):
        angle += (token == "<") - (token == ">")
        if token == "(" and angle == 0:
            end = balanced(tokens, i)
            if any(t not in ("const", "noexcept", "override", "final", "=", "default", "0") for t in tokens[end:]):
                raise ValueError(f"what is {written(tokens)}?")
            parts = split_at(tokens[i + 1:end - 1], ",")
            return Member(tokens[i - 1], written(tokens[:i - 1]), [parameter(p) for p in parts])
    declared = split_at(tokens, "=")[0]
    if len(declared) < 2 or not re.fullmatch(r"[A-Za-z_]\w*", declared[-1]):
        raise ValueError(f"what is {written(tokens)}?")
    return Member(declared[-1], written(declared[:-1]), None)


def public_members(tokens, class_name, public):
    members, i, begin = [], 0, 0
    while i < len(tokens):
        if tokens[i] in ("public", "private", "protected") and tokens[i + 1:i + 2] == [":"]:
            public = tokens[i] == "public"
            begin = i = i + 2
        elif tokens[i] == "(":
            i = balanced(tokens, i)
        elif tokens[i] in ("{", ";"):
            declaration = tokens[begin:i]
            i = balanced(tokens, i) if tokens[i] == "{" else i + 1
            begin = i
            if declaration and public:
                found = member(declaration, class_name)
                members += [found] if found else []
        else:
            i += 1
    if tokens[begin:]:
        raise ValueError(f"{class_name} ends with {written(tokens[begin:])}")
    return members


def classes_in(text, wanted):
    """name -> Class, of those wanted that a header defines outside of others."""
    tokens, found, i = tokens_of(text), {}, 0
    while i < len(tokens):
        if tokens[i] in ("class", "struct") and tokens[i + 2:i + 3] in ([":"], ["{"]):
            name, open_at = tokens[i + 1], tokens.index("{", i)
            base = tokens[open_at - 1] if tokens[i + 2] == ":" else None
            end = balanced(tokens, open_at)
            if name in wanted:
                members = public_members(tokens[open_at + 1:end - 1], name, tokens[i] == "struct")
                found[name] = Class(name, base, members)
            i = end
        else:
            i += 1
    return found


def constants_in(text):
    """name -> number, of the constants and enumerators of a header."""
    tokens = tokens_of(text)
    return {tokens[i - 1]: int(tokens[i + 1]) for i, token in enumerate(tokens)
            if token == "=" and 0 < i < len(tokens) - 1 and re.fullmatch(r"-?\d+", tokens[i + 1])}


def read(path):
    return (ROOT / "include/pelm" / path).read_text(encoding="utf-8")


def headers():
    """path below include/pelm -> text."""
    folder = ROOT / "include/pelm"
    return {str(p.relative_to(folder)): p.read_text(encoding="utf-8") for p in sorted(folder.rglob("*.h"))}
