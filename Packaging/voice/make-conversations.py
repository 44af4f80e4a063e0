#!/usr/bin/env python3
"""Makes conversations of real people with their truth, for voice-lab, from the recordings of Debian packages.

    make-conversations.py DIRECTORY [--set tune|held-out|all] [--people]

voices.txt beside this script names the people, where their recordings lie and the set that each belongs to: figures
that are told to anybody come from people who had no part in any tuning. Packages are downloaded with apt-get into
DIRECTORY/packages and unpacked there, never installed. DIRECTORY/conversations gets NAME.wav and NAME.tsv (start, end,
speaker: tab-separated, in seconds); with --people, DIRECTORY/people gets PERSON/MEETING-ROOM.wav as well, what one
person says in several meetings and rooms, and at other speeds. Everything is drawn from a fixed seed. Needs ffmpeg, sox
and dpkg-deb.
"""

import argparse
import array
import fnmatch
import hashlib
import math
import os
import pathlib
import random
import re
import subprocess
import sys

RATE = 16000
LEVEL = 2000  # root mean square of the speech
HERE = pathlib.Path(__file__).resolve().parent
RAW = ["-r", str(RATE), "-c", "1", "-b", "16", "-e", "signed", "-t", "raw"]

# The rooms a meeting may be in: what sox does to the dry sound, and how far below the speech which noise lies (dB).
ROOMS = {
    "clean": ([], 50, "pinknoise"),
    "room": (["gain", "-6", "reverb", "35", "40", "40"], 25, "pinknoise"),
    "noisy": (["gain", "-6", "reverb", "50", "30", "60"], 15, "brownnoise"),
    "laptop": (["gain", "-6", "highpass", "180", "treble", "-5", "3000", "equalizer", "900", "1.5q", "4",
                "reverb", "20", "60", "20"], 28, "whitenoise"),
    "telephone": (["sinc", "300-3400", "rate", "8000", "rate", str(RATE)], 35, "whitenoise"),
}

# Recordings of something else than a voice.
NO_SPEECH = re.compile("monkey|weasel|tone|beep|silence|music")

# At another speed a person is another voice: there are never enough.
SPEEDS = (0.84, 0.92, 1.09, 1.19)


class People:
    """The recordings of each person as lists of samples, without the silence around them."""

    def __init__(self, directory, wanted):
        self.directory = directory
        self.packages = {}
        self.wanted = wanted
        self.table = {}
        for line in (HERE / "voices.txt").read_text().splitlines():
            if line and not line.startswith("#"):
                name, kind, package, pattern = line.split()
                if wanted in ("all", kind):
                    self.table.setdefault(name, []).append((package, pattern))
        self.utterances = {}

    def names(self):
        return list(self.table)

    def unpacked(self, package):
        if package not in self.packages:
            target = self.directory / "packages" / package
            if not target.exists():
                target.parent.mkdir(parents=True, exist_ok=True)
                subprocess.run(["apt-get", "download", "-qq", package], cwd=target.parent, check=True)
                archive = next(target.parent.glob(package + "_*.deb"))
                subprocess.run(["dpkg-deb", "-x", archive, str(target) + ".part"], check=True)
                os.rename(str(target) + ".part", target)
                archive.unlink()
            self.packages[package] = sorted(str(path) for path in target.rglob("*") if path.is_file())
        return self.packages[package]

    def of(self, name):
        if name not in self.utterances:
            found = []
            for package, pattern in self.table[name]:
                files = [path for path in self.unpacked(package)
                         if fnmatch.fnmatch(path, "*" + pattern) and not NO_SPEECH.search(os.path.basename(path))]
                # The longest ones; prompts of a single syllable are of little use.
                files.sort(key=lambda path: (-os.path.getsize(path), path))
                found += decode(sorted(files[:150]), self.directory)
            self.utterances[name] = found
        return self.utterances[name]


