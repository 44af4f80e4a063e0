"""What ends an application that records, besides its user: nothing that was recorded may be lost."""

import signal
import subprocess
import time
import unittest

import desktop
import sound
import support


class EndsOfTheDesktop(desktop.DesktopTest):
    def setUp(self):
        super().setUp()
        self.serve()
        self.play_tones()
        self.set_up()
        self.start_tray()

    def status(self):
        return self.draft(self.meeting)["recording_status"]

    def record(self, *arguments):
        """An application with a recording that has some sound in it."""
        process = self.start("corvane", *arguments)
        self.wait_for_item()
        self.choose("Start Recording")
        self.wait_for(lambda: any(self.root.glob("meetings/*/system-chunks/*.wav")), "the recording")
        self.meeting = next(self.root.glob("meetings/*")).name
        self.after(time.monotonic(), 1.5)
        return process

    def assert_finished(self):
        self.assertEqual(self.status(), "recorded")
        file = self.root / "recordings" / (self.meeting + ".wav")
        samples = sound.finished_file(file)
        self.assertGreater(len(samples), 48000)
        self.assertGreater(sound.amplitude(samples[:48000], sound.MICROPHONE_HERTZ), 0.1)

    def assert_recovered(self):
        """What no process finished is offered by the next one."""
        self.assertEqual(self.status(), "recording")
        self.ctl("recover", self.meeting, "--no-process")
        self.assert_finished()

    def manage_session(self):
        self.manager = subprocess.Popen([sound.HELPERS / "FakeSessionManager"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True, env=self.environment)
        self.addCleanup(self.end, self.manager)
        self.environment["SESSION_MANAGER"] = self.manager.stdout.readline().strip()

    def tell_manager(self, command):
        self.manager.stdin.write(command + "\n")
        self.manager.stdin.flush()

    def test_a_logout_finishes_the_recording_and_is_not_held_up(self):
        self.manage_session()
        process = self.record("--show")
        for expected in ("registered", "saved"):
            self.assertEqual(self.manager.stdout.readline().strip(), expected)
        for command in ("save", "end"):  # both may come to nothing, as far as an application can know
            self.tell_manager(command)
            self.assertEqual(self.manager.stdout.readline().strip(), "saved")
        self.tell_manager("cancel")
        self.assertIn("Stop Recording", self.tray("menu"))
        self.assertIsNone(process.poll())
        self.tell_manager("end")
        self.assertEqual(self.manager.stdout.readline().strip(), "saved")
        self.tell_manager("die")
        self.assertEqual(process.wait(support.LIMIT), 0)
        self.assertEqual(process.stderr.read(), b"")
        self.assertEqual(self.manager.stdout.readline().strip(), "left")
        self.assert_finished()

    def test_a_display_server_that_dies_takes_no_recording_along(self):
        process = self.record("--show")
        self.wait_for_window()
        self.display.kill()
        process.wait(support.LIMIT)
        self.assertNotIn(process.returncode, (-signal.SIGSEGV, -signal.SIGABRT))
        self.assert_recovered()

    def test_a_bus_that_dies_ends_no_recording(self):
        process = self.record()
        self.assertEqual(self.windows(), [])
        self.bus.kill()
        self.bus.wait()
        window = self.wait_for_window()  # as there is no tray any more
        self.assertIsNone(process.poll())
        self.press(window, "ctrl+q")
        self.press(window, "shift+Tab", "space")
        self.assertEqual(process.wait(support.LIMIT), 0)
        self.assert_finished()

    def test_a_kill_leaves_what_was_recorded(self):
        process = self.record()
        process.kill()
        process.wait(support.LIMIT)
        self.assert_recovered()


if __name__ == "__main__":
    unittest.main()
