"""Checks what can be seen in a file by itself: unfinished work, length, paths of one machine."""

import re
from pathlib import Path

import tree

MAXIMUM_LINES = 400
# Split, so that this file does not find itself.
UNFINISHED = re.compile(r"\b(TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK)\b")


def is_text(content):
    return b"\0" not in content[:8192]


def check(root, path):
    content = (root / path).read_bytes()
    if not is_text(content):
        return
    text = content.decode("utf-8", errors="replace")
    lines = text.splitlines()
    here = re.compile(r"(?<![\w./-])" + re.escape(str(root)) + r"(?![\w-])")
    for number, line in enumerate(lines, 1):
        if UNFINISHED.search(line):
            yield f"{path}:{number}: unfinished work is finished or dropped, not noted in the code"
        # A checkout in / or in a directory such as /src has a path that honest text may contain.
        if len(root.parts) > 2 and here.search(line):
            yield f"{path}:{number}: holds the path of this checkout"
    if "\ufffd" in text:
        yield f"{path}: is not UTF-8"
    if text and not text.endswith("\n"):
        yield f"{path}: the last line has no end"
    if (tree.is_source(path) or path.suffix in {".py", ".qml"}) and len(lines) > MAXIMUM_LINES:
        yield f"{path}: {len(lines)} lines; a file with more than {MAXIMUM_LINES} has found a second subject"


def main():
    options = tree.arguments(__doc__)
    # Samples may be as broken as the reader that they are for must bear.
    paths = [path for path in tree.files(options.root) if not tree.under(path, "Tests/Data")]
    tree.finish([finding for path in paths for finding in check(options.root, path)], len(paths))


if __name__ == "__main__":
    main()
