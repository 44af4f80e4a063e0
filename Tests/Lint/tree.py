"""What the lint scripts share: the files of the tree, and the way findings are reported."""

import argparse
import os
import subprocess
import sys
from pathlib import Path

NOT_OURS = {"build", ".cache", ".git", "ThirdParty"}


def arguments(description, *names):
    """--root always, and --NAME for each of the names."""
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument("--root", type=lambda text: Path(text).resolve(), required=True)
    for name in names:
        parser.add_argument("--" + name, required=True)
    return parser.parse_args()


def files(root):
    """Our files of the tree relative to root, sorted: what git tracks or would track, or all if this is no clone."""
    if (root / ".git").exists():
        # A checkout that belongs to another user, as in a container, is read all the same.
        command = ["git", "-c", "safe.directory=*", "-C", str(root), "ls-files", "-z"]
        try:
            listed = subprocess.run(command + ["--cached", "--others", "--exclude-standard"],
                                    check=True, capture_output=True, text=True).stdout
            return sorted(Path(name) for name in set(listed.split("\0")) - {""}
                          if (root / name).is_file() and Path(name).parts[0] not in NOT_OURS)
        except FileNotFoundError:
            pass  # A machine without git: the walk below does.
    found = []
    for directory, subdirectories, names in os.walk(root):
        if Path(directory) == root:
            subdirectories[:] = [name for name in subdirectories if name not in NOT_OURS]
        found += [(Path(directory) / name).relative_to(root) for name in names]
    return sorted(found)


def is_source(path):
    return path.suffix in {".cpp", ".h"}


def under(path, directory):
    return path.is_relative_to(directory)


def finish(findings, checked):
    """Prints the findings and ends the program. Having looked at nothing is a failure too."""
    for finding in findings:
        print(finding)
    if not checked:
        print("Nothing was checked: a lint that looks at no file proves nothing.")
    print(f"{checked} checked, {len(findings)} findings")
    sys.exit(1 if findings or not checked else 0)
