"""Every page of the window as its tree: what can be used has a name and a role, and no name stands for two things."""

import re
import subprocess
import unittest

import screen_reader
import sound

WITHOUT_MEANING = {"", "unknown", "filler", "invalid", "invalid role", "redundant object", "panel"}
SPEAKING = {"push button", "toggle button", "check box", "combo box", "text", "password text", "slider", "spin box",
            "progress bar", "link", "menu item", "list item", "list", "dialog", "alert", "notification"}


class AccessibleTree(screen_reader.ReaderTest):
    def setUp(self):
        super().setUp()
        self.serve()
        self.start_window_manager()
        self.start_keyring()
        self.start_reader()
        self.start_tray()

    def faults(self):
        found = []
        for one in self.showing():
            usable = set(one.actions) - {"SetFocus"} or one.role in SPEAKING
            if usable and (not one.name.strip() or one.role in WITHOUT_MEANING):
                found.append(f"{one} in {one.parent}: nobody is told what it is")
            if "focusable" in one.states and one.role in WITHOUT_MEANING:
                found.append(f"{one} in {one.parent}: the keyboard comes to something without a role")
            named = [(child.role, child.name, child.description) for child in one.children
                     if "showing" in child.states and child.role == "push button"]
            found += [f"{twice} in {one}: stands for two things" for twice in set(named) if named.count(twice) > 1]
            if one.text and one.role == "password text":
                self.assertEqual(set(one.text), {"\u2022"}, one)
        return found

    def check(self, name, role=None):
        """The page on which this is."""
        self.find(name, role, lambda one: True)
        with self.subTest(page=str(name)):
            self.assertEqual(self.faults(), [])

    def check_setup(self):
        for page in ("Welcome to Corvane", "Hugging Face", "Ollama", "Local Tools"):
            self.find(page, "heading", lambda one: one.parent.name == "Setup")
            if page == "Hugging Face":
                self.ask("write", self.find("Hugging Face token").path, "hf_secret")
            self.check(page)
            self.act("Continue")
        self.check("Ready to Record", "heading")
        self.act("Finish Setup")
        self.wait_until_gone("Ready to Record")

    def check_answers(self, title):
        """Of an alert, which is left by its last answer."""
        self.check(title, "dialog")
        self.act(re.compile("Cancel|Do Not Quit"), "push button")
        self.wait_until_gone(title)

    def check_profiles(self):
        self.act("Speaker Profiles", "push button")
        self.check("Display name, Ann", "text")
        self.act("Delete, Ann")
        self.check_answers("Delete speaker profile?")
        self.act("Delete All")
        self.check_answers("Delete all voice profiles?")

    def check_settings(self):
        self.act("Settings", "push button")
        self.check("Hugging Face", "heading")
        self.act("Speakers", "combo box")
        self.act("Range", "list item")
        self.check("HF_TOKEN", "password text")
        self.bring("Check for Updates", "push button")
        self.check("Updates", "heading")

    def check_meeting(self):
        self.act(re.compile("second, .*"), "list item")
        for title in ("Processing Details", re.compile("Processing, .*")):
            self.act(title, "push button")
        self.check("Transcript ready")
        self.bring("Profiles", "push button")
        self.act("Profiles")
        self.check("Create Profile From This Voice", "menu item")
        self.act("Create Profile From This Voice")
        self.check_answers("Create Speaker Profile")
        self.press(self.wait_for_window(), "ctrl+1", "Delete")
        self.check_answers("Delete meeting?")
        self.act("Keyboard shortcuts")
        self.check("Keyboard Shortcuts", "dialog")
        self.act("Close")

    def check_call(self):
        """A window of a call, in front of which the question comes down."""
        call = subprocess.Popen([sound.HELPERS / "ShowWindow", "zoom", "zoom", "Zoom Meeting"], env=self.environment)
        self.addCleanup(self.end, call)
        self.check(re.compile(".*(Zoom|call|meeting).*"), "notification")

    def test_every_page_tells_what_is_on_it(self):
        self.play_tones()
        self.prepare_voices()
        process = self.start("corvane")
        self.check_setup()
        self.check_settings()
        self.check_profiles()
        self.check_meeting()
        self.check_call()
        self.choose("Start Recording")
        self.check("Meeting in progress")
        self.press(self.wait_for_window(), "ctrl+q")
        self.check_answers("Quit while recording?")
        self.assertIsNone(process.poll())


if __name__ == "__main__":
    unittest.main()
