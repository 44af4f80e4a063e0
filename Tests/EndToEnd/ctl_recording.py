"""corvanectl's recording commands with a private sound server: tones go in, and are looked for in the finished file."""

import fcntl
import json
import os
import pty
import select
import signal
import subprocess
import termios
import time

import sound
import support


class Recording(sound.SoundTest):
    def setUp(self):
        super().setUp()
        self.serve()

    def check_tones(self, path):
        samples = sound.finished_file(path)
        middle = samples[len(samples) // 2 - 24000:len(samples) // 2 + 24000]
        for hertz in (sound.MICROPHONE_HERTZ, sound.SYSTEM_HERTZ):
            self.assertGreater(sound.amplitude(middle, hertz), 0.1, f"{hertz} Hz")
        self.assertLess(sound.amplitude(middle, 700), 0.01, "noise")
        return len(samples) / 48000

    def test_what_was_played_is_recorded(self):
        self.play_tones()
        result = self.ctl_json("record", "--for", "3", "--title", "Weekly")
        self.assertEqual(result["title"], "Weekly")
        length = self.check_tones(self.root / "recordings" / (result["id"] + ".wav"))
        self.assertAlmostEqual(length, 3, delta=0.5)
        self.assertAlmostEqual(result["audioSeconds"], length, places=2)
        for track in ("microphone", "system"):
            self.assertEqual(result["capture"][track]["verdict"], "good")
            self.assertAlmostEqual(result["capture"][track]["recordedSeconds"], 3, delta=0.5)
        self.assertTrue((self.root / "runs").samefile(os.path.dirname(result["run"])))
        self.assertEqual(self.ctl_json("show", result["id"])["capture"], result["capture"])

        played = self.ctl_json("play", result["id"], "--from", "0:01")
        self.assertAlmostEqual(played["stoppedAt"], length, places=2)
        self.assertIn(b"is only 0:0", self.ctl("play", result["id"], "--from", "1:00", expect=1).stderr)

    def test_a_killed_recording_is_recovered_and_a_living_one_is_left_alone(self):
        self.play_tones()
        process, meeting, begun = self.start_recording()
        self.assertIn(b"No recording was left behind", self.ctl("recover").stderr)
        self.assertIn(b"is being recorded by another process", self.ctl("recover", meeting, expect=1).stderr)
        self.assertEqual([one["meeting"] for one in self.ctl_json("status")["recording"]], [meeting])
        self.after(begun, 3)
        process.kill()
        lasted = time.monotonic() - begun
        process.wait()

        status = self.ctl_json("status")
        self.assertEqual(([one["meeting"] for one in status["recoverable"]], status["recording"]), ([meeting], []))
        result = self.ctl_json("recover", "--no-process")
        self.assertEqual((result["id"], result["run"]), (meeting, None))
        length = self.check_tones(self.root / "recordings" / (meeting + ".wav"))
        self.assertLess(lasted - length, 1.0, "missing seconds")
        self.assertEqual(self.ctl_json("play", meeting)["id"], meeting)
        self.assertIn(b"no recording that was left behind", self.ctl("recover", meeting, expect=1).stderr)

    def test_a_signal_ends_a_recording_well(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            process, meeting, begun = self.start_recording("--no-system", "--no-process", "--json")
            self.after(begun, 0.5)
            output, messages = self.interrupt(process, number)
            self.assertEqual(process.returncode, 0, messages)
            result = json.loads(output)
            self.assertEqual((result["id"], list(result["capture"])), (meeting, ["microphone"]))
            self.assertGreater(result["audioSeconds"], 0.3)
            self.assertEqual(result["capture"]["microphone"]["verdict"], "silent")

    def test_keys_at_a_terminal(self):
        leader, follower = pty.openpty()
        modes = termios.tcgetattr(follower)
        process = subprocess.Popen([support.BIN / "corvanectl", "record", "--no-process"], stdin=follower,
                                   stdout=follower, stderr=follower, start_new_session=True,
                                   preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0),
                                   env=self.environment | {"TERM": "xterm"})
        self.addCleanup(self.end, process)
        shown = bytearray()

        def shows(words):
            if select.select([leader], [], [], 0)[0]:
                shown.extend(os.read(leader, 4096))
            return words in shown
        for words, key in ((b"microphone silent", b"p"), (b"Paused", b"p"), (b"microphone silent", b"q")):
            self.wait_for(lambda: shows(words), words.decode())
            shown.clear()
            os.write(leader, key)
        self.wait_for(lambda: shows(b".wav"), "the finished file")
        self.assertEqual(process.wait(timeout=support.LIMIT), 0)
        self.assertEqual(termios.tcgetattr(follower), modes)
        os.close(leader)
        os.close(follower)
        draft = json.loads(next((self.root / "meetings").glob("*/metadata.json")).read_bytes())
        self.assertEqual(len(draft["chunks"]), 2, "one before the pause and one after it")

    def test_devices(self):
        devices = self.ctl_json("devices")
        self.assertEqual([one["id"] for one in devices["microphones"] if one["isDefault"]], ["mic"])
        self.assertEqual([(one["id"], one["sampleRate"], one["channels"]) for one in devices["outputs"]
                          if one["isDefault"]], [("speaker", 48000, 2)])

    def test_without_a_sound_server_it_says_so(self):
        meeting = self.imported()
        self.environment["PULSE_SERVER"] = "unix:" + str(self.home / "nothing")
        for words in (["devices"], ["record", "--for", "1"], ["play", meeting]):
            result = self.ctl(*words, expect=1)
            self.assertEqual(result.stdout, b"")
            self.assertIn(b"corvanectl: ", result.stderr)
