"""corvanectl and the people whose voices are known."""

import pathlib
import sqlite3
import unittest

import support


class Voices(support.EndToEndTest):
    def create(self, name):
        return self.ctl("profiles", "create", name).stdout.decode().strip()

    def run_of(self, meeting):
        return pathlib.Path(self.ctl_json("show", meeting)["runs"][0]["directory"])

    def test_people_are_listed_changed_and_forgotten(self):
        self.assertIn(b"No profiles yet", self.ctl("profiles").stderr)
        ann = self.create("Ann")
        self.ctl("profiles", "create", " ", expect=1)
        self.create("bob")
        self.assertEqual([one["name"] for one in self.ctl_json("profiles", "list")], ["Ann", "bob"])
        self.assertEqual(self.ctl_json("profiles", "rename", "bob", "Bob", "--notes", "x")["notes"], "x")
        self.ctl("profiles", "disable", ann[:8].lower())
        self.assertIn("Ann (disabled)", self.ctl("profiles").stdout.decode())
        self.assertIn(b"threshold 0.82", self.ctl("profiles", "matching").stdout)
        self.ctl("profiles", "threshold", "1.5", expect=2)
        self.ctl("profiles", "threshold", "0.5")
        self.ctl("profiles", "matching", "on")
        self.assertEqual(self.ctl_json("profiles", "threshold"), {"matching": True, "threshold": 0.5})
        self.ctl("profiles", "enable", "nobody", expect=3)
        self.ctl("profiles", "swap", expect=2)
        self.ctl("profiles", "delete", "Bob", expect=2)
        self.ctl("profiles", "delete", "Bob", "--yes")
        self.assertEqual([one["id"] for one in self.ctl_json("profiles")], [ann])

    def test_a_voice_is_recognised_in_the_next_meeting(self):
        first, second = self.processed("first.wav"), self.processed("second.wav")
        ann, bo = self.create("Ann"), self.create("Bo")
        self.assertIn(b"Voice added to Ann", self.ctl("speaker", first, "SPEAKER_00", "--profile", "Ann").stderr)
        self.assertIn(b"already linked", self.ctl("speaker", first, "SPEAKER_00", "--profile", ann).stderr)
        self.ctl("speaker", first, "a/b", "--profile", "Bo")
        self.assertTrue((self.run_of(first) / "speaker_profile_a%2Fb.json").is_file())
        self.assertIn(b"matching is off", self.ctl("match", second, expect=1).stderr)
        self.ctl("profiles", "matching", "on")
        suggested = self.ctl_json("match", second)["suggestions"]
        self.assertEqual([(one["label"], one["profile"], one["status"]) for one in suggested],
                         [("SPEAKER_00", ann, "suggested"), ("a/b", bo, "suggested")])
        self.ctl("speaker", second, "SPEAKER_00", "--profile", "Ann")
        self.assertEqual([one["status"] for one in self.ctl_json("match", second)["suggestions"]],
                         ["accepted", "suggested"])
        self.ctl("profiles", "rename", "Ann", "Ann Lee")
        for meeting in (first, second):
            self.assertIn(b"Ann Lee: Good morning.", self.ctl("transcript", meeting).stdout)
        self.assertEqual(self.ctl_json("profiles")[0]["voices"], 2)

        self.assertIn(b"is linked to", self.ctl("speaker", first, "SPEAKER_00", "Eve", expect=1).stderr)
        removed = self.ctl_json("speaker", first, "SPEAKER_00", "--remove")
        self.assertEqual((removed["name"], removed["profile"]), (None, None))
        self.assertEqual(self.ctl_json("profiles")[0]["voices"], 1)
        self.ctl("speaker", first, "SPEAKER_00", "Eve", "--remove", expect=2)

    def test_what_cannot_be_had_is_told(self):
        meeting = self.processed()
        self.create("Ann")
        result = self.ctl("speaker", meeting, "SPEAKER_00", "--profile", "Ann", expect=1, FAKE_WORKER="fail")
        self.assertIn(b"worker exited with status 3: no speech", result.stderr)
        self.assertIn(b"Ann: Good morning.", self.ctl("transcript", meeting).stdout)
        with sqlite3.connect(self.root / "corvane.sqlite") as other:
            other.execute("BEGIN EXCLUSIVE")
            self.assertIn(b"database is locked", self.ctl("profiles", expect=1).stderr)
            self.assertIn(b"Ann", self.ctl("transcript", meeting).stdout)
        other.close()
        document = self.run_of(meeting) / "result.json"
        document.write_bytes(document.read_bytes()[:-9])
        self.assertIn(b"not valid JSON", self.ctl("profiles", "rename", "Ann", "Anne", expect=1).stderr)
        self.assertEqual([one["name"] for one in self.ctl_json("profiles")], ["Anne"])
        (self.root / "corvane.sqlite").write_bytes(b"x" * 5000)
        self.assertIn(b"not a database", self.ctl("profiles", expect=1).stderr)
        self.assertEqual((self.root / "corvane.sqlite").read_bytes(), b"x" * 5000)


if __name__ == "__main__":
    unittest.main()
