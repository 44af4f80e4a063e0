#!/usr/bin/env python3
"""worker-quality [--worker PROGRAM] [--keep DIRECTORY] [CORPUS...]

Scores whole runs of corvane-worker against the truth: word error rate, diarization error rate (0.25 s collar, number of
speakers known and unknown), real-time factor and peak memory. Without a CORPUS it makes the sample meeting and three
worse copies of it: as heard over a telephone, with noise at 15 dB, in a noisy room.

A CORPUS is a sound file with its truth beside it, NAME.wav.truth or NAME.tsv: start, end, speaker, text, with tabs
between them. A truth without texts, like those of Packaging/voice/make-conversations.py, is scored for the speakers
only. The last line is the mean of all, by their length.

Where pocketsphinx_continuous is installed, its word error rate at its defaults stands beside the worker's. Ends with
status 1 if a run is past a limit: a real-time factor of 0.4, or of 0.15 without noise, and 600 MB.
"""

import argparse
import itertools
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
MOST_SECONDS = 0.4  # per second of sound
MOST_CLEAN_SECONDS = 0.15
MOST_MEGABYTES = 600
COLLAR = 0.25  # seconds on either side of a true border that are not scored
STEP = 0.01

# Worse copies of the clean recording: the filter of ffmpeg that makes each.
ROOM = "aecho=0.8:0.7:23|41|67|97:0.35|0.28|0.2|0.14"
CONDITIONS = {
    "clean": ([], "[0:a]anull[out]"),
    "telephone": ([], "[0:a]highpass=300,lowpass=3400,aresample=8000,aresample=16000[out]"),
    "noise 15 dB": (["noise"], "[0:a][1:a]amix=inputs=2:normalize=0:duration=first[out]"),
    "noisy room": (["noise"], f"[0:a]{ROOM}[room];[room][1:a]amix=inputs=2:normalize=0:duration=first[out]"),
}


def read_truth(path):
    """The turns of a truth file: (start, end, speaker, text)."""
    turns = []
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.strip():
            start, end, speaker, *text = line.split("\t")
            turns.append((float(start), float(end), speaker, " ".join(text)))
    return turns


NUMBERS = dict(zip("0 1 2 3 4 5 6 7 8 9".split(), "zero one two three four five six seven eight nine".split()))


def words(text):
    """What is said, without spelling: digits and hyphens as they are spoken, letters of an abbreviation apart."""
    text = re.sub(r"\b[A-Z]{2,}\b", lambda letters: " ".join(letters[0]), text)
    text = text.lower().replace("mr.", "mister").replace("-", " ").replace("\u2019", "'")
    return [NUMBERS.get(word, word) for word in re.findall(r"[a-z0-9']+", text)]


def edits(truth, found):
    row = list(range(len(found) + 1))
    for i, left in enumerate(truth, 1):
        previous, row[0] = row[0], i
        for j, right in enumerate(found, 1):
            previous, row[j] = row[j], min(row[j] + 1, row[j - 1] + 1, previous + (left != right))
    return row[-1]


def frames(segments, length):
    """For each step of time the set of those who speak."""
    timeline = [frozenset()] * length
    for start, end, speaker in segments:
        for index in range(max(0, round(start / STEP)), min(length, round(end / STEP))):
            timeline[index] |= {speaker}
    return timeline


def diarization_error(truth, found):
    """Missed, invented and confused speech over all true speech, with the best naming of the speakers."""
    length = round(max(end for _, end, _ in truth + found) / STEP) + 1
    true_line, found_line = frames(truth, length), frames(found, length)
    scored = [True] * length
    for border in itertools.chain.from_iterable((start, end) for start, end, _ in truth):
        for index in range(max(0, round((border - COLLAR) / STEP)), min(length, round((border + COLLAR) / STEP))):
            scored[index] = False
    names = sorted({speaker for _, _, speaker in truth})
    labels = sorted({speaker for _, _, speaker in found})
    common = {}
    total = both = 0
    for true_set, found_set, counted in zip(true_line, found_line, scored):
        if not counted:
            continue
        total += len(true_set)
        both += max(len(true_set), len(found_set))
        for pair in itertools.product(true_set, found_set):
            common[pair] = common.get(pair, 0) + 1
    return (both - best_naming(names, labels, common)) / max(total, 1)


def best_naming(names, labels, common):
    """The largest common time over all ways to give each name one label, by bits of the labels that are taken."""
    best = {0: 0}
    for name in names:
        following = dict(best)
        for taken, value in best.items():
            for index, label in enumerate(labels):
                if not taken & (1 << index):
                    key = taken | (1 << index)
                    following[key] = max(following.get(key, 0), value + common.get((name, label), 0))
        best = following
    return max(best.values())


def run(command, **options):
    """Wall seconds, peak memory in MB."""
    begin = time.monotonic()
    process = subprocess.Popen(command, **options)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = status
    if status != 0:
        sys.exit(f"{command[0]} failed with status {status}")
    return time.monotonic() - begin, usage.ru_maxrss / 1024


