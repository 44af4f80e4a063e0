"""corvanectl and a worker that it starts, follows and loses."""

import json
import pathlib
import signal
import unittest

import support


class Processing(support.EndToEndTest):
    def state(self, run):
        return json.loads((run / "job_state.json").read_text())

    def hold(self, *options):
        """A followed run whose worker waits for a file."""
        meeting = self.imported()
        process = self.start("corvanectl", "process", meeting, "--wait", *options, FAKE_WORKER="hold")
        run = pathlib.Path(process.stdout.readline().decode().rstrip("\n"))
        self.wait_for(lambda: self.state(run)["message"] == "Holding", "the worker")
        return meeting, process, run

    def test_completes(self):
        meeting = self.imported()
        result = self.ctl("process", "latest", "--wait")
        run = pathlib.Path(result.stdout.decode().rstrip("\n"))
        self.assertEqual(run.parent, self.root / "runs")
        self.assertIn(b"All done", result.stderr)
        self.assertNotIn(b"\x1b", result.stderr)
        self.assertEqual(self.ctl("transcript", meeting).stdout.decode(),
                         "[00:00:00.000] SPEAKER_00: Good morning.\n[00:00:01.500] a/b: Bonjour \x1b[31m.\n")

    def test_passes_settings_on_and_keeps_them(self):
        meeting = self.imported()
        arguments = self.home / "arguments"
        self.ctl("process", meeting, "--language", "en", "--speakers=2-4", "--wait",
                 FAKE_WORKER_ARGUMENTS=str(arguments))
        self.assertIn("--language en", arguments.read_text())
        self.assertIn("--min-speakers 2 --max-speakers 4", arguments.read_text())
        settings = self.ctl_json("show", meeting)["settings"]
        self.assertEqual((settings["language"], settings["speakerCountMode"], settings["minSpeakerCount"]),
                         ("en", "range", 2))
        self.ctl("process", meeting, "--speakers", "4-2", expect=2)
        self.assertEqual(len(self.ctl_json("show", meeting)["runs"]), 1)

    def test_a_worker_that_fails(self):
        meeting = self.imported()
        result = self.ctl("process", meeting, "--wait", expect=1, FAKE_WORKER="fail")
        self.assertIn(b"the model is missing", result.stderr)
        self.assertIn(b"the model is missing", self.ctl("transcript", meeting, expect=1).stderr)

    def test_a_worker_that_dies_without_a_word(self):
        meeting = self.imported()
        result = self.ctl("process", meeting, "--wait", "--json", expect=1, FAKE_WORKER="die")
        run = json.loads(result.stdout)["run"]
        self.assertIn(f"status 137 and without a last word; see {run}/worker.stderr.log\n"
                      "  first line\n  out of memory\n", result.stderr.decode())
        # Its state says "running" for ever; only the user can know better.
        self.ctl("process", meeting, expect=1)
        self.ctl("process", meeting, "--wait", "--force")
        self.ctl("transcript", meeting)

    def test_the_worker_outlives_an_interrupted_and_a_killed_follower(self):
        for number, status in ((signal.SIGINT, 130), (signal.SIGTERM, 143), (signal.SIGKILL, -9)):
            with self.subTest(number=number):
                meeting, process, run = self.hold()
                _, errors = self.interrupt(process, number)
                self.assertEqual(process.returncode, status)
                if number != signal.SIGKILL:
                    self.assertIn(b"Processing goes on", errors)
                running = self.ctl_json("status")["running"]
                self.assertEqual([(job["run"], job["progress"]) for job in running], [(str(run), 0.25)])
                self.assertIn(b"still being processed (25 %)", self.ctl("transcript", meeting, expect=1).stderr)
                (run / "go").touch()
                self.wait_for(lambda: self.state(run)["status"] == "completed", "the worker's end")
                self.ctl("transcript", meeting)

    def test_without_waiting(self):
        self.imported()
        report = self.ctl_json("process", FAKE_WORKER="hold")
        run = pathlib.Path(report["run"])
        self.assertEqual(report["status"], "running")
        (run / "go").touch()
        self.wait_for(lambda: self.state(run)["status"] == "completed", "the worker's end")

    def test_a_meeting_in_processing_is_left_alone(self):
        meeting, process, run = self.hold()
        self.ctl("process", meeting, expect=1)
        self.assertIn(b"in processing", self.ctl("delete", meeting, "--yes", expect=1).stderr)
        self.assertTrue(run.is_dir())
        self.ctl("delete", meeting, "--yes", "--force")
        _, errors = process.communicate(timeout=support.LIMIT)
        self.assertEqual(process.returncode, 1)
        self.assertIn(b"deleted while the worker ran", errors)

    def test_nothing_to_process(self):
        self.assertIn(b"no meeting yet", self.ctl("process", expect=3).stderr)
        meeting = self.imported()
        pathlib.Path(self.ctl_json("show", meeting)["audio"]).unlink()
        self.assertIn(b"missing", self.ctl("process", meeting, expect=1).stderr)


if __name__ == "__main__":
    unittest.main()
