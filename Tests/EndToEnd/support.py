"""The real executables in a home of their own, without a session bus."""

import json
import os
import pathlib
import signal
import subprocess
import tempfile
import time
import unittest
import wave

BIN = pathlib.Path(os.environ["CORVANE_BIN"])
FAKE_WORKER = pathlib.Path(__file__).resolve().parent / "fake-worker.sh"
LIMIT = 20  # seconds; only a fault reaches it


class EndToEndTest(unittest.TestCase):
    limit = LIMIT

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.home = pathlib.Path(directory.name)
        self.root = self.home / "data" / "Corvane"
        self.environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_RUNTIME_DIR": str(self.home / "runtime"),
            "LANG": "C",
            "CORVANE_WORKER_PATH": str(FAKE_WORKER),
            "FAKE_WORKER": "complete",
        }
        # Where the build is instrumented, its settings count for the programs too.
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"):
            if name in os.environ:
                self.environment[name] = os.environ[name]

    def run_program(self, program, *arguments, stdin=b"", **environment):
        return subprocess.run([BIN / program, *arguments], input=stdin, capture_output=True, timeout=LIMIT,
                              env=self.environment | environment, check=False)

    def ctl(self, *arguments, expect=0, **options):
        """What corvanectl did, after a look at its exit status."""
        result = self.run_program("corvanectl", *arguments, **options)
        self.assertEqual(result.returncode, expect, result.stderr.decode())
        return result

    def ctl_json(self, *arguments, **options):
        return json.loads(self.ctl(*arguments, "--json", **options).stdout)

    def start(self, program, *arguments, **environment):
        process = subprocess.Popen([BIN / program, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, env=self.environment | environment)
        self.addCleanup(self.end, process)
        return process

    @staticmethod
    def end(process):
        if process.poll() is None:
            process.kill()
        process.communicate()

    def wait_for(self, condition, what):
        end = time.monotonic() + self.limit
        while not condition():
            if time.monotonic() > end:
                self.fail("waited in vain for " + what)
            time.sleep(0.01)

    def make_audio(self, name="talk.wav"):
        path = self.home / name
        with wave.open(str(path), "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(2)
            file.setframerate(8000)
            file.writeframes(bytes(16000))
        return path

    def imported(self, name="talk.wav"):
        return self.ctl_json("import", self.make_audio(name))[0]["id"]

    def processed(self, name="talk.wav"):
        meeting = self.imported(name)
        self.ctl("process", meeting, "--wait")
        return meeting

    def interrupt(self, process, number=signal.SIGINT):
        process.send_signal(number)
        return process.communicate(timeout=LIMIT)