def decode(files, directory):
    """All files in one run of ffmpeg; as lists of samples, cut to the sounding part, at one level."""
    if not files:
        sys.exit("voices.txt names recordings that are not there.")
    target = directory / "decoded"
    target.mkdir(exist_ok=True)
    pieces = []
    for begin in range(0, len(files), 25):
        part = files[begin:begin + 25]
        command = ["ffmpeg", "-nostdin", "-v", "error", "-y"]
        for path in part:
            suffix = path.rsplit(".", 1)[-1]
            command += (["-f", suffix] if suffix in ("g722", "gsm") else []) + ["-i", path]
        for number in range(len(part)):
            command += ["-map", f"{number}:a:0", "-ac", "1", "-ar", str(RATE), "-f", "s16le",
                        str(target / f"{number}.raw")]
        subprocess.run(command, check=True)
        for number in range(len(part)):
            samples = array.array("h", (target / f"{number}.raw").read_bytes())
            trimmed = sounding(samples)
            if len(trimmed) >= RATE // 4:
                pieces.append(trimmed)
    return pieces


def loudness(samples):
    return math.sqrt(sum(value * value for value in samples) / max(1, len(samples)))


def sounding(samples):
    """Without the silence at both ends, at LEVEL, at most 12 s."""
    step = RATE // 100
    peaks = [max(map(abs, samples[at:at + step])) for at in range(0, len(samples) - step, step)]
    if not peaks or max(peaks) < 300:
        return array.array("h")
    loud = [index for index, peak in enumerate(peaks) if peak > max(peaks) * 0.04]
    cut = samples[loud[0] * step:(loud[-1] + 1) * step][:12 * RATE]
    gain = LEVEL / max(1.0, loudness(cut))
    return array.array("h", [max(-32000, min(32000, int(value * gain))) for value in cut])


def stretches(samples):
    """Where there is sound, in seconds from the first sample: a pause of 0.3 s ends a stretch."""
    step, found = RATE // 100, []
    for at in range(0, len(samples), step):
        if max(map(abs, samples[at:at + step])) > LEVEL * 0.12:
            if found and at / RATE - found[-1][1] < 0.3:
                found[-1] = (found[-1][0], (at + step) / RATE)
            else:
                found.append((at / RATE, (at + step) / RATE))
    return [(start, end) for start, end in found if end - start >= 0.05]


def place(sound, samples, at):
    """Mixes `samples` into `sound` from index `at` on."""
    if at + len(samples) > len(sound):
        sound.extend([0] * (at + len(samples) - len(sound)))
    quiet = min(len(samples), RATE)
    for index in range(quiet):
        sound[at + index] = max(-32000, min(32000, sound[at + index] + samples[index]))
    sound[at + quiet:at + len(samples)] = samples[quiet:]


def spoil(dice, source, target, room, seconds):
    """The dry raw sound as a recording made in that room."""
    effects, decibels, colour = ROOMS[room]
    noise = 10 ** (-decibels / 20) * LEVEL / 32768 * 3.2  # synth's noise lies 10 dB under full scale
    wet, hiss = str(target) + ".wet.raw", str(target) + ".hiss.raw"
    subprocess.run(["sox", "-V1", "-R", *RAW, source, *RAW, wet, *effects], check=True)
    subprocess.run(["sox", "-V1", "-R", "-n", *RAW, hiss, "synth", f"{seconds:.3f}", colour, "vol", f"{noise:.6f}"],
                   check=True)
    subprocess.run(["sox", "-V1", "-m", "-v", "1", *RAW, wet, "-v", "1", *RAW, hiss, "-b", "16", str(target)], check=True)
    os.remove(wet)
    os.remove(hiss)


