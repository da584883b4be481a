"""The versions that the pages name must be those of the build: checkVersion.py SOURCE_FOLDER"""
import pathlib
import re
import sys


def main():
    folder = pathlib.Path(sys.argv[1])

    def read(name):
        return (folder / name).read_text(encoding="utf-8")

    version = re.search(r"project\(KxMath VERSION ([\d.]+)", read("CMakeLists.txt"))[1]
    inspect = re.search(r"\bVERSION (\d[\d.]+)", read("inspect/CMakeLists.txt"))[1]
    faults = []
    for page, text in (("CITATION.cff", f"\nversion: {version}\n"), ("docs/abi.md", f"`libKxMath.so.{version}`"),
                       ("docs/abi.md", f"`libKxMath.so.{version.split('.')[0]}`"),
                       ("docs/abi.md", f"`libKxInspect.so.{inspect}`"), ("NEWS.md", f"\n## {version}\n")):
        if text not in read(page):
            faults.append(f"{page}: does not name {text.strip()}")
    print("\n".join(faults))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
