"""The application as a screen reader meets it: over the accessibility bus, from another process."""

import array
import json
import math
import pathlib
import subprocess
import wave

import desktop
import sound
import support

TONE = 700  # hertz, of what has been recorded
LAUNCHER = pathlib.Path("/usr/libexec/at-spi-bus-launcher")


class Element:
    """Of the tree, as it was when it was asked for."""

    def __init__(self, facts, parent=None):
        self.path, self.role, self.name = facts["path"], facts["role"], facts["name"]
        self.description, self.text, self.value = facts["description"], facts.get("text"), facts.get("value")
        self.states, self.actions = set(facts["states"]), facts.get("actions", [])
        self.interfaces = facts["interfaces"]
        self.parent = parent
        self.children = [Element(child, self) for child in facts.get("children", [])]

    def __str__(self):
        return f"{self.role} '{self.name}'"

    def all(self):
        yield self
        for child in self.children:
            yield from child.all()

    def is_usable(self):
        return {"showing", "enabled"} <= self.states

    def outline(self, depth=0):
        """For somebody who wants to know why a test failed."""
        words = "  " * depth + f"{self} {self.description!r} {sorted(self.states)} {self.actions} {self.text!r}"
        return "\n".join([words] + [child.outline(depth + 1) for child in self.children])


class ReaderTest(desktop.DesktopTest):
    """Without accessibility until start_reader() is called."""

    limit = 60  # a look at the tree is hundreds of messages, which on a busy machine wait for each other

    def start_reader(self):
        if not LAUNCHER.exists():
            self.skipTest("at-spi2-core is not installed")
        environment = self.environment | {"GSETTINGS_BACKEND": "memory"}
        launcher = subprocess.Popen([LAUNCHER, "--launch-immediately", "--a11y=1"], env=environment,
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self.end_with_children, launcher)
        self.wait_for(self.has_accessibility_bus, "the accessibility bus")
        self.reader = subprocess.Popen([sound.HELPERS / "ScreenReader"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       text=True, env=self.environment)
        self.addCleanup(self.end, self.reader)
        self.assertEqual(self.reader.stdout.readline(), "ready\n")

    def has_accessibility_bus(self):
        asked = subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus",
             "org.a11y.Bus.GetAddress"], env=self.environment, capture_output=True, check=False)
        return asked.returncode == 0

    @staticmethod
    def end_with_children(process):
        """The bus is a child of its launcher, which ends it when it is asked to end."""
        process.terminate()
        process.wait(support.LIMIT)

    def ask(self, *words):
        self.reader.stdin.write(" ".join(words) + "\n")
        self.reader.stdin.flush()
        return json.loads(self.reader.stdout.readline())

    def tree(self):
        facts = self.ask("tree")
        return Element(facts) if facts else None

    def elements(self, name=None, role=None):
        """By their whole name or by a pattern for it, on the screen or not."""
        root = self.tree()
        return [one for one in (root.all() if root else ()) if (role is None or one.role == role) and
                (name is None or (name.fullmatch(one.name) if hasattr(name, "fullmatch") else one.name == name))]

    def showing(self, name=None, role=None):
        return [one for one in self.elements(name, role) if "showing" in one.states]

    def find(self, name=None, role=None, having=Element.is_usable):
        found = []

        def is_there():
            found[:] = filter(having, self.showing(name, role))
            return found
        try:
            self.wait_for(is_there, f"{role or 'an element'} '{name}'")
        except AssertionError:
            root = self.tree()
            print(root.outline() if root else "There is no application.")
            raise
        return found[0]

    def wait_until_gone(self, name, role=None):
        self.wait_for(lambda: not self.showing(name, role), f"'{name}' to go")

    def act(self, name, role=None, action="Press"):
        element = self.find(name, role, lambda one: one.is_usable() and action in one.actions)
        self.assertEqual(self.ask("act", element.path, action), [True], element)
        return element

    def bring(self, name, role):
        """Into view, by giving it the keyboard."""
        wanted = []

        def is_there():
            wanted[:] = [one for one in self.elements(name, role) if "focusable" in one.states]
            return wanted
        self.wait_for(is_there, f"{role} '{name}'")
        self.assertEqual(self.ask("focus", wanted[0].path), [True], wanted[0])
        return self.find(name, role)

    def names(self, role=None):
        return [one.name for one in self.showing(role=role)]

    def focused(self):
        """What has the keyboard, as one element or none; what only contains it says so too."""
        root = self.tree()
        return [one for one in (root.all() if root else ()) if
                {"focused", "focusable", "showing"} <= one.states][-1:]

    def type_text(self, text):
        self.xdotool("type", "--delay", "1", text)

    # What is beside the application on a desktop.

    def start_keyring(self):
        keyring = subprocess.Popen(["gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets"],
                                   stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   env=self.environment)
        self.addCleanup(self.end, keyring)
        keyring.stdin.write(b"pw")
        keyring.stdin.close()
        keyring.stdin = None
        self.wait_for(lambda: self.has_owner("org.freedesktop.secrets"), "the keyring")

    def start_window_manager(self):
        ready = self.home / "managed"
        manager = subprocess.Popen(["openbox", "--startup", f"touch {ready}"], env=self.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self.end, manager)
        self.wait_for(ready.exists, "the window manager")

    def has_owner(self, name):
        asked = subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
             "org.freedesktop.DBus.NameHasOwner", "string:" + name], env=self.environment, capture_output=True,
            text=True, check=False)
        return "boolean true" in asked.stdout

    def defaults(self):
        """What is stored of the settings."""
        path = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "Corvane" / "defaults.json"
        return json.loads(path.read_bytes()) if path.exists() else {}

    def prepare_voices(self):
        """Two processed meetings with the same voices, the first of them named and known."""
        self.tone("first.wav")
        self.tone("second.wav")
        meetings = []
        for name in ("first.wav", "second.wav"):
            meetings.append(self.ctl_json("import", self.home / name)[0]["id"])
            self.ctl("process", meetings[-1], "--wait")
        self.ctl("profiles", "create", "Ann")
        self.ctl("speaker", meetings[0], "SPEAKER_00", "--profile", "Ann")
        self.ctl("profiles", "matching", "on")
        self.ctl("match", meetings[1])
        return meetings[1]

    def tone(self, name):
        path = self.home / name
        one_second = array.array("h", (round(16000 * math.sin(2 * math.pi * TONE * i / 48000)) for i in range(48000)))
        with wave.open(str(path), "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(2)
            file.setframerate(48000)
            file.writeframes(one_second.tobytes() * 60)
