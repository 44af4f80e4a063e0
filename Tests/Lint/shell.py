"""Checks the shell scripts: those named *.sh, and those whose first line says so."""

import subprocess

import tree


def is_script(path):
    if path.suffix == ".sh":
        return True
    with path.open("rb") as file:
        first = file.readline(128)
    return first.startswith(b"#!") and (b"bash" in first or first.rstrip().endswith(b"/sh"))


def main():
    options = tree.arguments(__doc__, "shellcheck")
    paths = [path for path in tree.files(options.root) if is_script(options.root / path)]
    findings = []
    for path in paths:
        for command in (["bash", "-n"], [options.shellcheck, "-x", "-P", "SCRIPTDIR", "-f", "gcc"]):
            result = subprocess.run([*command, str(path)], cwd=options.root, capture_output=True, text=True,
                                    check=False)
            if result.returncode != 0:
                findings.append((result.stdout + result.stderr).strip())
    tree.finish(findings, len(paths))


if __name__ == "__main__":
    main()
