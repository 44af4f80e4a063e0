"""Tests of the lint itself: small broken trees in which it must find each fault, and sound ones in which it must not."""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
MODEL = "Sources/CorvaneApp/Model/"


class Lint(unittest.TestCase):
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

    def finds(self, expected, name, *options):
        """Runs a lint script over the tree: it fails and says this once, or finds nothing where None is expected."""
        result = subprocess.run([sys.executable, "-B", str(HERE / f"{name}.py"), "--root", str(self.root), *options],
                                capture_output=True, text=True, check=False)
        output = result.stdout + result.stderr
        self.assertEqual((result.returncode, expected and output.count(expected)), (1, 1) if expected else (0, None),
                         output)

    def modules(self, expected, targets="Sources/CorvaneContract|CorvaneContract|Error.h|Qt6::Core\n"):
        self.write("../targets.txt", targets)
        self.finds(expected, "modules", "--rules", str(HERE / "rules.toml"),
                   "--qt-headers", str(self.outside / "qt"), "--targets", str(self.outside / "targets.txt"))

    def test_includes_against_the_arrows(self):
        self.modules(None)
        for name, text, expected in (
                ("CorvaneCore/A.h", '#include "CorvanePlatform/Linux/Bus.h"\n', "Core must not know Platform"),
                ("CorvaneWorker/A.cpp", '#  include "CorvaneCore/Clock.h"\n', "Worker must not know Core"),
                ("CorvaneApp/Model/A.cpp", '#include "CorvanePlatform/Linux/Bus.h"\n', "Model must not know Platform"),
                ("CorvaneCore/A.h", "#include <sys/stat.h>\n", "Core must not include <sys/stat.h>"),
                ("CorvaneCore/A.h", "#include <QImage>\n", "Core must not include <QImage> of QtGui"),
                ("CorvaneCore/A.h", "#include <QtGui/QImage>\n", "Core must not include <QtGui/QImage> of QtGui"),
                ("CorvaneCore/A.h", "#include <QUnheardOf>\n", "Core must not include <QUnheardOf>"),
                ("CorvaneCore/A.h", "#include <CorvaneContract/Error.h>\n", "in double quotes"),
                ("CorvaneCore/A.h", '#include "Clock.h"\n', "no path below Sources/"),
                ("Stray/A.h", "", "belongs to no module")):
            with self.subTest(name=name, text=text):
                self.write("Sources/" + name, text)
                self.modules(expected)
                (self.root / "Sources" / name).unlink()

    def test_parts_of_the_controller(self):
        part = "class {0} : public QObject {{\n    Q_OBJECT\n}};\n"
        self.write(MODEL + "AppModel.h", '#include "CorvaneApp/Model/Playback.h"\n' + part.format("AppModel"))
        self.write(MODEL + "AppModelStart.cpp", '#include "CorvaneApp/Model/AppModel.h"\n')
        self.write(MODEL + "Playback.h", part.format("Playback"))
        self.write(MODEL + "PlaybackSpeed.cpp", '#include "CorvaneApp/Model/Playback.h"\n')
        self.write(MODEL + "Values.h", "struct Values {};\n")
        self.write(MODEL + "ModelPart.h", part.format("ModelPart"))
        self.write(MODEL + "Jobs.h", '#include "CorvaneApp/Model/Values.h"\n'
                                     '#include "CorvaneApp/Model/ModelPart.h"\n' + part.format("Jobs"))
        self.modules(None)
        self.write(MODEL + "Jobs.cpp", '#include "CorvaneApp/Model/Playback.h"\n')
        self.modules("must not know another part")
        self.write(MODEL + "Jobs.cpp", '#include "CorvaneApp/Model/AppModel.h"\n')
        self.modules("only AppModel knows AppModel")

    def test_links_against_the_arrows(self):
        sound = ("Sources/CorvaneCore|CorvaneCore|Clock.h|Qt6::Core\n"
                 "Sources/CorvanePlatform|CorvanePlatform||CorvaneCore\n")
        self.modules(None, sound)
        for line, expected in (
                ("Sources/CorvaneWorker/Speech|Helper||$<LINK_ONLY:CorvaneCore>", "must not link CorvaneCore of Core"),
                ("Sources/CorvaneContract|CorvaneContract||Qt6::Gui", "must not link Qt6::Gui"),
                ("Sources/CorvaneApp|Model|Model/A.cpp|CorvanePlatform", "must not link CorvanePlatform of Platform"),
                ("Sources/CorvaneApp|Both|main.cpp;Model/A.cpp|", "lies in App and Model"),
                ("Sources/Stray|Stray||", "lies in no module")):
            with self.subTest(line=line):
                self.modules(expected, sound + line + "\n")
        self.modules("Nothing was checked", "")

    def test_symbols(self):
        svg = '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {}">{}</svg>\n'
        for size, shapes, expected in (("24 24", '<path d="M4 4 H20" stroke="#000"/>', None),
                                       ("32 32", "", "the view box is not 0 0 24 24"),
                                       ("24 24", "<mask/>", "<mask> is not among the plain shapes"),
                                       ("24 24", '<circle r="4" fill="#fff"/>', "#fff is neither #000 nor none"),
                                       ("24 24", "<path>", "is not XML")):
            with self.subTest(expected=expected):
                self.write("Sources/CorvaneApp/Views/Icons/a.svg", svg.format(size, shapes))
                self.finds(expected, "symbols")

    def test_translations(self):
        form = ("<?xml version='1.0' encoding='utf-8'?>\n<!DOCTYPE TS>\n<TS version='2.1' language='fr'><context>"
                "<name>Words</name><message><source>{}</source><translation{}>{}</translation></message></context></TS>\n")
        self.write("Sources/Words.cpp", 'struct Words {{ Q_DECLARE_TR_FUNCTIONS(Words) }};\nauto a = Words::tr("{}");\n'
                   .format("%1 of %2?"))
        for source, state, text, expected in (
                ("%1 of %2?", "", "%1 sur %2\u202f?", None),
                ("%1 of %2?", "", "%1 sur %2 ?", "no no-break space before"),
                ("%1 of %2?", "", "\u00ab%1\u00a0\u00bb sur %2", "no no-break space after"),
                ("%1 of %2?", "", "l'un %1 %2", "typewriter's apostrophe"),
                ("%1 of %2?", "", "%1\u202f%... %2", "three full stops"),
                ("%1 of %2?", "", "%1 sur %1", "other placeholders"),
                ("%1 of %2?", " type='unfinished'", "%1 %2", "the translation is unfinished"),
                ("%1 of %2?", "", "", "the translation is empty"),
                ("Gone", "", "Parti", "\u201cGone\u201d is in the sources no more")):
            with self.subTest(text=text):
                self.write("Translations/words_fr.ts", form.format(source, state, text))
                self.finds(expected, "translations", "--lupdate", os.environ["CORVANE_LUPDATE"])

    def test_single_files(self):
        self.write("../commands.json", "[]")
        self.write(".clang-format", "BasedOnStyle: LLVM\n")
        self.write("sound", "#!/usr/bin/env bash\necho \"$1\"\n")
        tools = {"words": (), "format": ("--clang-format", os.environ["CORVANE_CLANG_FORMAT"]),
                 "shell": ("--shellcheck", os.environ["CORVANE_SHELLCHECK"]),
                 "sources": ("--compile-commands", str(self.outside / "commands.json"))}
        for tool in ("words", "format", "shell"):
            self.finds(None, tool, *tools[tool])
        for tool, name, text, expected in (
                ("words", "Sources/A.cpp", "// TO" "DO: later\n", "unfinished work"),
                ("words", "Sources/A.cpp", f'const char* path = "{self.root}/x";\n', "path of this checkout"),
                ("words", "Sources/A.cpp", "int a;", "the last line has no end"),
                ("words", "Sources/A.cpp", "int a;\n" * 401, "401 lines"),
                ("format", "Sources/A.cpp", "int  a;\n", "Sources/A.cpp:1: mend it"),
                ("sources", "Sources/A.cpp", "\n", "Sources/A.cpp: no CMakeLists.txt names this file"),
                ("shell", "careless", "#!/bin/sh\nrm -r $1\n", "SC2086"),
                ("shell", "careless", "#!/bin/bash\nif true\n", "unexpected end of file")):
            with self.subTest(tool=tool, expected=expected):
                self.write(name, text)
                self.finds(expected, tool, *tools[tool])
        self.write("../commands.json", '[{"file": "%s/Sources/A.cpp"}]' % self.root)
        self.finds(None, "sources", *tools["sources"])


if __name__ == "__main__":
    unittest.main()
