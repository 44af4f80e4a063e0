"""A desktop of the test's own: a display, a session bus, and a tray on it. All are ended by their process ids."""

import json
import os
import pathlib
import shutil
import subprocess

import sound
import support


class DesktopTest(sound.SoundTest):
    def setUp(self):
        super().setUp()
        for program in ("Xvfb", "dbus-daemon", "openbox", "xdotool"):
            if not shutil.which(program):
                self.skipTest(program + " is not installed")
        (self.home / "runtime").mkdir(mode=0o700)
        reading, writing = os.pipe()
        self.display = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-noreset", "-nolisten", "tcp",
                                         "-screen", "0", "1280x900x24"], pass_fds=[writing], stderr=subprocess.DEVNULL)
        self.addCleanup(self.end, self.display)
        os.close(writing)
        with os.fdopen(reading) as numbers:
            self.environment["DISPLAY"] = ":" + numbers.readline().strip()
        # Without any service that the bus could start on demand.
        configuration = self.home / "bus.conf"
        configuration.write_text(
            f"<busconfig><type>session</type><listen>unix:path={self.home}/bus</listen><policy context='default'>"
            "<allow send_destination='*'/><allow receive_sender='*'/><allow own='*'/></policy></busconfig>")
        self.bus = subprocess.Popen(["dbus-daemon", "--nofork", "--print-address", f"--config-file={configuration}"],
                                    stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(self.end, self.bus)
        address = self.bus.stdout.readline().strip()
        # No call leaves the test for the machine's own services.
        self.environment |= {"DBUS_SESSION_BUS_ADDRESS": address, "DBUS_SYSTEM_BUS_ADDRESS": address,
                             "QT_QUICK_BACKEND": "software"}

    def start_tray(self):
        self.tray_process = subprocess.Popen([sound.HELPERS / "FakeTray"], stdin=subprocess.PIPE,
                                             stdout=subprocess.PIPE, text=True, env=self.environment)
        self.addCleanup(self.end, self.tray_process)
        self.assertEqual(self.tray_process.stdout.readline(), "ready\n")

    def tray(self, *command):
        self.tray_process.stdin.write(" ".join(command) + "\n")
        self.tray_process.stdin.flush()
        return json.loads(self.tray_process.stdout.readline())

    def wait_for_item(self):
        self.wait_for(lambda: self.tray("items"), "the item in the tray")

    def choose(self, text):
        self.wait_for(lambda: text in self.tray("menu"), text)
        self.assertEqual(self.tray("choose", text), [True])

    def set_up(self, **settings):
        """As if the setup were done."""
        directory = pathlib.Path(self.environment["XDG_CONFIG_HOME"]) / "Corvane"
        directory.mkdir(parents=True, exist_ok=True)
        (directory / "defaults.json").write_text(json.dumps({"setupCompleted": True} | settings))

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, capture_output=True, text=True,
                              check=False).stdout.split()

    def windows(self):
        """Of Corvane, as far as they are on the screen."""
        return self.xdotool("search", "--onlyvisible", "--name", "^Corvane$")

    def wait_for_window(self):
        self.wait_for(self.windows, "the window")
        return self.windows()[0]

    def press(self, window, *keys):
        self.xdotool("windowfocus", "--sync", window)
        for key in keys:
            self.xdotool("key", key)
