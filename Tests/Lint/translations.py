"""Checks the translations (*.ts): every text of the sources is there and translated, no placeholder is lost, and the
French has its no-break spaces. `cmake --build --preset dev --target update-translations` enters new texts."""

import re
import shutil
import subprocess
import tempfile
from collections import Counter
from pathlib import Path
from xml.etree import ElementTree

import tree

PLACEHOLDER = re.compile(r"%L?\d|%n")
NO_BREAK = "\u00a0\u202f"
# What must not stand in French, and what to write in its place.
FRENCH = (
    (re.compile(rf"(?<![{NO_BREAK}])[;:?!»](?=$|[\s{NO_BREAK})])|[^{NO_BREAK}]%(?![\dnL])"),
     "no no-break space before the punctuation"),
    (re.compile(rf"«(?![{NO_BREAK}])"), "no no-break space after the opening quotation mark"),
    (re.compile("'"), "a typewriter's apostrophe, not ’"),
    (re.compile('["“”]'), "quotation marks that are not « and »"),
    (re.compile(r"\.\.\."), "three full stops, not …"),
)


def messages(path):
    """The messages by context, source and comment; each is its element."""
    found = {}
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            found[context.findtext("name"), message.findtext("source"), message.findtext("comment")] = message
    return found


def french_faults(text):
    return [fault for pattern, fault in FRENCH if pattern.search(text)]


def check_message(source, message, is_french):
    translation = message.find("translation")
    if translation is None or translation.get("type"):
        state = "missing" if translation is None else translation.get("type")
        yield f"the translation is {state}"
        return
    plural = message.get("numerus") == "yes"
    for text in [form.text or "" for form in translation.iter("numerusform")] if plural else [translation.text or ""]:
        if not text.strip():
            yield "the translation is empty"
        expected, placed = (Counter(PLACEHOLDER.findall(words)) for words in (source, text))
        # A form of the plural may say its number in a word.
        if placed != expected and not (plural and expected - placed == Counter(["%n"])):
            yield f"“{text}” has other placeholders"
        if is_french:
            yield from (f"“{text}” has {fault}" for fault in french_faults(text))


def check_sources(path, known, options):
    """What lupdate would change."""
    with tempfile.TemporaryDirectory() as directory:
        copy = Path(directory) / path.name
        shutil.copyfile(options.root / path, copy)
        # As the target update-translations has it.
        result = subprocess.run([options.lupdate, "-silent", "-locations", "none", "-no-obsolete", "-extensions",
                                 "cpp,h,qml", str(options.root / "Sources"), "-ts", str(copy)],
                                capture_output=True, text=True, check=False)
        if result.returncode != 0:
            yield f"{path}:1: lupdate failed: {result.stderr.strip()}"
            return
        current = messages(copy)
    for context, source, _ in current.keys() - known.keys():
        yield f"{path}:1: {context}: “{source}” of the sources is not there; build the target update-translations"
    for context, source, _ in known.keys() - current.keys():
        yield f"{path}:1: {context}: “{source}” is in the sources no more; build the target update-translations"


def check(path, options):
    known = messages(options.root / path)
    for (context, source, _), message in known.items():
        for fault in check_message(source, message, path.stem.endswith("_fr")):
            yield f"{path}:1: {context}: “{source}”: {fault}"
    yield from check_sources(path, known, options)


def main():
    options = tree.arguments(__doc__, "lupdate")
    paths = [path for path in tree.files(options.root) if path.suffix == ".ts"]
    tree.finish([finding for path in paths for finding in check(path, options)], len(paths))


if __name__ == "__main__":
    main()
