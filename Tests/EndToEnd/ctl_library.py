"""corvanectl's commands on the library of meetings: what they print, refuse and leave behind."""

import json
import os
import pathlib
import pty
import signal
import subprocess
import unittest

import support


class Library(support.EndToEndTest):
    def on_terminal(self, *arguments, answer=b""):
        """Output and exit status of corvanectl with a terminal for all its streams."""
        leader, follower = pty.openpty()
        process = subprocess.Popen([support.BIN / "corvanectl", *arguments], stdin=follower, stdout=follower,
                                   stderr=follower, env=self.environment | {"TERM": "xterm"})
        self.addCleanup(self.end, process)
        os.close(follower)
        os.write(leader, answer)
        output = b""
        try:
            while block := os.read(leader, 4096):
                output += block
        except OSError:
            pass  # how the end of a terminal shows
        os.close(leader)
        return output, process.wait(timeout=support.LIMIT)

    def test_imports_files_of_any_name(self):
        names = ["it's \"quoted\".wav", "two\nlines.wav", "会议 Ünïcode.wav", "-dash.wav", "no extension", ".hidden"]
        os.chdir(self.home)
        for name in names:
            self.make_audio(name)
        entries = json.loads(self.ctl("import", "--json", "--", *names).stdout)
        self.assertEqual([entry["title"] for entry in entries],
                         ["it's \"quoted\"", "two\nlines", "会议 Ünïcode", "-dash", "no extension", ".hidden"])
        for entry, name in zip(entries, names):
            with open(entry["audio"], "rb") as copy, open(name, "rb") as original:
                self.assertEqual(copy.read(), original.read())
            self.assertEqual(os.stat(entry["audio"]).st_mode & 0o777, 0o600)
        table = self.ctl("meetings").stdout.decode().splitlines()
        self.assertEqual(len(table), 1 + len(names))
        self.assertEqual(sorted(meeting["id"] for meeting in self.ctl_json("meetings")),
                         sorted(entry["id"] for entry in entries))

    def test_watches_calls_until_it_is_interrupted(self):
        for number in signal.SIGINT, signal.SIGTERM:
            watch = self.start("corvanectl", "calls", "watch", "--json", "--facts",
                               DISPLAY="", WAYLAND_DISPLAY="", DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")
            line = json.loads(watch.stdout.readline())
            self.assertEqual(line, {"call": None, "facts": None})
            rest, complaint = self.interrupt(watch, number)
            self.assertEqual((rest, complaint, watch.returncode), (b"", b"", 0))
        self.assertFalse((self.root / "meetings").exists(), "it looks and touches nothing")
        self.ctl("calls", "record", expect=2)

    def test_what_cannot_be_imported_does_not_stop_the_rest(self):
        os.mkfifo(self.home / "pipe")
        good = self.make_audio()
        secret = self.make_audio("locked.wav")
        secret.chmod(0)
        bad = [self.home / "missing.wav", self.home, self.home / "pipe"] + ([secret] if os.getuid() else [])
        result = self.ctl("import", "--json", *bad, good, expect=1)
        self.assertEqual([entry["title"] for entry in json.loads(result.stdout)], ["talk"])
        self.assertEqual(result.stderr.count(b"corvanectl: "), len(bad))
        self.assertEqual(len(list((self.root / "recordings").iterdir())), 1)

    @staticmethod
    def open_files(process):
        for entry in pathlib.Path(f"/proc/{process.pid}/fd").iterdir():
            try:
                yield str(entry.readlink())
            except FileNotFoundError:
                pass  # closed meanwhile

    def test_an_interrupted_import_leaves_nothing(self):
        large = self.home / "large.wav"
        with open(large, "wb") as file:
            file.truncate(400 * 1024 * 1024)
        process = self.start("corvanectl", "import", large)
        recordings = self.root / "recordings"
        # The copy has no name before it is whole.
        self.wait_for(lambda: any(name.startswith(str(recordings) + "/") for name in self.open_files(process)),
                      "the copying")
        self.interrupt(process)
        self.assertEqual(process.returncode, 130)
        self.assertEqual(list(recordings.iterdir()), [])
        self.assertEqual(self.ctl_json("meetings"), [])

    def test_a_full_or_closed_output_is_an_error_and_a_reader_may_leave(self):
        self.imported()
        for target in ("/dev/full", "&-"):
            script = f'"$0" meetings >{target}'
            result = subprocess.run(["sh", "-c", script, support.BIN / "corvanectl"], env=self.environment,
                                    capture_output=True, timeout=support.LIMIT, check=False)
            self.assertEqual(result.returncode, 1)
            self.assertIn(b"corvanectl: standard output: ", result.stderr)
        process = self.start("corvanectl", "meetings")
        process.stdout.close()
        self.assertEqual(process.wait(timeout=support.LIMIT), -13)
        self.assertEqual(process.stderr.read(), b"")

    def test_a_terminal_gets_no_control_characters_of_ours(self):
        meeting = self.processed()
        self.ctl("rename", meeting, "red \x1b[31m\u202e\u009b")
        output, status = self.on_terminal("meetings")
        self.assertEqual(status, 0)
        self.assertIn(b"red \\x1b[31m\\u202e\\u009b", output)
        output, status = self.on_terminal("transcript", meeting)
        self.assertIn(b"a/b: Bonjour \\x1b[31m.", output)
        self.assertNotIn(b"\x1b", output)
        self.assertNotIn("\u009b".encode(), self.ctl("meetings", "--json").stdout)
        self.assertEqual(self.ctl_json("meetings")[0]["title"], "red \x1b[31m\u202e\u009b")

    def test_names_of_speakers_in_every_form(self):
        meeting = self.processed()
        result = self.ctl_json("transcript", meeting)
        self.assertEqual(result["unknown_key"], [1])
        self.assertEqual(result, json.loads(self.ctl("transcript", meeting, "--format", "json").stdout))
        error = self.ctl("speaker", meeting, "SPEAKER_7", "Ann", expect=1).stderr.decode()
        self.assertIn("SPEAKER_00", error)
        self.assertIn("a/b", error)
        self.ctl("speaker", meeting, "a/b", 'Zoë "Z"\nde')
        self.ctl("speaker", meeting, "SPEAKER_00", "Ann")
        self.ctl("speaker", meeting, "SPEAKER_00", "")
        shown = self.ctl_json("show", meeting)
        self.assertEqual([(one["label"], one["name"], one["speechSeconds"]) for one in shown["speakers"]],
                         [("SPEAKER_00", None, 61.5), ("a/b", 'Zoë "Z"\nde', 2)])
        run = shown["runs"][0]["directory"]
        for form in ("text", "srt", "vtt"):
            printed = self.ctl("transcript", meeting, "--format", form).stdout
            name = "transcript." + form.replace("text", "txt")
            with open(os.path.join(run, name), "rb") as file:
                self.assertEqual(printed, file.read())
            self.assertIn('Zoë "Z"\nde: '.encode(), printed)

    def test_damaged_results_are_told_of(self):
        meeting = self.processed()
        path = pathlib.Path(self.ctl_json("show", meeting)["runs"][0]["directory"], "result.json")
        segment = {"start": 1e300, "end": 1e300, "text": "x", "speaker": "A"}
        for text, words in ((json.dumps({"metadata": {}, "segments": [segment], "speakers": []}), b"cannot be printed"),
                            ('{"metadata": {', b"result.json is missing or cannot be read")):
            path.write_text(text)
            self.assertIn(words, self.ctl("transcript", meeting, expect=1).stderr)

    def test_deletes_after_a_question(self):
        meeting = self.processed()
        audio = self.ctl_json("show", meeting)["audio"]
        self.assertIn(b"--yes", self.ctl("delete", meeting, expect=2).stderr)
        _, status = self.on_terminal("delete", meeting, answer=b"n\n")
        self.assertEqual((status, len(self.ctl_json("meetings"))), (1, 1))
        _, status = self.on_terminal("delete", meeting, answer=b"y\n")
        self.assertEqual((status, self.ctl_json("meetings")), (0, []))
        self.assertTrue(os.path.exists(audio))
        self.assertEqual(list((self.root / "runs").iterdir()), [])
        second = self.imported()
        audio = self.ctl_json("show", second)["audio"]
        self.ctl("delete", second[:8].lower(), "--audio", "--yes")
        self.assertFalse(os.path.exists(audio))

    def test_a_recording_that_was_left_behind_is_left_alone(self):
        meeting = self.imported()
        path = self.root / "meetings" / meeting / "metadata.json"
        document = json.loads(path.read_text()) | {"recording_status": "recording"}
        path.write_text(json.dumps(document))
        for command, words in ((("rename", meeting, "x"), b"waits for recovery"),
                               (("delete", meeting, "--yes"), b"waits for recovery"),
                               (("process", meeting), b"corvanectl recover"),
                               (("recover", meeting), b"nothing was recorded")):
            self.assertIn(words, self.ctl(*command, expect=1).stderr)
        self.assertEqual(json.loads(path.read_text()), document)

    def test_another_data_directory(self):
        other = self.home / "other"
        self.ctl("--data-dir", other, "import", self.make_audio())
        self.assertEqual(len(self.ctl_json("meetings", "--data-dir=" + str(other))), 1)
        self.assertFalse(self.root.exists())
        (self.home / "file").write_text("")
        for place in (self.home / "file", "/proc/nowhere"):
            self.assertIn(b"data directory", self.ctl("meetings", "--data-dir", place, expect=1).stderr)

    def test_status_without_worker_and_keyring(self):
        status = self.ctl_json("status", CORVANE_WORKER_PATH="/nonexistent")
        self.assertEqual(status["dataDirectory"], str(self.root))
        self.assertEqual(status["tokenStore"]["reachable"], False)
        self.assertIn("session bus", status["tokenStore"]["error"])
        self.assertEqual(self.ctl_json("status")["worker"], str(support.FAKE_WORKER))

    def test_usage(self):
        self.assertTrue(self.ctl("--version").stdout.startswith(b"corvanectl "))
        for command in ("import", "process", "meetings", "show", "transcript", "rename", "speaker", "delete", "status"):
            help_text = self.ctl(command, "--help").stdout.decode()
            self.assertIn(f"corvanectl {command}", help_text)
            self.assertIn("--json", help_text)
        self.ctl(expect=2)
        self.ctl("import", b"\xff.wav", expect=2)
        self.assertFalse(self.root.exists())


if __name__ == "__main__":
    unittest.main()
