"""Checks that every C++ file is as clang-format writes it. `clang-format -i FILE` mends it."""

import subprocess

import tree


def main():
    options = tree.arguments(__doc__, "clang-format")
    paths = [path for path in tree.files(options.root) if tree.is_source(path)]
    findings = []
    for path in paths:
        result = subprocess.run([options.clang_format, "--dry-run", "-Werror", str(path)], cwd=options.root,
                                capture_output=True, text=True, check=False)
        if result.returncode != 0:
            findings.append(result.stderr.strip())
    tree.finish(findings, len(paths))


if __name__ == "__main__":
    main()
