"""corvanectl and Notion: a fake service on the loopback, and a keyring in a session bus of its own."""

import json
import os
import pathlib
import pty
import signal
import subprocess
import termios
import unittest

import support

DATABASE = "0123456789abcdef0123456789abcdef"
SERVER = pathlib.Path(os.environ["CORVANE_TEST_HELPERS"]) / "FakeNotionServer"


class Notion(support.EndToEndTest):
    def setUp(self):
        super().setUp()
        (self.home / "runtime").mkdir(mode=0o700)
        databases = self.home / "databases.json"
        databases.write_text(json.dumps({"token": "secret_x", "databases": [
            {"id": DATABASE, "title": "Team meetings",
             "columns": {"Name": "title", "Meeting ID": "rich_text", "Who": "multi_select"}}]}))
        self.server = subprocess.Popen([SERVER, databases], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.addCleanup(self.end, self.server)
        address = self.server.stdout.readline().decode().strip()
        settings = self.home / "config" / "Corvane"
        settings.mkdir(parents=True)
        (settings / "defaults.json").write_text(json.dumps({"notionServiceURL": address}))
        # Ends with its standard input; the keyring lives in it.
        bus = subprocess.Popen(
            ["dbus-run-session", "--", "sh", "-c", "printf pw | gnome-keyring-daemon --unlock --components=secrets "
             ">/dev/null && echo $DBUS_SESSION_BUS_ADDRESS && cat"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=self.environment)
        self.addCleanup(bus.communicate)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def ask(self, command):
        self.server.stdin.write(command.encode() + b"\n")
        self.server.stdin.flush()
        return json.loads(self.server.stdout.readline())

    def test_a_meeting_is_published_once_unless_asked_again(self):
        meeting = self.processed()
        self.assertIn(b"Connect Notion first", self.ctl("notion", "sync", meeting, expect=1).stderr)
        self.assertIn(b"no token was given", self.ctl("notion", "token", expect=1).stderr)
        connected = self.ctl("notion", "token", stdin=b" secret_x \nmore")
        self.assertNotIn(b"secret_x", connected.stdout + connected.stderr)
        self.ctl("notion", "token", stdin=b"secret_y\rX: y", expect=1)
        self.assertIn(b"Choose a Notion database", self.ctl("notion", "sync", meeting, expect=1).stderr)
        self.ctl("notion", "database", "https://notion.example/nothing", expect=1)
        shown = self.ctl_json("notion", "database", f"https://www.notion.so/{DATABASE}?v=2")
        self.assertEqual((shown["title"], shown["meetingID"], shown["participants"], shown["hasToken"]),
                         ("Team meetings", "Meeting ID", "", True))
        self.assertEqual([one["name"] for one in self.ctl_json("notion", "columns")], ["Meeting ID", "Name", "Who"])
        self.ctl("notion", "map", "participants", "who")
        self.ctl("notion", "map", "nothing", "who", expect=2)
        first = self.ctl("notion", "sync", meeting).stdout
        self.assertTrue(first.startswith(b"http"))
        self.assertIn(b"already exists", self.ctl("notion", "sync", meeting, expect=1).stderr)
        self.ctl("notion", "sync", meeting, "--new", "--replace", expect=2)
        self.assertNotEqual(self.ctl("notion", "sync", meeting, "--replace").stdout, first)
        self.assertEqual([page["archived"] for page in self.ask("pages")["pages"]], [True, False])
        self.ctl("notion", "token", "--remove")
        self.assertFalse(self.ctl_json("notion")["hasToken"])

    def asked_for_a_token(self):
        leader, follower = pty.openpty()
        before = termios.tcgetattr(follower)
        process = subprocess.Popen([support.BIN / "corvanectl", "notion", "token"], stdin=follower, stdout=follower,
                                   stderr=follower, env=self.environment)
        self.assertIn(b"token: ", os.read(leader, 4096))
        self.assertFalse(termios.tcgetattr(follower)[3] & termios.ECHO)
        return leader, follower, before, process

    def test_a_signal_leaves_the_terminal_as_it_was(self):
        leader, follower, before, process = self.asked_for_a_token()
        process.terminate()
        self.assertEqual(process.wait(timeout=support.LIMIT), -signal.SIGTERM)
        self.assertEqual(termios.tcgetattr(follower), before)
        os.close(leader)
        os.close(follower)

    def test_a_token_typed_at_a_terminal_is_not_shown(self):
        leader, follower, _, process = self.asked_for_a_token()
        os.close(follower)
        shown = b""
        os.write(leader, b"secret_x\n")
        try:
            while block := os.read(leader, 4096):
                shown += block
        except OSError:
            pass  # how the end of a terminal shows
        os.close(leader)
        self.assertEqual(process.wait(timeout=support.LIMIT), 0)
        self.assertNotIn(b"secret", shown)
        self.assertTrue(self.ctl_json("notion")["hasToken"])


if __name__ == "__main__":
    unittest.main()
