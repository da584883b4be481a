"""The public functions of the libraries and what their headers say about them.

    interface.py INCLUDE-FOLDER --list             prints the names
    interface.py INCLUDE-FOLDER --source FILE      writes the C++ table of names and texts for the docstrings

A name is that of the class and the function, "KxProfile::removeNoise"; the clouds are KxPointCloudXY, KxPointCloudXYZ
and KxPointCloudXYZRGB. Overloads share a name, and their texts follow one another. A member without a text of its own
in one cloud has that of the cloud before.
"""
import argparse
import pathlib
import re

# Results are read as JSON, so that what they hold is not listed: only what can be called.
OPENING = re.compile(r"^\s*(?:template <.*>\s*)?(class|struct|enum(?: class)?)\s+(?:KXMATH_EXPORT |KXINSPECT_EXPORT )?"
                     r"(\w+)(?:<(?:Kx)?Point(\w+)>|<T>)?[^;()]*\{\s*$")
FUNCTION = re.compile(r"(?:^|[\s*&])(~?\w+|operator\S+)\s*\(")


class Header:
    """Walks through one header line by line."""

    def __init__(self, text, found):
        self.found = found
        self.scopes = [] # (depth of the brace, name of the class or None, public)
        self.depth = 0
        self.comment = []
        self.statement = ""
        for line in text.splitlines():
            self.line(line)

    def line(self, line):
        stripped = line.strip()
        if stripped.startswith("///") and not self.statement:
            if not re.match(r"/// @[{}]", stripped):
                self.comment.append(stripped[3:].removeprefix(" "))
            return
        code = re.sub(r"//.*", "", line).rstrip()
        if not code.strip():
            if not stripped:
                self.comment = []
            return
        opening = OPENING.match(code)
        if opening and not self.statement:
            kind, name, points = opening.groups()
            public = kind != "class"
            self.scopes.append([self.depth, None if kind.startswith("enum") else name.replace("_", "") and
                                name + (points.removeprefix("Kx") if points else ""), public])
        elif re.fullmatch(r"\s*(public|protected|private):", code):
            self.scopes[-1][2] = code.strip() == "public:"
        elif self.statement or not code.lstrip().startswith(("#", "template <>", "template <typename", "namespace", "}", "{", "extern")):
            self.code(code)
        self.depth += code.count("{") - code.count("}")
        while self.scopes and self.depth <= self.scopes[-1][0]:
            self.scopes.pop()
            self.comment = []
        if opening:
            self.comment = []

    def code(self, code):
        """Collects a declaration up to its end; bodies behind it do not count."""
        if self.scopes and (self.scopes[-1][1] is None or self.depth > self.scopes[-1][0] + 1):
            return # an enumerator, the body of a function, or a value of several lines
        self.statement += " " + code.strip()
        if not re.search(r"[;{}]\s*$", self.statement):
            return
        statement, self.statement = self.statement, ""
        comment, self.comment = "\n".join(self.comment).strip(), []
        if self.scopes and not (self.scopes[-1][2] and self.scopes[-1][1]):
            return
        declared = re.split(r"[={;]|\boperator=", statement.split("(")[0])
        function = FUNCTION.search(statement)
        if function is None or (len(declared) > 1 and "operator" not in statement) or "static_assert" in statement:
            return
        name = function.group(1)
        if name in ("if", "return", "while", "for", "Q_DECLARE_TYPEINFO"):
            return
        scope = self.scopes[-1][1] + "::" if self.scopes else ""
        texts = self.found.setdefault(scope + name, [])
        if comment and comment not in texts:
            texts.append(comment)


def in_python(text):
    """Errors of the library are those of Python: kx.FileError and the others that a kx.Error may be."""
    text = re.sub(r"\b[Tt]hrows (an|the)(\s+)Error\b", lambda found: f"Raises {found[1].replace('an', 'a')}{found[2]}kx.Error", text)
    text = re.sub(r"\ban(\s+)Error is thrown\b", r"a\1kx.Error is raised", text)
    return re.sub(r"\bThrows\b", "Raises", text)


def functions(include):
    """The texts of each function by its name, in the order of the headers."""
    found = {}
    for header in sorted(pathlib.Path(include).glob("Kx*/*.h")):
        Header(header.read_text(encoding="utf-8"), found)
    for name, texts in found.items():
        cloud, _, member = name.partition("::")
        if not texts and cloud.startswith("KxPointCloudXYZ"):
            for other in ("KxPointCloudXYZ", "KxPointCloudXY"):
                texts += found.get(f"{other}::{member}", []) if not texts else []
    return found


def is_value_machinery(name):
    """Constructors, destructors and operators, which values of Python have in their own way."""
    scope, _, member = name.rpartition("::")
    own = re.sub(r"XY(Z(RGB)?)?$", "", scope)
    return member.startswith(("~", "operator")) or (scope and member in (scope, own))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("include")
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--source")
    options = parser.parse_args()
    found = functions(options.include)
    if options.list:
        print("\n".join(name for name in found if not is_value_machinery(name)))
    if options.source:
        rows = "".join(f'    {{"{name}", R"~~({in_python(chr(10).join(texts))})~~"}},\n'
                       for name, texts in sorted(found.items()))
        text = ('// Written by interface.py.\n#include "headerTexts.h"\n\nnamespace kxpython {\n\n'
                f"const std::array<HeaderText, {len(found)}> kTable = {{{{\n{rows}}}}};\n\n"
                "std::span<const HeaderText> headerTexts() {\n    return kTable;\n}\n\n} // namespace kxpython\n")
        pathlib.Path(options.source).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
