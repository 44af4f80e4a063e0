"""Checks that every C++ file is built: one that no CMakeLists.txt names is a test that never runs."""

import json
from pathlib import Path

import tree


def main():
    options = tree.arguments(__doc__, "compile-commands")
    built = {Path(entry["file"]).resolve() for entry in json.loads(Path(options.compile_commands).read_text())}
    paths = [path for path in tree.files(options.root) if path.suffix == ".cpp"]
    tree.finish([f"{path}: no CMakeLists.txt names this file" for path in paths
                 if (options.root / path).resolve() not in built], len(paths))


if __name__ == "__main__":
    main()
