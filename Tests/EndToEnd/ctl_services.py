"""corvanectl update against a server of its own, and corvanectl doctor where nothing is there."""

import http.server
import json
import shutil
import threading
import unittest

import support

MANIFEST = {"version": "99.0", "build": 1, "downloadURL": "https://example.org/corvane.deb", "sha256": "ab",
            "releaseNotes": "Hears better.\x1b[2J"}


class Server(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = self.server.body
        self.send_response(200 if body else 404)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Services(support.EndToEndTest):
    def setUp(self):
        super().setUp()
        self.server = http.server.HTTPServer(("127.0.0.1", 0), Server)
        self.server.body = json.dumps(MANIFEST).encode()
        thread = threading.Thread(target=self.server.serve_forever)
        thread.start()
        self.addCleanup(lambda: (self.server.shutdown(), thread.join(), self.server.server_close()))

    def installed(self, **info):
        """corvanectl in a place of its own, with a packager's file beside it."""
        place = self.home / "prefix"
        (place / "bin").mkdir(parents=True, exist_ok=True)
        (place / "lib" / "corvane").mkdir(parents=True, exist_ok=True)
        shutil.copy2(support.BIN / "corvanectl", place / "bin" / "corvanectl")
        address = f"http://127.0.0.1:{self.server.server_port}/m.json"
        (place / "lib" / "corvane" / "info.json").write_text(json.dumps(
            {"CorvaneUpdateManifestURL": address} | info))
        return place / "bin" / "corvanectl"

    def test_an_update_is_told_and_remembered(self):
        ctl = self.installed(CFBundleShortVersionString="1.2", CFBundleVersion="34")
        first = self.run_program(ctl, "update")
        self.assertIn(b"Current version: 1.2 (34)\nLast checked: Never\n", first.stdout)
        told = self.run_program(ctl, "update", "check")
        self.assertEqual(told.returncode, 0, told.stderr)
        self.assertTrue(told.stdout.startswith(b"Version 99.0 (1) is available.\n"))
        self.assertIn(b"https://example.org/corvane.deb", told.stdout)
        self.assertNotIn(b"\x1b", told.stdout)
        self.server.body = b""
        again = self.run_program(ctl, "update", "check", "--json")
        self.assertEqual(again.returncode, 1)
        self.assertIn(b"The update server returned HTTP 404.", again.stderr)
        self.assertEqual(json.loads(again.stdout)["state"], "available")
        ctl = self.installed(CFBundleShortVersionString="99.0.0", CFBundleVersion="1")
        self.assertEqual(json.loads(self.run_program(ctl, "update", "--json").stdout)["state"], "upToDate")
        ctl = self.installed(CorvaneUpdateManifestURL="ftp://x")
        self.assertIn(b"must be an HTTP or HTTPS URL", self.run_program(ctl, "update", "check").stderr)

    def test_a_bare_machine_is_told_what_it_lacks(self):
        told = self.ctl("doctor", expect=4).stdout.decode()
        for line in ("missing  Microphone", "missing  Keyring", "missing  Tray", "missing  Windows"):
            self.assertIn(line, told)
        self.assertFalse((self.home / "data").exists())
        result = json.loads(self.ctl("doctor", "--json", expect=4).stdout)
        self.assertFalse(result["ready"])
        self.assertEqual(next(one["state"] for one in result["checks"] if one["id"] == "data-directory"), "ok")

    def test_no_error_is_made_of_a_worker_that_hangs(self):
        worker = self.home / "worker"
        worker.write_text("#!/bin/sh\nexec sleep 600\n")
        worker.chmod(0o755)
        result = json.loads(self.ctl("doctor", "--json", expect=4, CORVANE_WORKER_PATH=str(worker)).stdout)
        self.assertIn("does not answer", result["checks"][0]["detail"])


if __name__ == "__main__":
    unittest.main()