def converse(dice, people, names, seconds):
    """Sound and turns of a talk: mostly sentences, some short answers, pauses, now and then a slight overlap."""
    decks = {name: dice.sample(people.of(name), len(people.of(name))) for name in names}
    sound, turns, last = array.array("h", [0] * RATE), [], None
    while len(sound) < seconds * RATE:
        others = [name for name in names if name != last] or names
        last = dice.choices(others, [1.0 if name != names[0] else 1.6 for name in others])[0]
        deck = decks[last]
        if dice.random() < 0.2:
            chosen = [min(deck[:12], key=len)]
        else:
            length, chosen = dice.uniform(1.5, 9), []
            while sum(map(len, chosen)) < length * RATE and len(chosen) < len(deck):
                chosen.append(deck[len(chosen)])
        for index, samples in enumerate(chosen):
            if not turns or index:
                gap = dice.uniform(0.05, 0.6)
            elif dice.random() < 0.1:
                gap = -min(dice.uniform(0.1, 0.4), len(samples) / RATE / 3)
            else:
                gap = dice.uniform(0.1, 1.5)
            at = max(0, len(sound) + int(gap * RATE))
            place(sound, samples, at)
            for start, end in stretches(samples):
                start, end = start + at / RATE, end + at / RATE
                if turns and turns[-1][2] == last and start - turns[-1][1] < 0.3:
                    turns[-1] = (turns[-1][0], end, last)
                else:
                    turns.append((start, end, last))
        for samples in chosen:
            deck.remove(samples)
            deck.append(samples)
    sound.extend([0] * RATE)
    return sound, turns


def seeded(*words):
    return random.Random(int.from_bytes(hashlib.sha256(" ".join(words).encode()).digest()[:8], "big"))


def make_conversations(people, directory):
    target = directory / "conversations"
    target.mkdir(exist_ok=True)
    for number in range(48):
        speakers = (1, 2, 2, 3, 3, 4)[number % 6]
        room = ("clean", "clean", "noisy", "telephone", "room", "laptop")[number // 6 % 6] if number < 36 else "clean"
        dice = seeded("conversation", people.wanted, str(number))
        names = dice.sample([name for name in people.names() if "@" not in name], speakers)
        sound, turns = converse(dice, people, names, dice.choice([60, 100, 150, 240]))
        name = f"{number:02}-{speakers}-{room}"
        dry = target / (name + ".raw")
        dry.write_bytes(sound.tobytes())
        spoil(dice, dry, target / (name + ".wav"), room, len(sound) / RATE)
        dry.unlink()
        (target / (name + ".tsv")).write_text("".join(f"{a:.3f}\t{b:.3f}\t{who}\n" for a, b, who in turns))


def make_people(people, directory):
    for name in people.names():
        target = directory / "people" / name
        target.mkdir(parents=True, exist_ok=True)
        dice = seeded("person", name)
        deck = dice.sample(people.of(name), len(people.of(name)))
        for meeting in range(4):
            sound, length = array.array("h"), dice.choice([15, 25, 40, 60])
            while deck and len(sound) < length * RATE:
                place(sound, deck.pop(), len(sound) + int(dice.uniform(0.2, 0.6) * RATE))
            if len(sound) < 12 * RATE:
                break
            dry = target / "dry.raw"
            dry.write_bytes(sound.tobytes())
            for room in ROOMS if meeting < 2 else ("clean",):
                spoil(dice, dry, target / f"{meeting}-{room}.wav", room, len(sound) / RATE)
            for speed in SPEEDS if meeting < 2 else ():
                other = directory / "people" / f"{name}^{speed}"
                other.mkdir(exist_ok=True)
                subprocess.run(["sox", "-V1", *RAW, dry, other / f"{meeting}-clean.wav", "speed", str(speed), "rate",
                                str(RATE)], check=True)
            dry.unlink()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("directory", type=pathlib.Path)
    parser.add_argument("--set", choices=("tune", "held-out", "all"), default="held-out", dest="kind")
    parser.add_argument("--people", action="store_true")
    arguments = parser.parse_args()
    directory = arguments.directory.resolve()
    directory.mkdir(parents=True, exist_ok=True)
    people = People(directory, arguments.kind)
    make_conversations(people, directory)
    if arguments.people:
        make_people(people, directory)


if __name__ == "__main__":
    main()
