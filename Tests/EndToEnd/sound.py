"""A private sound server, tones that are played into it, and what is found of them in a recording."""

import array
import cmath
import json
import math
import os
import pathlib
import shutil
import struct
import subprocess
import time
import wave

import support

HELPERS = pathlib.Path(os.environ["CORVANE_TEST_HELPERS"])
PROGRAMS = {"pulseaudio": ("pulseaudio", "pactl", "paplay"),
            "pipewire": ("pipewire", "pipewire-pulse", "wireplumber", "dbus-daemon", "pactl", "paplay")}
MICROPHONE_HERTZ = 440
SYSTEM_HERTZ = 1000


def chunks_of(content):
    """The parts of a RIFF file by their names; what is cut off at the end is given as far as it goes."""
    assert content[:4] == b"RIFF" and content[8:12] == b"WAVE", content[:12]
    parts = {}
    position = 12
    while position + 8 <= len(content):
        size = int.from_bytes(content[position + 4:position + 8], "little")
        parts[content[position:position + 4]] = content[position + 8:position + 8 + size]
        position += 8 + size + size % 2
    return parts


def first_channel(path):
    """The rate and the samples, as fractions of full scale, of the first channel of a WAV file."""
    parts = chunks_of(path.read_bytes())
    kind, channels, rate, bits = (int.from_bytes(parts[b"fmt "][i:i + n], "little")
                                  for i, n in ((0, 2), (2, 2), (4, 4), (14, 2)))
    if kind == 0xFFFE:
        kind = int.from_bytes(parts[b"fmt "][24:26], "little")
    code, scale = {(1, 16): ("h", 32768), (1, 32): ("i", 2 ** 31), (3, 32): ("f", 1)}[kind, bits]
    data = parts[b"data"]
    samples = array.array(code, data[:len(data) - len(data) % (channels * bits // 8)])[::channels]
    return rate, samples if scale == 1 else array.array("f", (value / scale for value in samples))


def finished_file(path):
    """The samples of a file that must be 48 kHz, mono, 32-bit float."""
    rate, samples = first_channel(path)
    assert rate == 48000 and chunks_of(path.read_bytes())[b"fmt "][2:4] == b"\x01\x00" and samples.typecode == "f"
    return samples


def amplitude(samples, hertz, rate=48000):
    """Of a tone."""
    turn = -2j * math.pi * hertz / rate
    return 2 * abs(sum(value * cmath.exp(turn * i) for i, value in enumerate(samples))) / max(1, len(samples))


def tones_in(samples, rate, tones, seconds=0.1):
    """What is heard from one block of so many seconds to the next: one of the tones, 0 for silence, None for else."""
    block = round(rate * seconds)
    heard = []
    for start in range(0, len(samples) - block + 1, block):
        part = samples[start:start + block]
        if max(map(abs, part)) < 0.01:
            heard.append(0)
        else:
            loudest = max(tones, key=lambda hertz: amplitude(part, hertz, rate))
            heard.append(loudest if amplitude(part, loudest, rate) > 0.3 else None)
    return heard


class SoundTest(support.EndToEndTest):
    """Without a sound server until serve() is called."""

    def serve(self, server="pulseaudio"):
        if not all(map(shutil.which, PROGRAMS[server])):
            self.skipTest(server + " is not installed")
        self.audio_server = subprocess.Popen(
            [HELPERS / "PrivateAudioServer", "--" + server], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.end, self.audio_server)
        self.environment["PULSE_SERVER"] = self.audio_server.stdout.readline().strip()

    def control(self, *lines):
        for line in lines:
            self.audio_server.stdin.write(line + "\n")
            self.audio_server.stdin.flush()
            self.assertEqual(self.audio_server.stdout.readline().strip(), "ok", line)

    def play(self, sink, hertz, seconds=600):
        """A tone of half the full scale."""
        path = self.home / f"{hertz}.wav"
        with wave.open(str(path), "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(2)
            file.setframerate(48000)
            second = array.array("h", (round(16000 * math.sin(2 * math.pi * hertz * i / 48000)) for i in range(48000)))
            file.writeframes(second.tobytes() * seconds)

        def inputs():
            listed = subprocess.run(["pactl", "list", "short", "sink-inputs"], env=self.environment, check=True,
                                    capture_output=True, text=True)
            return len(listed.stdout.splitlines())
        before = inputs()
        player = subprocess.Popen(["paplay", "--device=" + sink, path], env=self.environment)
        self.addCleanup(self.end, player)
        self.wait_for(lambda: inputs() > before, "the tone")
        return player

    def play_tones(self):
        self.play("micfeed", MICROPHONE_HERTZ)
        self.play("speaker", SYSTEM_HERTZ)

    def start_recording(self, *options, program=support.BIN / "corvanectl", **environment):
        """A recording under way, its meeting, and since when it runs."""
        process = self.start(program, "record", *options, **environment)
        words = process.stderr.readline().decode()
        begun = time.monotonic()
        self.assertIn("Recording", words)
        return process, words.split()[-1], begun

    def after(self, begun, seconds):
        """So long after the recording began; what went on is sound, not time lost."""
        self.wait_for(lambda: time.monotonic() - begun > seconds, "some sound")

    def draft(self, meeting):
        return json.loads((self.root / "meetings" / meeting / "metadata.json").read_bytes())

    def sound_before(self, meeting, seconds):
        """Puts sound in front of what is recorded, as of an earlier time, so that finishing takes a while."""
        for name in ("chunks", "system-chunks"):
            directory = self.root / "meetings" / meeting / name
            content = (directory / "000000.wav").read_bytes()
            data = content.index(b"data") + 8
            rate, frame = struct.unpack_from("<I4xH", content, content.index(b"fmt ") + 12)
            length = rate * frame * seconds
            second = bytes(rate * frame)
            with open(directory / "000000-earlier.wav", "wb") as file:
                file.write(content[:4] + (data + length - 8).to_bytes(4, "little") + content[8:data - 4] +
                           length.to_bytes(4, "little"))
                for _ in range(seconds):
                    file.write(second)
