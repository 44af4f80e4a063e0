"""Tests of the lint itself: small broken trees in which it must find each fault, and sound ones in which it must not."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import modules

HERE = Path(__file__).resolve().parent


class Tree(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.outside = Path(scratch.name).resolve()
        self.root = self.outside / "tree"
        self.write("Sources/CorvaneContract/Error.h", "#include <QString>\n#include <vector>\n")
        self.write("Sources/CorvaneCore/Clock.h", '#include "CorvaneContract/Error.h"\n')
        self.write("Sources/CorvanePlatform/Linux/Bus.h", '#include "CorvaneCore/Clock.h"\n#include <QDBusConnection>\n')
        for header in ("QtCore/QString", "QtDBus/QDBusConnection", "QtGui/QImage"):
            self.write("../qt/" + header, "")

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def lint(self, name, *options):
        """Exit status and output of a lint script over the tree."""
        result = subprocess.run([sys.executable, "-B", str(HERE / f"{name}.py"), "--root", str(self.root), *options],
                                capture_output=True, text=True, check=False)
        return result.returncode, result.stdout + result.stderr

    def finds(self, expected, name, *options):
        status, output = self.lint(name, *options)
        self.assertEqual((status, output.count(expected)), (1, 1), output)

    def passes(self, name, *options):
        status, output = self.lint(name, *options)
        self.assertEqual(status, 0, output)


class Modules(Tree):
    def options(self, targets="Sources/CorvaneCore|CorvaneCore|Clock.h|CorvaneContract;Qt6::Core\n"
                              "Sources/CorvaneContract|CorvaneContract|Error.h|Qt6::Core\n"):
        self.write("../targets.txt", targets)
        return ["--rules", str(HERE / "rules.toml"), "--qt-headers", str(self.outside / "qt"),
                "--targets", str(self.outside / "targets.txt")]

    def test_a_sound_tree(self):
        self.passes("modules", *self.options())

    def test_includes_against_the_arrows(self):
        for name, text, expected in (
                ("CorvaneCore/A.h", '#include "CorvanePlatform/Linux/Bus.h"\n', "Core must not know Platform"),
                ("CorvaneContract/A.h", '#include "CorvaneCore/Clock.h"\n', "Contract must not know Core"),
                ("CorvaneWorker/A.cpp", '#  include "CorvaneCore/Clock.h"\n', "Worker must not know Core"),
                ("CorvaneApp/Model/A.cpp", '#include "CorvanePlatform/Linux/Bus.h"\n', "Model must not know Platform"),
                ("CorvaneCore/A.h", "#include <unistd.h>\n", "Core must not include <unistd.h>"),
                ("CorvaneCore/A.h", "#include <sys/stat.h>\n", "Core must not include <sys/stat.h>"),
                ("CorvaneCore/A.h", "#include <libsecret/secret.h>\n", "Core must not include <libsecret/secret.h>"),
                ("CorvaneCore/A.h", "#include <QImage>\n", "Core must not include <QImage> of QtGui"),
                ("CorvaneCore/A.h", "#include <QtGui/QImage>\n", "Core must not include <QtGui/QImage> of QtGui"),
                ("CorvaneApp/Model/A.h", "#include <QDBusConnection>\n", "Model must not include <QDBusConnection>"),
                ("CorvaneCore/A.h", "#include <QUnheardOf>\n", "Core must not include <QUnheardOf>"),
                ("CorvaneCore/A.h", "#include <CorvaneContract/Error.h>\n", "in double quotes"),
                ("CorvaneCore/A.h", '#include "Clock.h"\n', "no path below Sources/"),
                ("Stray/A.h", "", "belongs to no module")):
            with self.subTest(name=name, text=text):
                self.write("Sources/" + name, text)
                self.finds(expected, "modules", *self.options())
                (self.root / "Sources" / name).unlink()

    def test_parts_of_the_controller(self):
        model = "Sources/CorvaneApp/Model/"
        part = "class {0} : public QObject {{\n    Q_OBJECT\n}};\n"
        self.write(model + "AppModel.h", '#include "CorvaneApp/Model/Playback.h"\n' + part.format("AppModel"))
        self.write(model + "AppModelStart.cpp", '#include "CorvaneApp/Model/AppModel.h"\n')
        self.write(model + "Playback.h", part.format("Playback"))
        self.write(model + "PlaybackSpeed.cpp", '#include "CorvaneApp/Model/Playback.h"\n')
        self.write(model + "Values.h", "struct Values {};\n")
        self.write(model + "ModelPart.h", part.format("ModelPart"))
        self.write(model + "Jobs.h", '#include "CorvaneApp/Model/Values.h"\n'
                                     '#include "CorvaneApp/Model/ModelPart.h"\n' + part.format("Jobs"))
        self.passes("modules", *self.options())
        self.write(model + "Jobs.cpp", '#include "CorvaneApp/Model/Playback.h"\n')
        self.finds("must not know another part", "modules", *self.options())
        self.write(model + "Jobs.cpp", '#include "CorvaneApp/Model/AppModel.h"\n')
        self.finds("only AppModel knows AppModel", "modules", *self.options())

    def test_links_against_the_arrows(self):
        sound = ("Sources/CorvaneCore|CorvaneCore|Clock.h|Qt6::Core\n"
                 "Sources/CorvanePlatform|CorvanePlatform||CorvaneCore\n")
        for line, expected in (
                ("Sources/CorvaneWorker|corvane-worker||Qt6::Core;CorvaneCore", "must not link CorvaneCore of Core"),
                ("Sources/CorvaneWorker/Speech|Helper||$<LINK_ONLY:CorvaneCore>", "must not link CorvaneCore of Core"),
                ("Sources/CorvaneContract|CorvaneContract||Qt6::Gui", "must not link Qt6::Gui"),
                ("Sources/CorvaneApp|Model|Model/A.cpp|CorvanePlatform", "must not link CorvanePlatform of Platform"),
                ("Sources/CorvaneApp|Both|main.cpp;Model/A.cpp|", "lies in App and Model"),
                ("Sources/Stray|Stray||", "lies in no module")):
            with self.subTest(line=line):
                self.finds(expected, "modules", *self.options(sound + line + "\n"))

    def test_no_target_is_a_failure(self):
        self.assertEqual(self.lint("modules", *self.options(""))[0], 1)

    def test_private_links_are_links(self):
        path = self.outside / "targets"
        path.write_text("Sources/CorvaneCore|CorvaneCore|A.cpp;/abs/moc.cpp|A;$<LINK_ONLY:B>;::@(0x5);B\n")
        target = modules.read_targets(path)["CorvaneCore"]
        self.assertEqual(target["links"], ["A", "B"])
        self.assertEqual(target["sources"], [Path("Sources/CorvaneCore/A.cpp")])


class SingleFiles(Tree):
    def test_words(self):
        self.passes("words")
        for text, expected in (("// TO" "DO: later\n", "unfinished work"),
                               (f'const char* path = "{self.root}/x";\n', "path of this checkout"),
                               ("int a;", "the last line has no end"),
                               ("int a;\n" * 401, "401 lines")):
            with self.subTest(expected=expected):
                self.write("Sources/A.cpp", text)
                self.finds(expected, "words")

    def test_a_file_that_is_not_built(self):
        self.write("Tests/BuiltTests.cpp", "\n")
        self.write("../commands.json", '[{"file": "%s/Tests/BuiltTests.cpp"}]' % self.root)
        options = ["--compile-commands", str(self.outside / "commands.json")]
        self.passes("sources", *options)
        self.write("Tests/ForgottenTests.cpp", "\n")
        self.finds("Tests/ForgottenTests.cpp: no CMakeLists.txt names this file", "sources", *options)

    def test_format(self):
        options = ["--clang-format", os.environ["CORVANE_CLANG_FORMAT"]]
        self.write(".clang-format", "BasedOnStyle: LLVM\n")
        self.passes("format", *options)
        self.write("Sources/A.cpp", "int  a;\n")
        self.finds("Sources/A.cpp:1: mend it", "format", *options)

    def test_shell(self):
        options = ["--shellcheck", os.environ["CORVANE_SHELLCHECK"]]
        self.write("sound", "#!/usr/bin/env bash\necho \"$1\"\n")
        self.passes("shell", *options)
        self.write("careless", "#!/bin/sh\nrm -r $1\n")
        self.finds("SC2086", "shell", *options)
        self.write("careless", "#!/bin/bash\nif true\n")
        self.assertEqual(self.lint("shell", *options)[0], 1)

    def test_nothing_to_look_at_is_a_failure(self):
        for path in sorted(self.root.rglob("*.h")):
            path.unlink()
        status, output = self.lint("words")
        self.assertEqual(status, 1, output)


if __name__ == "__main__":
    unittest.main()
