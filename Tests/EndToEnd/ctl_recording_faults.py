"""What a recording must survive: the process killed at any moment, a full disk, a damaged chunk, devices that go away.

CORVANE_KILLS: how many recordings are killed, 4 if it is not set.
"""

import json
import os
import random
import resource
import shutil
import signal
import subprocess
import time

import sound
import support

SHORT_CHUNKS = sound.HELPERS / "ShortChunks"
MOST_LOST = 1.0  # seconds that may be missing from the end


class Killed(sound.SoundTest):
    """Each kill meets another moment. What is lost is counted from before capture starts: an upper bound."""

    def setUp(self):
        super().setUp()
        self.serve()
        self.environment["CHUNK_SECONDS"] = "0.2"
        self.random = random.Random(20260302)

    def begun(self, meeting):
        """When capture was about to start, on the monotonic clock."""
        reference = 978307200  # 2001-01-01, from which the draft counts
        return time.monotonic() - (time.time() - reference - self.draft(meeting)["started_at"])

    def recover(self, meeting):
        """The finished file; a meeting that was finished before its killer came is no failure."""
        result = self.run_program("corvanectl", "recover", meeting, "--no-process", "--json")
        if result.returncode != 0:
            self.assertIn(b"is no recording that was left behind", result.stderr)
            self.assertEqual(self.draft(meeting)["recording_status"], "recorded")
        path = self.root / "recordings" / (meeting + ".wav")
        self.assertEqual(sorted(os.listdir(path.parent)), [path.name], "left-overs of finishing")
        return path

    def check(self, meeting, recorded, what):
        rate, samples = sound.first_channel(self.recover(meeting))
        lost = recorded - len(samples) / rate
        self.losses.append((round(lost, 3), what))
        self.assertLess(lost, MOST_LOST, what)
        self.assertGreater(max(samples[-rate // 10:]), 0.2, "no sound at the end, " + what)

    def kill_while_recording(self):
        process, meeting, told = self.start_recording(program=SHORT_CHUNKS)
        self.after(told, self.random.uniform(0, 1.5))
        process.kill()
        recorded = time.monotonic() - self.begun(meeting)
        process.wait()
        self.check(meeting, recorded, "killed while recording")

    def kill_while_finishing(self):
        process, meeting, told = self.start_recording("--no-process", program=SHORT_CHUNKS)
        self.after(told, 0.5)
        self.sound_before(meeting, 200)
        process.send_signal(signal.SIGTERM)
        recorded = time.monotonic() - self.begun(meeting)
        self.after(time.monotonic(), self.random.uniform(0, 0.4))
        process.kill()
        process.wait()
        mixing = os.path.exists(self.root / "recordings" / (meeting + "-mix"))
        for _ in range(self.random.randrange(3)):
            again = self.start("corvanectl", "recover", "--no-process")
            self.after(time.monotonic(), self.random.uniform(0, 0.5))
            again.kill()
            again.wait()
        self.check(meeting, 200 + recorded, "killed while joining" if mixing else "killed while finishing")

    def test_a_kill_costs_less_than_a_second_whenever_it_comes(self):
        self.play_tones()
        self.losses = []
        ways = (self.kill_while_recording, self.kill_while_finishing)
        for kill in range(int(os.environ.get("CORVANE_KILLS", 4))):
            with self.subTest(kill=kill):
                shutil.rmtree(self.root, ignore_errors=True)
                ways[kill % len(ways)]()
        for way in sorted({what for _, what in self.losses}):
            lost = sorted(seconds for seconds, what in self.losses if what == way)
            print(f"{way}: {len(lost)} kills, lost {lost[len(lost) // 2]:.3f} s in the middle, {lost[-1]:.3f} s at most")


class Mended(sound.SoundTest):
    """What cannot be finished as it is is told, kept, and finished once its cause is mended."""

    def setUp(self):
        super().setUp()
        self.serve()
        self.play_tones()

    def check_failure(self, messages, meeting, *words):
        for word in (*words, b"Failed to stop recording", b"corvanectl recover " + meeting.encode()):
            self.assertIn(word, messages)
        self.assertEqual(self.draft(meeting)["recording_status"], "recording")

    def test_a_disk_that_takes_no_more(self):
        # A limit on the size of a file fails a write as a full disk does, and needs no privilege.
        process = subprocess.Popen(
            [support.BIN / "corvanectl", "record", "--no-process"], stdin=subprocess.DEVNULL, stderr=subprocess.PIPE,
            stdout=subprocess.PIPE, env=self.environment,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (150_000, 150_000)))
        self.addCleanup(self.end, process)
        # libpulse too has words for a file that it cannot make.
        meeting = next(line for line in process.stderr if line.startswith(b"Recording")).decode().split()[-1]
        begun = time.monotonic()
        self.after(begun, 3)
        output, messages = self.interrupt(process, signal.SIGTERM)
        self.assertEqual((process.returncode, output), (1, b""), messages)
        for track in (b"the microphone", b"system audio"):
            self.assertEqual(messages.count(b"losing the sound of " + track), 1, messages)
        self.check_failure(messages, meeting)
        tracks = self.ctl_json("recover", "--no-process")["capture"]
        for track, seconds in (("microphone", 150_000 / 88_200), ("system", 150_000 / 384_000)):
            self.assertAlmostEqual(tracks[track]["recordedSeconds"], seconds, delta=0.1)
            self.assertEqual(tracks[track]["verdict"], "sound missing")

    def test_a_damaged_chunk(self):
        process, meeting, begun = self.start_recording(program=SHORT_CHUNKS, CHUNK_SECONDS="0.3")
        self.after(begun, 1.5)
        process.kill()
        process.wait()
        chunk = self.root / "meetings" / meeting / "system-chunks" / "000002.wav"
        whole = chunk.read_bytes()
        chunk.write_bytes(whole[40:])
        self.check_failure(self.ctl("recover", "--no-process", expect=1).stderr, meeting, b"system-chunks/000002.wav")
        chunk.rename(self.home / "damaged.wav")
        length = self.ctl_json("recover", "--no-process")["audioSeconds"]
        self.assertGreater(length, 1.4, "the microphone is whole")


class Devices(sound.SoundTest):
    """The right source in the right track, with each hole told and known."""

    def go_through_changes(self):
        self.control("load othermicfeed", "load othermic", "set-default-source mic")
        self.play_tones()
        self.play("othermicfeed", 550)
        leaving = self.play("second", 1300)
        process, meeting, begun = self.start_recording("--no-process")
        changes = (("set-default-source othermic",), ("set-default-sink second",), ("unload second",),
                   ("unload othermic", "unload mic"), ("load mic",), ("kill",), ("start",))
        for change in changes:
            self.after(time.monotonic(), 0.8)
            if change == ("unload second",):
                self.end(leaving)  # or it would go on elsewhere
            self.control(*change)
        self.play_tones()
        self.after(time.monotonic(), 0.8)
        messages = self.interrupt(process)[1].decode()
        lasted = time.monotonic() - begun
        self.assertEqual(process.returncode, 0, messages)
        report = json.loads((self.root / "meetings" / meeting / "capture.json").read_bytes())["tracks"]
        for track, directory, first, second in (("microphone", "chunks", 440, 550),
                                                ("system", "system-chunks", 1000, 1300)):
            rate, samples = sound.first_channel(self.root / "meetings" / meeting / directory / "000000.wav")
            self.assertAlmostEqual(len(samples) / rate, lasted, delta=0.4, msg=track)
            heard = sound.tones_in(samples, rate, (440, 550, 1000, 1300))
            tones = [tone for tone in heard if tone]
            self.assertEqual((set(tones), tones[0], tones[-1]), ({first, second}, first, first), (track, heard))
            self.assertAlmostEqual(report[track]["silent_seconds"], heard.count(0) / 10, delta=0.5, msg=(track, heard))
            self.assertGreater(report[track]["gap_seconds"], 0.8, track)
        for words, times in (("the microphone changed to", 1), ("system audio changed to", 2),
                             ("without the microphone", 2), ("the microphone is back", 2),
                             ("without system audio", 1), ("system audio is back", 1)):
            # A server that starts makes one of its devices the default after the other.
            self.assertGreaterEqual(messages.count(words), times, messages)

    def test_on_pulseaudio(self):
        self.serve("pulseaudio")
        self.go_through_changes()

    def test_on_pipewire(self):
        self.serve("pipewire")
        self.go_through_changes()
