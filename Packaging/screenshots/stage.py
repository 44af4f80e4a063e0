"""A desktop without a screen for the application to be photographed on: display, session bus, accessibility, keyring,
window manager and sound, all of them private and ended by their process ids."""

import contextlib
import os
import pathlib
import subprocess
import time

import gi

LIMIT = 30  # seconds; only a fault reaches it

# A desktop's usual size of text, and a typeface that is in Debian.
KDE_GLOBALS = "[General]\nfont=Inter,10,-1,5,50,0,0,0,0,0\n"
FONTS = """<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>
<alias binding="strong"><family>sans-serif</family><prefer><family>Inter</family></prefer></alias>
<alias binding="strong"><family>monospace</family><prefer><family>DejaVu Sans Mono</family></prefer></alias>
</fontconfig>
"""
OPENBOX = """<?xml version="1.0"?><openbox_config xmlns="http://openbox.org/3.4/rc">
<applications><application class="*"><decor>no</decor></application></applications></openbox_config>
"""


gi.require_version("Atspi", "2.0")


class StageError(Exception):
    pass


def wait_for(condition, what):
    end = time.monotonic() + LIMIT
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > end:
            raise StageError("waited in vain for " + what)
        time.sleep(0.03)


class Stage:
    """The desktop. Everything that it starts ends with it."""

    def __init__(self, home, screen="2600x1700"):
        self.home = pathlib.Path(home)
        self.closing = contextlib.ExitStack()
        (self.home / "runtime").mkdir(mode=0o700)
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("QT_", "XDG_", "DBUS_", "CORVANE_", "LC_", "WAYLAND"))}
        self.environment |= {"HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.home / "runtime"), "LANG": "en_GB.UTF-8",
                             "LANGUAGE": "", "TZ": "UTC"}
        self.screen = screen

    def __enter__(self):
        with contextlib.ExitStack() as closing:
            self.closing = closing
            self.start_display()
            self.start_bus()
            self.start_sound()
            # Where this process asks for what is on the windows; chosen once, at the first question.
            os.environ.update({name: self.environment[name] for name in ("DBUS_SESSION_BUS_ADDRESS", "DISPLAY")})
            os.environ.pop("AT_SPI_BUS_ADDRESS", None)
            self.closing = closing.pop_all()
        return self

    def __exit__(self, *error):
        self.closing.close()

    def start(self, *command, environment=None, **options):
        process = subprocess.Popen([str(word) for word in command], env=environment or self.environment,
                                   **{"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
                                      "stderr": subprocess.DEVNULL} | options)
        self.closing.callback(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.terminate()
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
        process.wait()

    def start_display(self):
        reading, writing = os.pipe()
        self.start("Xvfb", "-displayfd", writing, "-noreset", "-nolisten", "tcp", "-screen", 0, self.screen + "x24",
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as numbers:
            self.environment["DISPLAY"] = ":" + numbers.readline().strip()
        configuration = self.home / "openbox.xml"
        configuration.write_text(OPENBOX)
        self.start("openbox", "--config-file", configuration)
        self.start("xcompmgr")

    def start_bus(self):
        bus = self.start("dbus-daemon", "--session", "--nofork", "--print-address", stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        self.environment["DBUS_SYSTEM_BUS_ADDRESS"] = self.environment["DBUS_SESSION_BUS_ADDRESS"]
        self.start("/usr/libexec/at-spi-bus-launcher", "--launch-immediately")
        keyring = self.start("gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets",
                             stdin=subprocess.PIPE, text=True)
        keyring.stdin.write("password")
        keyring.stdin.close()

    def start_sound(self):
        """A microphone in which nobody speaks, and a loudspeaker."""
        socket = self.home / "runtime" / "sound"
        self.start("pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--realtime=no",
                   "-L", f"module-native-protocol-unix auth-anonymous=1 socket={socket}",
                   "-L", "module-null-sink sink_name=speaker", "-L", "module-null-sink sink_name=feed",
                   "-L", "module-remap-source master=feed.monitor source_name=microphone",
                   environment=self.environment | {"HOME": str(self.home)})
        self.environment["PULSE_SERVER"] = f"unix:{socket}"
        wait_for(socket.exists, "the sound server")

    def application(self, program, home, *arguments, **environment):
        return Application(self, program, home, arguments, environment)


class Application:
    """Corvane in a home of its own, and what is on its windows, as the accessibility bus tells it."""

    def __init__(self, stage, program, home, arguments, environment):
        self.stage = stage
        config = home / "config"
        config.mkdir(parents=True, exist_ok=True)
        (config / "kdeglobals").write_text(KDE_GLOBALS)
        (config / "fontconfig").mkdir(exist_ok=True)
        (config / "fontconfig" / "fonts.conf").write_text(FONTS)
        self.environment = stage.environment | {
            "XDG_CONFIG_HOME": str(config), "XDG_DATA_HOME": str(home / "data"), "XDG_CURRENT_DESKTOP": "KDE",
            "KDE_FULL_SESSION": "true", "KDE_SESSION_VERSION": "5", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
            "CORVANE_REDUCED_MOTION": "1", "QT_QUICK_BACKEND": "software"} | environment
        self.program = program
        self.log = open(home / "corvane.log", "wb")
        self.process = stage.start(program, *arguments, environment=self.environment, stderr=self.log)

    def __enter__(self):
        self.window = wait_for(self.find_window, "the window")
        return self

    def __exit__(self, *error):
        self.stage.end(self.process)
        self.log.close()

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *map(str, arguments)], env=self.stage.environment, capture_output=True, text=True,
                              check=False).stdout.split()

    def find_window(self, name="^Corvane$"):
        if self.process.poll() is not None:
            raise StageError(f"corvane ended with status {self.process.returncode}")
        return next(iter(self.xdotool("search", "--onlyvisible", "--name", name)), None)

    def resize(self, width, height):
        self.xdotool("windowsize", "--sync", self.window, width, height)
        self.xdotool("windowmove", self.window, 0, 0)

    def key(self, *keys):
        self.xdotool("windowfocus", "--sync", self.window)
        for key in keys:
            self.xdotool("key", key)

    def move_pointer(self, x, y):
        """In the window's own coordinates."""
        self.xdotool("mousemove", "--window", self.window, round(x), round(y))

    # The tree of the accessibility bus.

    def root(self):
        from gi.repository import Atspi
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            child = desktop.get_child_at_index(index)
            if child and child.get_process_id() == self.process.pid:
                child.set_cache_mask(Atspi.Cache.NONE)
                return child
        return None

    def find_now(self, fits):
        from gi.repository import Atspi, GLib

        def search(node):
            states = node.get_state_set()
            if node.get_role() != Atspi.Role.APPLICATION and not states.contains(Atspi.StateType.SHOWING):
                return None
            if fits(node):
                return node
            for index in range(node.get_child_count()):
                child = node.get_child_at_index(index)
                found = search(child) if child else None
                if found:
                    return found
            return None
        try:
            root = self.root()
            return search(root) if root else None
        except GLib.GError:  # went away while it was looked at
            return None

    def find(self, name, role=None):
        """By its name, or the beginning of it; waits until it is there."""
        def fits(node):
            return (node.get_name() or "").startswith(name) and (role is None or node.get_role_name() == role)
        return wait_for(lambda: self.find_now(fits), f"“{name}”")

    def press(self, name, role=None):
        node = self.find(name, role)
        actions = [node.get_action_name(index) for index in range(node.get_n_actions())]
        if "Press" not in actions:
            raise StageError(f"“{name}” cannot be pressed")
        node.do_action(actions.index("Press"))

    def frame(self, node):
        from gi.repository import Atspi
        box = node.get_extents(Atspi.CoordType.WINDOW)
        return box.x, box.y, box.width, box.height

    def click(self, node, button=1):
        x, y, width, height = self.frame(node)
        self.move_pointer(x + width / 2, y + height / 2)
        self.xdotool("click", button)
        self.move_pointer(1, 1)

    def scroll(self, notches):
        """The page, down or, with a negative number, up."""
        geometry = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", self.window))
        self.move_pointer(int(geometry["WIDTH"]) * 0.66, int(geometry["HEIGHT"]) * 0.5)
        delay = 5 if abs(notches) > 10 else 150  # a fast wheel flings the page to its end
        self.xdotool("click", "--repeat", abs(notches), "--delay", delay, 5 if notches > 0 else 4)
        self.move_pointer(1, 1)

    # Pictures.

    def picture(self, window=None):
        return subprocess.run(["import", "-silent", "-window", window or self.window, "png:-"], env=self.stage.environment,
                              check=True, capture_output=True).stdout

    def still_picture(self, window=None):
        """Once two pictures in a row are the same; clocks that run count in whole seconds."""
        last = [None]

        def same():
            before, last[0] = last[0], self.pixels(window)
            return before == last[0]
        wait_for(same, "the window to be still")
        return self.picture(window)

    def pixels(self, window):
        time.sleep(0.12)  # two pictures of one frame would prove nothing
        return subprocess.run(["import", "-silent", "-window", window or self.window, "rgb:-"], env=self.stage.environment,
                              check=True, capture_output=True).stdout

