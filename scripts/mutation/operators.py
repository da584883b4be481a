"""Faults as a maintainer makes them: changes of one place in one line, drawn at random from the sources."""
import collections
import pathlib
import re

OPERAND = r"[A-Za-z_][\w.\[\]]*(?:\(\))?"
ARGUMENT = r"-?[\w.]+(?:(?:::|->)\w+)*(?:\[\w+\])?(?:\(\))?"
NUMBER = re.compile(r"(?<![\w.])(\d+\.\d+(?:e-?\d+)?f?|\d+)(?![\w.])")


def swapped(first, second):
    """Swaps two texts between spaces; templates have no spaces around them."""
    return [(re.compile(rf"(?<= ){re.escape(a)}(?= )"), lambda m, b=b: b)
            for a, b in ((first, second), (second, first))]


def swapped_words(*pairs):
    """Swaps two words, also as part of a name: kBlue, maxY, fromX."""
    changes = []
    for pair in pairs:
        for a, b in (pair, pair[::-1]):
            changes.append((re.compile(rf"(?<![A-Za-z]){a}(?![a-z])"), lambda m, b=b: b))
            if a[0].islower() and len(a) > 1:
                capital, other = a[0].upper() + a[1:], b[0].upper() + b[1:]
                changes.append((re.compile(rf"(?<=[a-z]){capital}(?![a-z])"), lambda m, other=other: other))
    return changes


def other_number(match):
    text = match.group(1)
    if "." not in text:
        return str(int(text) + 1)
    suffix = "f" if text.endswith("f") else ""
    value = float(text.rstrip("f"))
    return f"{value * 1.25 if value else 0.25!r}{suffix}"


FAULTS = {
    "flipped comparison": swapped("<", "<=") + swapped(">", ">=") + swapped("==", "!="),
    "turned comparison": swapped("<", ">") + swapped("<=", ">="),
    "other connective": swapped("&&", "||"),
    "other operator": swapped("+", "-") + swapped("*", "/") + swapped("+=", "-="),
    "swapped operands": [(re.compile(rf"(?<![\w.\])])({OPERAND}) (-|/) ({OPERAND})(?![\w.(\[])"),
                          lambda m: f"{m[3]} {m[2]} {m[1]}")],
    "off by one": [(re.compile(r" [+-] 1(?![\w.])"), lambda m: ""), (re.compile(r"(?<== )0(?=;)"), lambda m: "1")],
    "dropped NaN test": [(re.compile(r"!(?:std::)?isnan\([^()]*\)"), lambda m: "true"),
                         (re.compile(r"(?<!!)(?:std::)isnan\([^()]*\)"), lambda m: "false"),
                         (re.compile(r"(?<!!)(?:std::)isfinite\([^()]*\)"), lambda m: "true")],
    "wrong constant": [(NUMBER, other_number)],
    "other bound": [(re.compile(r"std::min\("), lambda m: "std::max("), (re.compile(r"std::max\("), lambda m: "std::min(")],
    "swapped arguments": [(re.compile(rf"(?<=[(,{{] )({ARGUMENT}), ({ARGUMENT})(?=[,)}}])"), lambda m: f"{m[2]}, {m[1]}"),
                          (re.compile(rf"(?<!std::max\()(?<!std::min\()(?<=[({{])({ARGUMENT}), ({ARGUMENT})(?=[,)}}])"), lambda m: f"{m[2]}, {m[1]}")],
    "other side": swapped_words(("first", "second"), ("left", "right"), ("top", "bottom"), ("from", "to"),
                                ("min", "max"), ("begin", "end"), ("Wheel1", "Wheel2"), ("Rail1", "Rail2"),
                                ("front", "back"), ("lowest", "highest"), ("radius1", "radius2")),
    "other axis": swapped_words(("x", "y"), ("width", "height"), ("X", "Y"), ("rows", "columns"))
    + [(re.compile(r"(?<=\w[.>])z\b"), lambda m: "x")],
    "other index": [(re.compile(r"\[0\]"), lambda m: "[1]"), (re.compile(r"\[1\]"), lambda m: "[0]"),
                    (re.compile(r"\[(?:side|i|index|k)\]"), lambda m: "[0]")],
    "other colour": swapped_words(("Good", "Bad"), ("Plain", "Bad"), ("kBlue", "kOrange"), ("kGreen", "kOrange")),
    "negated": [(re.compile(r"(?<=\bif \()(?=[^!;=]*\) \{)([^;{]*)(?=\) \{)"), lambda m: f"!({m[1]})"),
                (re.compile(r"\bfalse\b"), lambda m: "true"), (re.compile(r"\btrue\b"), lambda m: "false"),
                (re.compile(r"\? ([^?:,]+) : ([^?:,;()]+)(?=[,;)])"), lambda m: f"? {m[2]} : {m[1]}"),
                (re.compile(r"\b(?:cos|sin)(?=\()"), lambda m: "sin" if m[0] == "cos" else "cos")],
    "dropped factor": [(re.compile(rf" [*/] {OPERAND}(?![\w.(\[:])"), lambda m: "")],
    "dropped statement": [(re.compile(r"^\s+[\w.\->:\[\]]+(?:\(.*\)|\+\+| [+\-*/|]?= .*);$"), lambda m: "")],
}
# Block sizes and thresholds for speed, on which no result depends, and the looks of a page.
NO_RESULT = re.compile(r"\bk(Block|BlockSize|Part|Unroll|FewRecords|ManyLevels|Worthwhile|Counted|Points|TanOf\w+) = "
                       r"|\bk(Min\w*|Max\w*|)(Width|Height) = |\bk(Pixels\w*|PageWidth|Letter|Row|Gap|Bar|Stops|Largest\w*Bytes) = |reserve\(")