def sound_length(path):
    answer = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", path],
                            check=True, capture_output=True, text=True)
    return float(answer.stdout)


def make_corpora(directory):
    clean = directory / "sample.wav"
    subprocess.run([ROOT / "Packaging/samples/make-sample.sh", clean], check=True, capture_output=True)
    truth = directory / "sample.wav.truth"
    loudness = subprocess.run(["ffmpeg", "-i", clean, "-af", "volumedetect", "-f", "null", "-"], check=True,
                              capture_output=True, text=True).stderr
    level = float(re.search(r"mean_volume: (-?[\d.]+) dB", loudness)[1])
    for name, (inputs, graph) in CONDITIONS.items():
        target = directory / (name.replace(" ", "-") + ".wav")
        extra = []
        if inputs:
            # White noise of amplitude a has a level of 20 log10 a - 4.8 dB.
            amplitude = 10 ** ((level - 15 + 4.8) / 20)
            extra = ["-f", "lavfi", "-i", f"anoisesrc=a={amplitude:.5f}:c=white:r=16000:seed=7"]
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", clean, *extra, "-filter_complex", graph, "-map", "[out]",
                        "-ar", "16000", "-ac", "1", target], check=True)
        shutil.copy(truth, f"{target}.truth")
        yield name, target


def transcribe(worker, audio, run_directory, speakers):
    shutil.rmtree(run_directory, ignore_errors=True)
    seconds, megabytes = run([worker, "process", "--audio", audio, "--out-dir", run_directory, "--device", "cpu",
                              "--backend", "any", "--language", "en", *speakers], stderr=subprocess.DEVNULL)
    result = json.loads((run_directory / "result.json").read_bytes())
    return result, seconds, megabytes


def peer_words(audio):
    program = shutil.which("pocketsphinx_continuous")
    if not program:
        return None
    answer = subprocess.run([program, "-infile", audio, "-logfn", "/dev/null"], check=True, capture_output=True,
                            text=True)
    return words(answer.stdout)


def truth_of(audio):
    beside = pathlib.Path(f"{audio}.truth")
    return read_truth(beside if beside.exists() else audio.with_suffix(".tsv"))


class Scores:
    """The figures of the runs so far. A figure that a corpus does not have is None."""

    def __init__(self, worker, directory):
        self.worker = worker
        self.directory = directory
        self.rows = []
        self.past_limit = False

    def add(self, name, audio):
        truth = truth_of(audio)
        turns = [turn[:3] for turn in truth]
        said = words(" ".join(turn[3] for turn in truth))
        length = sound_length(audio)
        count = str(len({speaker for _, _, speaker in turns}))
        errors, seconds, megabytes = [], [], []
        for speakers in (["--num-speakers", count], ["--auto-speakers"]):
            result, elapsed, peak = transcribe(self.worker, audio, self.directory / "run", speakers)
            found = [(part["start"], part["end"], part["speaker"]) for part in result["segments"]]
            errors.append(diarization_error(turns, found))
            seconds.append(elapsed / length)
            megabytes.append(peak)
        wrong = peer = None
        if said:
            wrong = edits(said, words(" ".join(part["text"] for part in result["segments"]))) / len(said)
            heard = peer_words(audio)
            peer = None if heard is None else edits(said, heard) / len(said)
        row = (wrong, peer, *errors, max(seconds), max(megabytes))
        self.rows.append((length, row))
        most = MOST_CLEAN_SECONDS if "clean" in name else MOST_SECONDS
        self.past_limit = self.past_limit or max(seconds) > most or max(megabytes) > MOST_MEGABYTES
        show(name, row)

    def mean(self):
        for column in zip(*(row for _, row in self.rows)):
            pairs = [(length, value) for (length, _), value in zip(self.rows, column) if value is not None]
            yield sum(length * value for length, value in pairs) / sum(length for length, _ in pairs) if pairs else None


def show(name, row):
    formats = ("8.1%", "8.1%", "8.2%", "8.2%", "9.3f", "8.0f")
    texts = (f"{'-':>8}" if value is None else f"{value:{form}}" for value, form in zip(row, formats))
    print(f"{name:24}", *texts, flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("corpora", nargs="*", type=pathlib.Path, metavar="CORPUS")
    parser.add_argument("--worker", default=ROOT / "build/bench/lib/corvane/worker/bin/corvane-worker")
    parser.add_argument("--keep", type=pathlib.Path, help="where to leave the sound that is made")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as temporary:
        directory = options.keep or pathlib.Path(temporary)
        directory.mkdir(parents=True, exist_ok=True)
        print(f"{'':24} {'words':>8} {'peer':>8} {'known n':>8} {'unknown':>8} {'real time':>9} {'MB':>8}")
        corpora = [(path.stem, path) for path in options.corpora] or make_corpora(directory)
        scores = Scores(options.worker, pathlib.Path(temporary))
        for name, audio in corpora:
            scores.add(name, audio)
        show("mean", tuple(scores.mean()))
        if scores.past_limit:
            sys.exit("A run took longer or more memory than it may.")


if __name__ == "__main__":
    main()
