"""Runs clang-tidy over what is built from Sources/, several files at once.

A file that was clean is not looked at again until something that clang-tidy reads for it changes: the file, a header,
the command that compiles it, .clang-tidy or clang-tidy itself. What it reads is what the build noted as dependencies.
"""

import concurrent.futures
import functools
import hashlib
import json
import os
import re
import subprocess
from pathlib import Path

import tree


def dependencies(build):
    """Object file -> the files it was made from, as ninja noted them."""
    listed = subprocess.run(["ninja", "-C", str(build), "-t", "deps"], capture_output=True, text=True, check=False)
    noted = {}
    for block in listed.stdout.split("\n\n"):
        first, *needed = block.strip().splitlines() or [""]
        name, _, state = first.partition(": #deps")
        if "(VALID)" in state:
            noted[name] = [line.strip() for line in needed]
    return noted


def fingerprints(root, build, clang_tidy, entries):
    """File -> a key of what clang-tidy sees, or None where what the file depends on is not known. Our own files count
    by content, those of the system by time and size."""
    version = subprocess.run([clang_tidy, "--version"], capture_output=True, text=True, check=True).stdout
    common = [version, (root / ".clang-tidy").read_text(), Path(__file__).read_text()]
    noted = dependencies(build)

    @functools.cache
    def of_file(name):
        path = build / name
        if str(path.resolve()).startswith(str(root)):
            return hashlib.sha256(path.read_bytes()).hexdigest()
        return f"{path.stat().st_mtime_ns} {path.stat().st_size}"

    def of_entry(entry):
        output = re.search(r" -o (\S+)", entry["command"])
        needed = noted.get(output[1]) if output else None
        try:
            parts = [f"{name} {of_file(name)}" for name in [entry["file"], *sorted(needed or ())]]
        except OSError:
            return None
        return hashlib.sha256("\0".join([*common, entry["command"], *parts]).encode()).hexdigest() if needed else None
    return {entry["file"]: of_entry(entry) for entry in entries}


def examine(clang_tidy, build, file):
    """What clang-tidy finds, empty when all is well."""
    # The commands are those of GCC: clang does not know every warning in them, and its own are for clang-tidy to judge.
    result = subprocess.run([clang_tidy, "-p", str(build), "--quiet", "--extra-arg=-Wno-unknown-warning-option",
                             "--extra-arg=-Wno-error", file], capture_output=True, text=True, check=False)
    return "" if result.returncode == 0 else (result.stdout.strip() or result.stderr.strip() or "clang-tidy failed")


def main():
    options = tree.arguments(__doc__, "build", "clang-tidy")
    build = Path(options.build).resolve()
    entries = [entry for entry in json.loads((build / "compile_commands.json").read_text())
               if tree.under(Path(entry["file"]), options.root / "Sources")]
    cache = build / "tidy-clean"
    cache.mkdir(exist_ok=True)
    keys = fingerprints(options.root, build, options.clang_tidy, entries)
    waiting = [file for file, key in keys.items() if key is None or not (cache / key).exists()]

    findings = []
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        running = {pool.submit(examine, options.clang_tidy, build, file): file for file in waiting}
        for done in concurrent.futures.as_completed(running):
            key = keys[running[done]]
            if done.result():
                findings.append(done.result())
            elif key:
                (cache / key).touch()
    for stale in {path.name for path in cache.iterdir()} - set(keys.values()):
        (cache / stale).unlink()
    print(f"{len(keys) - len(waiting)} were clean before and have not changed")
    tree.finish(sorted(findings), len(keys))


if __name__ == "__main__":
    main()