NO_CODE = re.compile(r"^\s*(//|\*|#|template|static_assert|using |namespace|@|return;|break;|continue;)")


def code_of(line):
    """The line without its comment; text in quotes is blanked, so that positions stay."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'', lambda m: '"' + "_" * (len(m[0]) - 2) + '"', line)
    return line.split("//")[0].rstrip()


def compiled_lines(text):
    """The numbered lines without those for machines of the other byte order and raw strings."""
    foreign, is_raw = None, False
    for number, line in enumerate(text.splitlines()):
        indent = len(line) - len(line.lstrip())
        if is_raw or 'R"(' in line:
            is_raw = ')"' not in line
        elif "if constexpr (Q_BYTE_ORDER" in line:
            foreign = indent
        elif foreign is not None and line.strip().startswith("}") and indent <= foreign:
            foreign = None
        elif foreign is None and not NO_CODE.match(line) and not NO_RESULT.search(line):
            yield number, line


def all_faults(root, files):
    faults = {}
    for file in files:
        for number, line in compiled_lines((root / file).read_text()):
            code = code_of(line)
            for kind, changes in FAULTS.items():
                for pattern, change in changes:
                    for match in pattern.finditer(code):
                        text = line[:match.start()] + change(match) + line[match.end():]
                        if text != line and '_"' not in change(match):
                            faults.setdefault((file, number, text), {
                                "file": str(file), "line": number + 1, "kind": kind, "before": line.strip(),
                                "after": text.strip(), "text": text})
    return list(faults.values())


def area_of(file):
    """The folder of a subject: profile of src/, train of inspect/."""
    parts = pathlib.Path(file).parts
    depth = 3 if parts[0] == "tools" else 2
    return "/".join(parts[:depth] if len(parts) > depth else parts[:depth - 1])


def layer_of(file):
    return pathlib.Path(file).parts[0]


def pick(faults, chance):
    """All faults in a random order that takes turns between layers, then areas of a layer, then kinds."""
    layers = collections.defaultdict(lambda: collections.defaultdict(lambda: collections.defaultdict(list)))
    for fault in faults:
        layers[layer_of(fault["file"])][area_of(fault["file"])][fault["kind"]].append(fault)

    def shuffled(items):
        items = sorted(items.items())
        chance.shuffle(items)
        return [item for _, item in items]

    turns = [[(shuffled(kinds)) for kinds in shuffled(areas)] for areas in shuffled(layers)]
    for layer in turns:
        for kinds in layer:
            for group in kinds:
                chance.shuffle(group)
    order = []
    while turns:
        for layer in list(turns):
            kinds = layer.pop(0)
            group = kinds.pop(0)
            order.append(group.pop())
            if group:
                kinds.append(group)
            if kinds:
                layer.append(kinds)
            if not layer:
                turns.remove(layer)
    return order


def listed(root, path):
    """The faults of a list written by hand: what it changes, the file, the code before and after.

    @return the faults, and those whose code does not occur exactly once."""
    faults, stale = [], []
    for record in path.read_text().split("\n\n"):
        lines = [line for line in record.splitlines() if line and not line.startswith("//")]
        if not lines:
            continue
        meaning, file, before, after = lines
        text = (root / file).read_text() if (root / file).exists() else ""
        places = [i for i, line in enumerate(text.splitlines()) if before in line]
        if len(places) == 1 and text.count(before) == 1:
            line = text.splitlines()[places[0]]
            faults.append({"file": file, "line": places[0] + 1, "kind": meaning, "before": before, "after": after,
                           "text": line.replace(before, after)})
        else:
            stale.append(f"{file}: '{before}' occurs {text.count(before)} times")
    return faults, stale
