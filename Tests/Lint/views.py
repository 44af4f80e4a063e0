"""Checks every view (QML file): as qmlformat writes it, and without a finding of qmllint. `qmlformat -i FILE` mends the
form."""

import re
import subprocess
import tempfile
from pathlib import Path

import tree

# Off: a delegate may use the names of the view it stands in, and a control's own parts may have names.
LEVELS = ["--unqualified", "disable", "--deferred-property-id", "disable"]


def make_module(views, root, directory):
    """The views side by side with the list of types that the build makes for them: what qmllint looks names up in."""
    module = Path(directory) / "Corvane"
    module.mkdir()
    lines = ["module Corvane"]
    for view in views:
        text = (root / view).read_text(encoding="utf-8")
        (module / view.name).write_text(text, encoding="utf-8")
        singleton = "singleton " if re.search(r"^pragma Singleton$", text, re.MULTILINE) else ""
        lines.append(f"{singleton}{view.stem} 1.0 {view.name}")
    (module / "qmldir").write_text("\n".join(lines) + "\n", encoding="utf-8")
    return module


def lint(options, views):
    by_name = {view.name: view for view in views}
    with tempfile.TemporaryDirectory() as directory:
        module = make_module(views, options.root, directory)
        result = subprocess.run([options.qmllint, *LEVELS, "-I", directory, *by_name], cwd=module, capture_output=True,
                                text=True, check=False)
    found = re.findall(r"^(?:Warning|Error): (\w+\.qml):(\d+):\d+: (.*)$", result.stderr + result.stdout, re.MULTILINE)
    findings = [f"{by_name[name]}:{line}: {text}" for name, line, text in found]
    if result.returncode != 0 and not findings:
        findings = [result.stderr.strip() or "qmllint failed"]
    return findings


def check_form(options, views):
    findings = []
    for view in views:
        result = subprocess.run([options.qmlformat, str(view)], cwd=options.root, capture_output=True, text=True,
                                check=False)
        if result.returncode != 0:
            findings.append(f"{view}:1: qmlformat cannot read it: {result.stderr.strip()}")
        elif result.stdout != (options.root / view).read_text(encoding="utf-8"):
            findings.append(f"{view}:1: mend it with qmlformat -i {view}")
    return findings


def main():
    options = tree.arguments(__doc__, "qmllint", "qmlformat")
    views = [path for path in tree.files(options.root) if path.suffix == ".qml"]
    findings = lint(options, views) + check_form(options, views) if views else []
    tree.finish(findings, len(views))


if __name__ == "__main__":
    main()
