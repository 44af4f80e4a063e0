"""Checks that every C++ file is as clang-format writes it. `clang-format -i FILE` mends it."""

import re
import subprocess

import tree


def main():
    options = tree.arguments(__doc__, "clang-format")
    paths = [path for path in tree.files(options.root) if tree.is_source(path)]
    result = subprocess.run([options.clang_format, "--dry-run", "-Werror", *map(str, paths)], cwd=options.root,
                            capture_output=True, text=True, check=False)
    # One line a file will do: the tool mends them all at once.
    first = dict(reversed(re.findall(r"^(\S+?):(\d+):\d+: error: ", result.stderr, re.MULTILINE)))
    findings = [f"{path}:{line}: mend it with clang-format -i {path}" for path, line in sorted(first.items())]
    if result.returncode != 0 and not findings:
        findings = [result.stderr.strip() or "clang-format failed"]
    tree.finish(findings, len(paths))


if __name__ == "__main__":
    main()
