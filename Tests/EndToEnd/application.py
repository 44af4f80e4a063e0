"""The application on a desktop: its tray, its window, a second start, and its end."""

import json
import re
import signal
import subprocess
import unittest

import desktop
import support


class Application(desktop.DesktopTest):
    def drafts(self):
        return [json.loads(path.read_bytes()) for path in self.root.glob("meetings/*/metadata.json")]

    def statuses(self):
        return sorted(draft["recording_status"] for draft in self.drafts())

    def start_in_tray(self, *arguments):
        self.set_up()
        self.start_tray()
        process = self.start("corvane", *arguments)
        self.wait_for_item()
        return process

    def record(self):
        self.choose("Start Recording")
        self.wait_for(lambda: "Stop Recording" in self.tray("menu"), "the recording")
        self.assertEqual(self.tray("menu"), ["Stop Recording", "Pause Recording", "Open App"])

    def assert_ended(self, process, errors=b""):
        self.assertEqual(process.wait(support.LIMIT), 0, process.stderr.read())
        self.assertEqual(process.stderr.read(), errors)

    def test_the_tray_records_and_opens_the_window(self):
        self.serve()
        self.play_tones()
        process = self.start_in_tray()
        self.assertEqual((self.tray("property", "Title"), self.tray("menu")),
                         (["Corvane"], ["Start Recording", "Open App"]))
        self.assertEqual(self.windows(), [])
        self.record()
        self.choose("Pause Recording")
        self.wait_for(lambda: self.tray("menu") == ["Stop Recording", "Resume Recording", "Open App"], "the pause")
        self.choose("Stop Recording")
        self.wait_for(lambda: self.statuses() == ["recorded"], "the finished recording")
        self.choose("Open App")
        self.press(self.wait_for_window(), "ctrl+w")
        self.wait_for(lambda: not self.windows(), "the window to close")
        self.assertIsNone(process.poll())
        self.tray("click")
        self.press(self.wait_for_window(), "ctrl+q")
        self.assert_ended(process)

    def documents(self):
        """What the documents under the data directory say, without what no two meetings have in common."""
        own = re.compile(re.escape(str(self.root)) + r"|[0-9A-Fa-f-]{36}|\d{4}-\d\d-\d\d[ T][\d:]+|\d[\d.e+-]*")
        return sorted(path.name + own.sub("#", path.read_text()) for path in self.root.glob("*/*/*.json"))

    def has_sound(self):
        return all(path.stat().st_size > 20000 for path in self.chunks()) and len(self.chunks()) == 2

    def is_processed(self):
        return any('"completed"' in state.read_text() for state in self.root.glob("runs/*/job_state.json"))

    def chunks(self):
        return list(self.root.glob("meetings/*/*chunks/*.wav"))

    def test_in_french_the_same_is_stored(self):
        self.serve()
        self.play_tones()
        stored = []
        for language, start, pause, stop in (
                ("en", "Start Recording", "Pause Recording", "Stop Recording"),
                ("fr", "D\u00e9marrer l\u2019enregistrement", "Mettre l\u2019enregistrement en pause",
                 "Arr\u00eater l\u2019enregistrement")):
            with self.subTest(language=language):
                self.environment |= {"LANGUAGE": language, "XDG_DATA_HOME": str(self.home / language)}
                self.root = self.home / language / "Corvane"
                process = self.start_in_tray()
                self.choose(start)
                self.wait_for(self.has_sound, "the sound")
                self.choose(pause)
                self.choose(stop)
                self.wait_for(self.is_processed, "the run")
                self.wait_for(lambda: self.tray("menu")[0] == start, "the end of the recording")
                self.interrupt(process, signal.SIGTERM)
                self.assertEqual(process.returncode, 0)
                stored.append(self.documents())
                self.tray("leave")
        self.assertEqual(*stored)

    def test_quitting_asks_while_a_recording_runs(self):
        self.serve()
        self.play_tones()
        process = self.start_in_tray("--show")
        window = self.wait_for_window()
        self.record()
        self.press(window, "ctrl+q", "Escape", "ctrl+q")
        self.assertEqual(self.statuses(), ["recording"])
        self.press(window, "shift+Tab", "space")
        self.assert_ended(process)
        self.assertEqual(self.statuses(), ["recorded"])

    def test_the_tray_goes_and_comes_back(self):
        process = self.start_in_tray("--background")
        self.tray("leave")
        self.tray("come")
        self.wait_for_item()
        self.assertIn("Open App", self.tray("menu"))
        self.interrupt(process, signal.SIGTERM)
        self.assertEqual(process.returncode, 0)

    def test_a_second_start_hands_over_and_brings_the_window(self):
        process = self.start_in_tray()
        folder = self.home / "folder"
        folder.mkdir()
        self.make_audio("folder/a \u00fc.wav")
        second = subprocess.run([support.BIN / "corvane", "a \u00fc.wav"], cwd=folder, env=self.environment,
                                timeout=support.LIMIT, capture_output=True, check=False)
        self.assertEqual((second.returncode, second.stderr), (0, b""))
        self.wait_for_window()
        self.wait_for(lambda: self.statuses() == ["imported"], "the import")
        missing = self.run_program("corvane", "nowhere.wav")
        self.assertEqual(missing.returncode, 1)
        self.assertIn(b"there is no file ", missing.stderr)
        self.assertEqual(self.run_program("corvane", "--background").returncode, 0)

        # One that is killed leaves its socket; the next start is not misled by it.
        process.kill()
        process.wait(support.LIMIT)
        third = self.start("corvane", "--show")
        self.wait_for_window()
        self.interrupt(third, signal.SIGINT)
        self.assertEqual(third.returncode, 0)

    def test_a_file_to_import_is_asked_for(self):
        process = self.start_in_tray("--show")
        window = self.wait_for_window()
        self.make_audio("talk.wav")
        self.press(window, "ctrl+o")

        def dialogs():
            return self.xdotool("search", "--onlyvisible", "--name", "^Import Audio$")
        self.wait_for(dialogs, "the dialog")
        self.xdotool("windowfocus", "--sync", dialogs()[0])
        self.xdotool("type", self.home / "talk.wav")
        self.xdotool("key", "Return")
        self.wait_for(lambda: self.statuses() == ["imported"], "the import")
        self.assertEqual(self.drafts()[0]["title"], "talk")
        self.interrupt(process, signal.SIGTERM)
        self.assertEqual(process.returncode, 0)

    def test_many_starts_at_once_are_one_process(self):
        self.set_up()
        self.start_tray()
        starts = [self.start("corvane", "--show") for _ in range(4)]
        self.wait_for(lambda: sum(start.poll() is None for start in starts) == 1, "all but one to end")
        self.assertEqual([start.returncode for start in starts].count(0), 3)
        self.wait_for_window()

    def test_the_first_start_opens_the_window(self):
        self.start_tray()
        self.start("corvane")
        self.wait_for_window()

    def test_without_a_tray_the_window_stays_reachable(self):
        manager = subprocess.Popen(["openbox"], env=self.environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        self.addCleanup(self.end, manager)
        self.set_up()
        process = self.start("corvane")
        window = self.wait_for_window()
        self.press(window, "ctrl+w")
        self.wait_for(lambda: not self.windows(), "the window to be minimised")
        self.assertIsNone(process.poll())
        self.assertEqual(self.run_program("corvane", DESKTOP_STARTUP_ID="start_TIME1").returncode, 0)
        self.press(self.wait_for_window(), "ctrl+q")
        self.assert_ended(process)

    def test_a_signal_during_a_recording_loses_nothing(self):
        self.serve()
        self.play_tones()
        for number in (signal.SIGTERM, signal.SIGHUP):
            with self.subTest(number=number):
                process = self.start_in_tray() if number == signal.SIGTERM else self.start("corvane")
                self.wait_for_item()
                before = len(self.drafts())
                self.record()
                self.interrupt(process, number)
                self.assertEqual(process.returncode, 0)
                self.assertEqual(len(self.drafts()), before + 1)
                self.wait_for(lambda: not self.tray("items"), "the item to go")
        self.assertEqual(self.statuses(), ["recorded", "recorded"])
        self.assertEqual(len(list((self.root / "recordings").iterdir())), 2)

    def test_what_there_is_no_time_to_join_is_recovered_later(self):
        self.serve()
        self.play_tones()
        process = self.start_in_tray()
        self.record()
        meeting = next(self.root.glob("meetings/*")).name
        self.sound_before(meeting, 900)
        process.send_signal(signal.SIGTERM)
        self.wait_for(lambda: (self.root / "recordings" / (meeting + "-mix")).exists(), "the joining")
        self.interrupt(process, signal.SIGTERM)
        self.assertEqual((process.returncode, self.statuses()), (0, ["recording"]))
        self.ctl("recover", meeting, "--no-process")
        self.assertEqual(self.statuses(), ["recorded"])
        self.assertEqual([path.name for path in (self.root / "recordings").iterdir()], [meeting + ".wav"])


class WithoutADesktop(support.EndToEndTest):
    def test_says_what_is_missing_and_what_there_is(self):
        result = self.run_program("corvane")
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"no display", result.stderr)
        self.assertIn(b"Usage: corvane", self.run_program("corvane", "--help").stdout)
        elsewhere = self.run_program("corvane", DISPLAY=":999")
        self.assertEqual(elsewhere.returncode, 1)
        self.assertIn(b"corvane: the display cannot be used; corvanectl works without one\n", elsewhere.stderr)
        self.assertRegex(self.run_program("corvane", "--version").stdout, rb"^corvane \d+\.\d+\.\d+\n$")
        wrong = self.run_program("corvane", "--nonsense")
        self.assertEqual((wrong.returncode, b"--nonsense" in wrong.stderr), (1, True))


if __name__ == "__main__":
    unittest.main()
