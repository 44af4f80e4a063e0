"""Checks that includes and links point the way that rules.toml allows.

The compiler sees to part of this (a module finds only the headers of what it links); this script sees to the rest: all
modules lie under one include root, so a header of Platform is in reach of Core, and so is every system header.
"""

import fnmatch
import re
import tomllib
from pathlib import Path

import tree

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
GENERATED = re.compile(r"moc_\w+\.cpp|\w+\.moc")


class Rules:
    def __init__(self, path):
        table = tomllib.loads(path.read_text())
        self.modules = {module["name"]: module for module in table["module"]}
        self.headers = {name: re.compile("|".join(f"(?:{p})" for p in patterns))
                        for name, patterns in table["headers"].items()}
        self.common_links = table["common"]["links"]
        self.parts_path = Path(table["parts"]["path"])
        self.controller = table["parts"]["controller"]
        self.parts_base = table["parts"]["base"]
        for module in self.modules.values():
            for name in module["uses"]:
                if name not in self.modules:
                    raise SystemExit(f"{path}: module {module['name']} uses {name}, which is no module")
                if module["name"] in self.modules[name]["uses"]:
                    raise SystemExit(f"{path}: modules {module['name']} and {name} use each other")

    def module_of(self, path):
        """The module with the longest path that this path, relative to the root, lies in."""
        holding = [module for module in self.modules.values() if tree.under(path, module["path"])]
        return max(holding, key=lambda module: len(module["path"]), default=None)


def qt_module_of(qt, header):
    """The Qt module that a header belongs to, by where it is installed below the directory `qt`."""
    first, _, rest = header.partition("/")
    if rest and re.fullmatch(r"Qt[A-Z]\w*", first):
        return first
    return next((path.parts[-2 - header.count("/")] for path in sorted(qt.glob("Qt*/" + header))), None)


def includes(path):
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match[1] == '"', match[2]


def project_include(rules, root, module, header):
    """Why this quoted include is wrong, or None."""
    if GENERATED.fullmatch(header):
        return None
    if not (root / "Sources" / header).is_file():
        return f'"{header}" is no path below Sources/'
    target = rules.module_of(Path("Sources") / header)
    if target is None:
        return f'"{header}" belongs to no module of rules.toml'
    if target is not module and target["name"] not in module["uses"]:
        return f'{module["name"]} must not know {target["name"]}: "{header}"'
    return None


def outside_include(rules, qt, module, header):
    if header.startswith(("Corvane", "../")):
        return f'<{header}>: headers of this project are included in double quotes'
    if any(name in rules.headers and rules.headers[name].fullmatch(header) for name in module["headers"]):
        return None
    qt_module = qt_module_of(qt, header)
    if qt_module in module["headers"]:
        return None
    origin = f" of {qt_module}" if qt_module else ""
    return f'{module["name"]} must not include <{header}>{origin}'


def is_part(root, rules, header):
    """A header in the controller's directory with an object in it, the controller and the base of parts apart."""
    path = root / header
    known = header.stem.startswith(rules.controller) or header.stem == rules.parts_base
    return (header.suffix == ".h" and not known and path.is_file()
            and re.search(r"^\s*Q_OBJECT\b", path.read_text(), re.MULTILINE) is not None)


def part_include(rules, root, path, header):
    """Why a file in the controller's directory must not include this header, or None."""
    target = Path("Sources") / header
    if not tree.under(path, rules.parts_path) or not tree.under(target, rules.parts_path):
        return None
    if path.name.startswith(rules.controller):
        return None
    if target.name.startswith(rules.controller):
        return f'only {rules.controller} knows {rules.controller}: "{header}"'
    if is_part(root, rules, target) and not path.stem.startswith(target.stem):
        return f'a part must not know another part: "{header}"'
    return None


def check_includes(rules, qt, root, paths):
    for path in paths:
        module = rules.module_of(path)
        if module is None:
            yield f"{path}: belongs to no module of rules.toml"
            continue
        for number, quoted, header in includes(root / path):
            if quoted:
                fault = project_include(rules, root, module, header) or part_include(rules, root, path, header)
            else:
                fault = outside_include(rules, qt, module, header)
            if fault:
                yield f"{path}:{number}: {fault}"


def modules_of_target(rules, target):
    """The names of the modules that the sources of this target lie in."""
    modules = [rules.module_of(source) for source in target["sources"]] or [rules.module_of(target["directory"])]
    return sorted({module["name"] if module else "no module of rules.toml" for module in modules})


def check_links(rules, targets):
    homes = {name: modules_of_target(rules, target) for name, target in targets.items()}
    for name, target in targets.items():
        here = f"{target['directory']}: target {name}"
        if len(homes[name]) != 1 or homes[name][0] not in rules.modules:
            yield f"{here} lies in {' and '.join(homes[name])}"
            continue
        module = rules.modules[homes[name][0]]
        for link in target["links"]:
            if link in targets:
                for other in homes[link]:
                    if other != module["name"] and other not in module["uses"]:
                        yield f"{here} of {module['name']} must not link {link} of {other}"
            elif not any(fnmatch.fnmatchcase(link, pattern) for pattern in module["links"] + rules.common_links):
                yield f"{here} of {module['name']} must not link {link}"


def read_targets(path):
    """The file that CMakeLists.txt beside this script writes: a line "directory|target|sources|links" for each."""
    targets = {}
    for line in Path(path).read_text().splitlines():
        directory, name, sources, links = line.split("|", 3)
        # $<LINK_ONLY:X> marks a private link; what counts is X.
        linked = {re.sub(r"\$<[A-Z_]+:([^<>]*)>", r"\1", link) for link in links.split(";")}
        targets[name] = {
            "directory": Path(directory),
            "sources": [Path(directory) / source for source in sources.split(";")
                        if source and not source.startswith(("/", "$"))],
            "links": sorted(link for link in linked if link and not link.startswith("::@")),
        }
    return targets


def main():
    options = tree.arguments(__doc__, "rules", "qt-headers", "targets")
    rules = Rules(Path(options.rules))
    paths = [path for path in tree.files(options.root) if tree.is_source(path) and tree.under(path, "Sources")]
    targets = read_targets(options.targets)
    findings = [*check_includes(rules, Path(options.qt_headers), options.root, paths), *check_links(rules, targets)]
    tree.finish(findings, len(paths) if targets else 0)


if __name__ == "__main__":
    main()
