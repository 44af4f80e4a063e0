"""Checks the symbols of the window: what Qt's renderer does not know it skips in silence, and the symbol looks broken."""

from xml.etree import ElementTree

import tree

ICONS = "Sources/CorvaneApp/Views/Icons"
KNOWN = {"{http://www.w3.org/2000/svg}" + name for name in ("svg", "path", "circle", "rect")}


def check(root, path):
    try:
        symbol = ElementTree.parse(root / path).getroot()
    except ElementTree.ParseError as error:
        yield f"{path}: is not XML: {error}"
        return
    if symbol.get("viewBox") != "0 0 24 24":
        yield f"{path}: the view box is not 0 0 24 24"
    for element in symbol.iter():
        if element.tag not in KNOWN:
            yield f"{path}: <{element.tag.rpartition('}')[2]}> is not among the plain shapes of a symbol"
        # The window tints by the alpha channel alone: a hole painted white would be filled.
        for paint in {element.get("fill", "none"), element.get("stroke", "none")} - {"none", "#000"}:
            yield f"{path}: {paint} is neither #000 nor none"


def main():
    options = tree.arguments(__doc__)
    paths = [path for path in tree.files(options.root) if tree.under(path, ICONS) and path.suffix == ".svg"]
    tree.finish([finding for path in paths for finding in check(options.root, path)], len(paths))


if __name__ == "__main__":
    main()
