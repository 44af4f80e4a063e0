"""The application's debug commands to the byte, and its start and end."""

import signal
import subprocess
import unittest

import support


class DebugCommands(support.EndToEndTest):
    def check(self, arguments, output, status, **options):
        result = self.run_program("corvane", *arguments, **options)
        self.assertEqual((result.stdout, result.returncode), (output, status))
        self.assertEqual(result.stderr, b"")

    def test_status_reports_places_and_touches_nothing(self):
        root = str(self.root).encode()
        self.check(["debug", "status"],
                   b"data_dir=%s\ndatabase=%s/corvane.sqlite\nlogs=%s/logs\n" % (root, root, root), 0)
        self.assertEqual(list(self.home.iterdir()), [])

    def test_unknown_words(self):
        self.check(["debug", "nonsense"], b"Unknown debug command\n", 2)
        self.check(["debug", ""], b"Unknown debug command\n", 2)

    def test_without_a_bus_no_token_is_found_or_saved(self):
        self.check(["debug", "token-status"], b"HF_TOKEN=missing\n", 0)
        self.check(["debug", "save-hf-token"], b"HF_TOKEN=save_failed\n", 1, HF_TOKEN="  token ")
        self.check(["debug", "save-hf-token"], b"HF_TOKEN=save_failed\n", 1, stdin=b"token\n")

    def test_no_token_to_save(self):
        self.check(["debug", "save-hf-token"], b"HF_TOKEN=missing\n", 2, stdin=b"")
        self.check(["debug", "save-hf-token"], b"HF_TOKEN=missing\n", 2, stdin=b"\ntoken\n")
        self.check(["debug", "save-hf-token"], b"HF_TOKEN=missing\n", 2, stdin=b" \n", HF_TOKEN=" \t")

    def test_the_keyring_keeps_the_variable_or_if_that_is_blank_the_first_line_of_standard_input(self):
        (self.home / "runtime").mkdir(mode=0o700)
        script = """
            printf pw | gnome-keyring-daemon --unlock --components=secrets >/dev/null
            for variable in ' from variable ' ' '; do
                printf ' from input \\r\\nmore' | HF_TOKEN="$variable" "$0" debug save-hf-token
                "$0" debug token-status
                secret-tool search --all service Corvane 2>&1 | grep '^secret'
            done
        """
        result = subprocess.run(["dbus-run-session", "--", "sh", "-c", script, support.BIN / "corvane"],
                                capture_output=True, timeout=support.LIMIT, env=self.environment, check=False)
        self.assertEqual(result.stdout, b"HF_TOKEN=configured\nHF_TOKEN=configured\nsecret = from variable\n"
                                        b"HF_TOKEN=configured\nHF_TOKEN=configured\nsecret = from input\n",
                         result.stderr)

    def test_open_data_dir_makes_the_directories_and_opens_the_root(self):
        opener = self.home / "xdg-open"
        opener.write_text('#!/bin/sh\nprintf "%s" "$1" >"$HOME/.opened"\nmv "$HOME/.opened" "$HOME/opened"\n')
        opener.chmod(0o755)
        path = f"{self.home}:{self.environment['PATH']}"
        self.check(["debug", "open-data-dir"], b"", 0, PATH=path)
        self.assertEqual(sorted(entry.name for entry in self.root.iterdir()),
                         ["logs", "meetings", "recordings", "runs"])
        self.wait_for((self.home / "opened").exists, "the opener")
        self.assertEqual((self.home / "opened").read_text(), str(self.root))


class Application(support.EndToEndTest):
    def test_starts_without_a_command_and_ends_by_a_signal(self):
        for arguments, number in (([], signal.SIGTERM), (["debug"], signal.SIGINT)):
            with self.subTest(arguments=arguments):
                process = self.start("corvane", *arguments, QT_QPA_PLATFORM="offscreen")
                self.wait_for((self.root / "meetings").is_dir, "the directories")
                self.wait_for(lambda: self.catches(process, number), "the handler")
                self.interrupt(process, number)
                self.assertEqual(process.returncode, 0)

    @staticmethod
    def catches(process, number):
        with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
            caught = next(line for line in status if line.startswith("SigCgt:"))
        return int(caught.split()[1], 16) >> (number - 1) & 1


if __name__ == "__main__":
    unittest.main()
