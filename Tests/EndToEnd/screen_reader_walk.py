"""The whole road as somebody who sees nothing of the window takes it: by what the tree says and does, and by the tray."""

import array
import json
import pathlib
import re
import subprocess
import unittest

import screen_reader
import sound
import support

READER = "/usr/share/pocketsphinx/test/data/librivox/sense_and_sensibility_01_austen_64kb-0880.wav"
PROMPTER = "/usr/share/asterisk/sounds/en_US_f_Allison/vm-intro.g722"


class Walk(screen_reader.ReaderTest):
    def setUp(self):
        super().setUp()
        self.serve()
        self.start_window_manager()
        self.start_keyring()
        self.start_reader()
        self.start_tray()

    def speak(self, sink, path):
        """Until all of it has been said."""
        clip = self.home / (pathlib.Path(path).stem + ".wav")
        source = ["-f", "g722", "-i", path] if path.endswith(".g722") else ["-i", path]
        subprocess.run(["ffmpeg", "-nostdin", "-v", "error", *source, "-ar", "48000", clip], check=True)
        player = subprocess.Popen(["paplay", "--device=" + sink, clip], env=self.environment)
        self.addCleanup(self.end, player)
        self.assertEqual(player.wait(support.LIMIT), 0)

    def end_by_key(self, process):
        self.press(self.wait_for_window(), "ctrl+q")
        self.assertEqual(process.wait(support.LIMIT), 0)
        self.assertEqual(process.stderr.read(), b"")

    def choose_from(self, picker, choice):
        self.act(picker, "combo box")
        self.act(choice, "list item")
        self.find(picker, "combo box", lambda one: one.description == choice)

    def run_directory(self):
        return next((self.root / "runs").iterdir())

    def go_through_setup(self):
        pages = ["Welcome to Corvane", "Hugging Face", "Ollama", "Local Tools"]
        for page in pages:
            self.find(page, "heading", lambda one: one.is_usable() and one.parent.name == "Setup")
            self.find("Continue", "push button")
            if page == "Hugging Face":
                field = self.find("Hugging Face token", "password text")
                self.assertEqual(self.ask("write", field.path, "hf_walked"), [True])
                self.act("Save Token")
                self.find("Hugging Face token is saved.")
            if page == "Local Tools":
                self.wait_for(lambda: len([name for name in self.names("list item")
                                           if re.fullmatch(r"\S+: (Ready|Missing)", name)]) == 4, "the tools")
            self.act("Continue")
        self.act("Finish Setup")
        self.wait_until_gone("Setup", "dialog")
        self.assertTrue(self.defaults()["setupCompleted"])

    def record_a_talk(self):
        self.choose("Start Recording")
        self.find("Meeting in progress")
        self.choose_from("Language", "English")
        self.speak("micfeed", READER)
        self.choose("Pause Recording")
        self.find("Meeting paused")
        self.act("Resume")
        self.find("Meeting in progress")
        self.speak("speaker", PROMPTER)
        self.choose("Stop Recording")

    def read_transcript(self):
        self.find("Transcript ready")
        turn = self.bring(re.compile(r"\d\d:\d\d:\d\d, .+: .+"), "list item")
        said = " ".join(segment["text"].strip() for segment in self.document("result.json")["segments"])
        self.assertIn(turn.name.split(": ", 1)[1], said)
        meeting = self.find(re.compile("Meeting .*"), "list item")
        self.assertIn("selected", meeting.states)

    def document(self, name):
        return json.loads((self.run_directory() / name).read_bytes())

    def name_a_speaker(self):
        label = self.document("result.json")["segments"][0]["speaker"]
        field = self.bring("Name, " + label, "text")
        self.assertEqual(self.ask("write", field.path, "Ann Lee"), [True])
        self.wait_for(lambda: self.document("result.json")["speaker_names"].get(label) == "Ann Lee", "the name to be stored")
        self.bring(re.compile(r"[\d:]+, Ann Lee: .+"), "list item")

    def test_from_the_first_start_to_named_speakers(self):
        for path in (READER, PROMPTER):
            if not pathlib.Path(path).exists():
                self.skipTest(path + " is not installed")
        del self.environment["CORVANE_WORKER_PATH"]
        process = self.start("corvane")
        self.go_through_setup()
        self.record_a_talk()
        self.read_transcript()
        self.name_a_speaker()
        self.change_settings()
        self.end_by_key(process)

    def change_settings(self):
        self.act("Settings")
        switch = self.act("Enable diarization by default", "check box", "Toggle")
        self.assertIn("checked", switch.states)
        self.wait_for(lambda: self.defaults().get("defaultDiarizationEnabled") is False, "the setting to be stored")
        self.wait_until_gone("Speakers", "combo box")

    def heard(self):
        """Of the tone, in what the loudspeaker gets in half a second."""
        recorder = subprocess.Popen(["parec", "--device=speaker.monitor", "--format=s16le", "--rate=48000",
                                     "--channels=1", "--latency-msec=50"], env=self.environment,
                                    stdout=subprocess.PIPE)
        self.addCleanup(self.end, recorder)
        samples = array.array("h", recorder.stdout.read(48000))
        recorder.kill()
        return sound.amplitude([value / 32768 for value in samples], screen_reader.TONE) > 0.3

    def test_from_a_known_voice_to_every_page(self):
        self.set_up()
        meeting = self.prepare_voices()
        process = self.start("corvane", "--show")
        self.act(re.compile("second, .*"), "list item")
        self.find(re.compile("Suggested Ann · .*"))
        self.act("Accept")
        self.find("Identified as Ann")
        self.wait_for(lambda: self.ctl_json("match", meeting)["suggestions"][0]["status"] == "accepted", "the answer")

        self.assertFalse(self.heard())
        self.bring(re.compile(r"00:00:01, a/b: .*"), "list item")
        self.act(re.compile(r"00:00:01, a/b: .*"), "list item")
        self.bring("Stop Audio", "push button")
        self.wait_for(self.heard, "the tone")
        self.act("Stop Audio")
        self.bring("Play Meeting", "push button")
        self.wait_for(lambda: not self.heard(), "silence")

        self.bring("Profiles", "button menu")
        self.act("Profiles")
        self.act("Create Profile From This Voice")
        name = self.find("Display name", "text")
        self.assertEqual(self.ask("write", name.path, "Bo"), [True])
        self.act("Create")
        self.wait_for(lambda: [one["name"] for one in self.ctl_json("profiles")] == ["Ann", "Bo"], "the profile")

        self.act("Speaker Profiles", "push button")
        self.find("Display name, Bo", "text")
        slider = self.find("Global threshold", "slider")
        self.assertEqual(self.ask("act", slider.path, "Increase"), [True])
        self.wait_for(lambda: self.ctl_json("profiles", "threshold")["threshold"] > 0.825, "the threshold")

        self.act("Keyboard shortcuts", "push button")
        self.find(re.compile("New recording: Ctrl[+]R"))
        self.act("Close", "push button")
        self.wait_until_gone("Keyboard Shortcuts", "dialog")
        self.end_by_key(process)


if __name__ == "__main__":
    unittest.main()
