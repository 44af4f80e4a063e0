"""The application on a Wayland desktop that has no X server."""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

import desktop
import support

NOBODY = 65534


class Wayland(desktop.DesktopTest):
    """Besides the keyboard of a key press there is one that stays: a compositor without any takes the focus away."""

    def setUp(self):
        super().setUp()
        for program in ("sway", "swaymsg", "wtype"):
            if not shutil.which(program):
                self.skipTest(program + " is not installed")
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        runtime = pathlib.Path(directory.name)
        configuration = runtime / "configuration"
        configuration.write_text("xwayland disable\noutput HEADLESS-1 resolution 1280x900\n")
        command = ["sway", "-c", configuration]
        if os.geteuid() == 0:  # which the compositor refuses to be
            os.chown(runtime, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
        del self.environment["DISPLAY"]
        self.compositor = subprocess.Popen(
            command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            env=self.environment | {"XDG_RUNTIME_DIR": str(runtime), "WLR_BACKENDS": "headless",
                                    "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"})
        self.addCleanup(self.end, self.compositor)
        self.wait_for(lambda: list(runtime.glob("sway-ipc.*")) and list(runtime.glob("wayland-?")), "the compositor")
        self.environment |= {"SWAYSOCK": str(next(runtime.glob("sway-ipc.*"))),
                             "WAYLAND_DISPLAY": str(next(runtime.glob("wayland-?"))), "XDG_SESSION_TYPE": "wayland"}
        keyboard = subprocess.Popen(["wtype", "-s", "600000", "-k", "Shift_L"], env=self.environment)
        self.addCleanup(self.end, keyboard)

    def windows(self):
        def below(node):
            found = [node] if node.get("app_id") == "corvane" else []
            return found + [window for child in node["nodes"] + node["floating_nodes"] for window in below(child)]
        tree = subprocess.run(["swaymsg", "-r", "-t", "get_tree"], env=self.environment, check=True,
                              capture_output=True)
        return [window for window in below(json.loads(tree.stdout)) if window["focused"]]

    def press_with_control(self, key):
        subprocess.run(["wtype", "-M", "ctrl", "-k", key, "-m", "ctrl"], env=self.environment, check=True)

    def test_the_window_the_tray_and_the_keys_work_and_no_recording_is_lost(self):
        self.serve()
        self.play_tones()
        self.set_up()
        self.start_tray()
        process = self.start("corvane")
        self.wait_for_item()
        self.choose("Start Recording")
        self.wait_for(lambda: "Stop Recording" in self.tray("menu"), "the recording")
        self.choose("Open App")
        self.assertEqual(self.wait_for_window()["name"], "Corvane")
        self.press_with_control("w")
        self.wait_for(lambda: not self.windows(), "the window to close")
        self.assertEqual(self.run_program("corvane").returncode, 0)
        self.wait_for_window()
        meeting = next(self.root.glob("meetings/*")).name
        self.wait_for(lambda: list(self.root.glob("meetings/*/system-chunks/*.wav")), "the sound")

        self.compositor.kill()
        process.wait(support.LIMIT)
        self.assertNotIn(process.returncode, (-signal.SIGSEGV, -signal.SIGABRT))
        self.assertEqual(self.draft(meeting)["recording_status"], "recording")
        self.ctl("recover", meeting, "--no-process")
        self.assertEqual(self.draft(meeting)["recording_status"], "recorded")


if __name__ == "__main__":
    unittest.main()
