"""Writes the types of the extension module, as its docstrings tell them: stubs.py FOLDER-OF-THE-PACKAGE FILE

The first line of a docstring is the signature that pybind11 writes; a property has it in its getter.
"""
import pathlib
import re
import sys

SIGNATURE = re.compile(r"(\w+)?\((.*)\) -> (.*)")


ANY_PARAMETERS = {"tuple": "[typing.Any, ...]", "dict": "[typing.Any, typing.Any]", "list": "[typing.Any]",
                  "os.PathLike": "[typing.Any]"}


def type_text(text):
    text = re.sub(r"(?<![\w.])(?:kxmath\._kxmath|typing)\.", "", text)
    text = re.sub(r"numpy\.ndarray\[numpy\.(\w+)\]", r"numpy.typing.NDArray[numpy.\1]", text)
    text = re.sub(r"List\[(\w+)\[\d+\]\]", r"collections.abc.Sequence[\1]", text)
    text = re.sub(r"Optional\[((?:[^][]|\[[^][]*\])*)\]", r"\1 | None", text)
    for name in ("List", "Dict", "Tuple"):
        text = re.sub(rf"\b{name}\b", name.lower(), text)
    text = re.sub(r"\b(os\.PathLike|tuple|dict|list)\b(?!\[)", lambda found: found[1] + ANY_PARAMETERS[found[1]], text)
    return text.replace("numpy.ndarray", "numpy.typing.NDArray[typing.Any]") if "NDArray" not in text else text


def result_text(text):
    return type_text(text).replace("str | bytes | os.PathLike[typing.Any]", "str") # paths come as str


def arguments_text(text):
    text = re.sub(r" = (<[^>]*>|[^,()]+|\([^()]*\))(?=,|$)", " = ...", text)
    text = re.sub(r"\barg(\d)\b", r"__arg\1", text)
    text = type_text(text).replace("list[", "collections.abc.Sequence[").replace("dict[", "collections.abc.Mapping[")
    text = text.replace("*args", "*args: typing.Any").replace("**kwargs", "**kwargs: typing.Any")
    return re.sub(r"^self: [^,]*", "self", text)


def function(name, doc, indent, is_static=False):
    found = SIGNATURE.match((doc or "").partition("\n")[0])
    arguments, result = arguments_text(found[2] if found else "*args, **kwargs"), result_text(found[3] if found else "")
    if name == "__init__":
        result, arguments = "None", arguments if arguments.startswith("self") else "self, " + arguments
    if name == "__eq__":
        arguments, result = "self, other: object, /", "bool"
    if name == "__array__": # what NumPy's types ask for
        arguments, result = "self, dtype: typing.Any = ..., copy: typing.Any = ...", "numpy.typing.NDArray[typing.Any]"
    if result in ("object", ""):
        result = "typing.Any"
    decorator = f"{indent}@staticmethod\n" if is_static else ""
    if not is_static and name != "__init__" and indent and not arguments.startswith("self"):
        arguments = re.sub(r"^[^,]*", "self", arguments)
    return f"{decorator}{indent}def {name}({arguments}) -> {result}: ...\n"


def property_text(name, item):
    result = result_text(SIGNATURE.match(item.fget.__doc__)[3])
    text = f"    @property\n    def {name}(self) -> {result}: ...\n"
    if item.fset is not None:
        value = type_text(re.search(r"arg1: (.*)\) -> ", item.fset.__doc__)[1])
        text += f"    @{name}.setter\n    def {name}(self, value: {value}) -> None: ...\n"
    return text


def class_text(name, item):
    text = f"class {name}(metaclass=type):\n" # it is one of pybind11, which has no name to import
    for member, value in sorted(vars(item).items()):
        if isinstance(value, property):
            text += property_text(member, value)
        elif member == "__hash__":
            text += "    __hash__: typing.ClassVar[None] # type: ignore[assignment]\n"
        elif isinstance(value, staticmethod):
            text += function(member, value.__func__.__doc__, "    ", True)
        elif callable(value) and member not in ("__new__", "__setstate__", "_pybind11_conduit_v1_"):
            text += function(member, value.__doc__, "    ")
    return text if text.count("\n") > 1 else text + "    ...\n"


def module_text(module):
    text = "# Written by stubs.py.\nimport collections.abc\nimport os\nimport typing\n\nimport numpy\nimport numpy.typing\n"
    text += "\nimport kxmath._values\n"
    for name, item in sorted(vars(module).items()):
        if isinstance(item, type):
            text += "\n" + class_text(name, item)
        elif callable(item):
            text += "\n" + function(name, item.__doc__, "")
        elif not name.startswith("__"):
            text += f"\n{name}: {type(item).__name__}\n"
    return text


def main():
    package, file = sys.argv[1:]
    sys.path.insert(0, str(pathlib.Path(package).parent))
    from kxmath import _kxmath
    pathlib.Path(file).write_text(module_text(_kxmath), encoding="utf-8")


if __name__ == "__main__":
    main()
