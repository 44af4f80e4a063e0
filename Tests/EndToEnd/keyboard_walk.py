"""From an imported file to a published page by the keyboard alone; where it is, the tree says."""

import json
import re
import subprocess
import unittest

import screen_reader
import sound
import support

DATABASE = "0123456789abcdef0123456789abcdef"
TOKEN = "secret_x"
REACHED_BY_TAB = {"push button", "check box", "combo box", "text", "password text", "slider", "spin box"}


class KeyboardWalk(screen_reader.ReaderTest):
    def setUp(self):
        super().setUp()
        self.start_window_manager()
        self.start_keyring()
        self.start_notion()
        self.start_reader()
        self.start_tray()

    def start_notion(self):
        databases = self.home / "databases.json"
        databases.write_text(json.dumps({"token": TOKEN, "databases": [
            {"id": DATABASE, "title": "Team meetings",
             "columns": {"Name": "title", "Meeting ID": "rich_text", "Who": "multi_select"}}]}))
        self.notion = subprocess.Popen([sound.HELPERS / "FakeNotionServer", databases], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.end, self.notion)
        self.set_up(notionServiceURL=self.notion.stdout.readline().strip())

    def pages(self):
        self.notion.stdin.write("pages\n")
        self.notion.stdin.flush()
        return json.loads(self.notion.stdout.readline())["pages"]

    def look(self, elsewhere_than=None):
        """At what has the keyboard: somebody who does not see it must be told what it is."""
        here = []

        def is_somewhere():
            here[:] = self.focused()
            return here and (elsewhere_than is None or here[0].path != elsewhere_than.path)
        self.wait_for(is_somewhere, f"the keyboard to leave {elsewhere_than}")
        self.assertTrue(here[0].name, f"the keyboard is on {here[0]}")
        return here[0]

    def tab(self, here):
        """To the next element; a key that leads nowhere is a trap."""
        self.xdotool("key", "Tab")
        return self.look(elsewhere_than=here)

    def go_to(self, name, role):
        """By Tab alone, once around at most."""
        start = self.look()
        here = start
        while not (here.role == role and (name.fullmatch(here.name) if hasattr(name, "fullmatch")
                                          else here.name == name)):
            here = self.tab(here)
            self.assertNotEqual(here.path, start.path, f"{role} '{name}' is not on the way of Tab")
        return here

    def press_at(self, name, role="push button", key="Return"):
        self.go_to(name, role)
        self.xdotool("key", key)

    def type_at(self, name, role, text):
        self.go_to(name, role)
        self.type_text(text)

    def assert_all_is_reached(self):
        """Tab comes back to where it began and has been at all that can be used, but for the rows of lists, which the
        arrow keys reach."""
        start = self.look()
        here, seen, road = start, {start.path}, [str(start)]
        while (here := self.tab(here)).path != start.path:
            self.assertNotIn(here.path, seen, f"Tab goes in a circle that leaves out {start}")
            self.assertIn(here.role, REACHED_BY_TAB | {"list", "list item"}, here)
            seen.add(here.path)
            road.append(str(here))
        shown = [one for one in self.showing() if one.is_usable() and one.role in REACHED_BY_TAB and
                 "focusable" in one.states and one.parent.role != "list item"]
        left = [str(one) for one in shown if one.path not in seen]
        self.assertEqual(left, [], f"Tab goes by way of {road}")

    def test_from_an_import_to_a_published_page(self):
        talk = self.make_audio()
        process = self.start("corvane", "--show")
        self.press(self.wait_for_window(), "Tab")
        self.assert_all_is_reached()

        self.type_at("Notion integration token", "password text", TOKEN)
        self.press_at("Save, Notion integration token")
        self.find("Notion token is saved in keychain.")
        self.assertFalse(any(TOKEN in (one.text or "") for one in self.tree().all()))
        told = "".join(self.ask("texts"))
        self.assertEqual(told[:len(TOKEN)], len(TOKEN) * "\u2022")
        self.assertFalse(set(TOKEN) & set(told))
        self.type_at("Notion database URL", "text", f"https://www.notion.so/{DATABASE}")
        self.press_at("Sync DB")
        self.find("Team meetings")
        self.assert_all_is_reached()

        self.xdotool("key", "ctrl+o")
        self.wait_for(lambda: self.look().name == "File name:", "the dialog")
        self.type_text(str(talk))
        self.xdotool("key", "Return")
        self.find("Audio ready")
        self.press_at("Process")
        self.find("Transcript ready")
        self.assert_all_is_reached()

        self.type_at("Name, SPEAKER_00", "text", "Ann")
        self.wait_for(lambda: self.names_of_speakers() == {"SPEAKER_00": "Ann"}, "the name to be stored")
        self.press_at("Sync to Notion")
        self.wait_for(self.pages, "the page")
        self.find("Open Notion page")
        self.press_at("Speaker Profiles")
        self.find("Voice profile matching", "check box")
        self.assert_all_is_reached()
        self.press(self.wait_for_window(), "ctrl+q")
        self.assertEqual(process.wait(support.LIMIT), 0)

    def names_of_speakers(self):
        return json.loads(next(self.root.glob("runs/*/result.json")).read_bytes())["speaker_names"]


if __name__ == "__main__":
    unittest.main()
