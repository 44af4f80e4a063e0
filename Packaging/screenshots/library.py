"""Makes the sample library of the screenshots: meetings in every state that the window can show, in the application's
own file formats (docs/formats)."""

import datetime
import json
import os
import sqlite3
import struct
import subprocess
import uuid
import wave

import talks

NAMESPACE = uuid.UUID("6f1f6f5e-6f0e-4b52-9d3a-5b0f5c4f7a10")
EPOCH_2001 = datetime.datetime(2001, 1, 1, tzinfo=datetime.timezone.utc)
MODEL = "corvane-acoustic-v1"
DATABASE = "5d2f8c1e9a4b4f0d8e7c6b5a49382716"
WORDS_PER_SECOND = 2.6

MINUTE = 60
HOUR = 60 * MINUTE
DAY = 24 * HOUR


def identity(name):
    """The same name has the same id, so that two libraries made one after the other are alike."""
    return str(uuid.uuid5(NAMESPACE, name)).upper()


def write_json(path, document):
    path.write_text(json.dumps(document, indent=2, sort_keys=True, ensure_ascii=False))


def write_sound(path, seconds):
    """Silence of that length, as a file with a hole that takes no room on the disk."""
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(8000)
    size = seconds * 16000
    with open(path, "r+b") as file:
        file.seek(4)
        file.write(struct.pack("<I", 36 + size))
        file.seek(40)
        file.write(struct.pack("<I", size))
        file.truncate(44 + size)


def segments_of(talk):
    """The turns one after the other, each as long as it takes to say."""
    segments = []
    time = 3.0
    for label, text in talk:
        length = round(len(text.split()) / WORDS_PER_SECOND, 2)
        segments.append({"start": round(time, 2), "end": round(time + length, 2), "text": text, "speaker": label})
        time += length + 0.6
    return segments


def speakers_of(segments, seconds):
    """In the order of the labels; their shares of the meeting are those that they have in what is shown of it."""
    said = {}
    for segment in segments:
        said.setdefault(segment["speaker"], []).append(segment)
    total = sum(segment["end"] - segment["start"] for segment in segments)
    return [{"speaker": label,
             "duration": round(seconds * 0.92 * sum(part["end"] - part["start"] for part in parts) / total, 1),
             "examples": [{key: part[key] for key in ("start", "end", "text")} for part in parts[:3]]}
            for label, parts in sorted(said.items())]


class Library:
    def __init__(self, data, config, now):
        self.root = data / "Corvane"
        self.config = config / "Corvane"
        self.now = now
        for name in ("recordings", "meetings", "runs", "logs"):
            (self.root / name).mkdir(mode=0o700, parents=True)
        self.config.mkdir(parents=True)
        self.times = []  # set at the end: every file that is written touches its directory

    def at(self, age):
        return self.now - datetime.timedelta(seconds=age)

    def sound(self, title, seconds):
        path = self.root / "recordings" / (identity(title) + ".wav")
        write_sound(path, seconds)
        return str(path)

    def processing(self, language="en"):
        return {"speaker_identification_context": "", "language": language, "speaker_count": 2,
                "diarization_enabled": True, "speaker_count_mode": "auto", "min_speaker_count": 1,
                "max_speaker_count": 8}

    def draft(self, title, status, age, audio, **more):
        directory = self.root / "meetings" / identity(title)
        directory.mkdir(mode=0o700)
        write_json(directory / "metadata.json", self.processing() | {
            "title": title, "audio_path": audio, "recording_status": status, "chunks": []} | more)
        self.times.append((directory, self.at(age)))
        return directory

    def run(self, title, age, audio, state, events):
        directory = self.root / "runs" / identity("run of " + title)
        directory.mkdir(mode=0o700)
        write_json(directory / "app_metadata.json", self.processing() | {
            "title": title, "audio_path": audio, "meeting_id": identity(title)})
        write_json(directory / "job_state.json", {"outputs": {}} | state)
        lines = [{"type": kind, "ts": self.at(seconds).isoformat()} | more for kind, seconds, more in events]
        (directory / "events.jsonl").write_text("".join(json.dumps(line) + "\n" for line in lines))
        self.times.append((directory, self.at(age)))
        return directory

    def completed(self, title, age, seconds, talk, **more):
        took = seconds * 0.41
        audio = self.sound(title, seconds)
        directory = self.run(
            title, age, audio, {"status": "completed", "message": "The transcript is ready.", "progress": 1.0},
            [("job_started", age + took, {"audio": audio}), ("asr_progress", age + took * 0.2, {"progress": 1.0}),
             ("llm_completed" if "llm" in more else "llm_skipped", age + took * 0.05,
              {"model": more["llm"]["model"]} if "llm" in more else {}), ("completed", age, {})])
        segments = segments_of(talk)
        write_json(directory / "result.json", {
            "metadata": {"audio": audio}, "segments": segments, "speakers": speakers_of(segments, seconds),
            "speaker_names": {}, "speaker_profile_assignments": {}, "speaker_profile_matches": []} | more)

    def recording_left_behind(self, title, age, seconds):
        """As of a machine that lost its power: the draft says "recording", its chunks are there."""
        directory = self.draft(title, "paused", age, "")
        chunks = directory / "chunks"
        chunks.mkdir(mode=0o700)
        write_sound(chunks / "000000.wav", seconds)
        started = (self.at(age) - EPOCH_2001).total_seconds()
        write_json(directory / "metadata.json", self.processing() | {
            "title": title, "audio_path": str(self.root / "recordings" / (directory.name + ".wav")),
            "recording_status": "paused", "started_at": started, "chunks_directory": str(chunks),
            "chunks": [str(chunks / "000000.wav")]})

    def people(self):
        store = sqlite3.connect(self.root / "corvane.sqlite")
        store.executescript("""
            CREATE TABLE speaker_profiles (id TEXT PRIMARY KEY, display_name TEXT NOT NULL,
                notes TEXT NOT NULL DEFAULT '', enabled INTEGER NOT NULL DEFAULT 1, created_at REAL NOT NULL,
                updated_at REAL NOT NULL);
            CREATE TABLE speaker_profile_embeddings (id TEXT PRIMARY KEY, profile_id TEXT NOT NULL,
                embedding BLOB NOT NULL, model_id TEXT NOT NULL, dimension INTEGER NOT NULL,
                sample_count INTEGER NOT NULL, total_speech_seconds REAL NOT NULL, source_run_id TEXT,
                source_meeting_id TEXT, source_local_speaker TEXT, created_at REAL NOT NULL,
                last_seen_at REAL NOT NULL);
            CREATE TABLE speaker_profile_settings (key TEXT PRIMARY KEY, value TEXT NOT NULL);""")
        store.execute("INSERT INTO speaker_profile_settings VALUES ('speakerProfileMatchingEnabled', '1')")
        for place, (name, notes, meetings, seconds) in enumerate(talks.PEOPLE):
            created = self.at((90 - 11 * place) * DAY).timestamp()
            store.execute("INSERT INTO speaker_profiles VALUES (?, ?, ?, ?, ?, ?)",
                          (identity(name), name, notes, int(name != "Nadia Haddad"), created, created))
            for number in range(meetings):
                seen = self.at((3 + place + 5 * number) * DAY + 7 * HOUR + 13 * MINUTE * place).timestamp()
                source = identity(f"{name} {number}")
                store.execute("INSERT INTO speaker_profile_embeddings VALUES (?, ?, ?, ?, 2, 12, ?, ?, ?, ?, ?, ?)",
                              (source, identity(name), struct.pack("<2d", 1, place), MODEL, seconds / meetings,
                               source, source, "SPEAKER_00", seen, seen))
        store.commit()
        store.close()

    def settings(self, **values):
        write_json(self.config / "defaults.json", values)

    def store_tokens(self, programs, environment):
        """In the keyring of the session; they are no real ones."""
        for program, *arguments in (("corvane", "debug", "save-hf-token"), ("corvanectl", "notion", "token")):
            subprocess.run([programs / program, *arguments], input=b"sample", check=True, capture_output=True,
                           env=environment | {"XDG_DATA_HOME": str(self.root.parent),
                                              "XDG_CONFIG_HOME": str(self.config.parent)})

    def finish(self):
        for directory, time in self.times:
            os.utime(directory, (time.timestamp(), time.timestamp()))


def assignment(name):
    return {"profile_id": identity(name), "display_name": name}


def suggestion(label, name, score):
    return {"speaker": label, "profile_id": identity(name), "display_name": name, "score": score, "status": "suggested"}


def festival(library):
    names = talks.FESTIVAL_NAMES
    library.completed(
        "Lantern festival: route and lights", 40 * MINUTE, 38 * MINUTE + 12, talks.FESTIVAL, speaker_names=names,
        speaker_profile_assignments={label: assignment(name) for label, name in names.items()},
        llm={"provider": "ollama", "model": "qwen3:1.7b", "summary": talks.FESTIVAL_SUMMARY,
             "speaker_context": talks.FESTIVAL_CONTEXT})


def fill(library):
    """A library as of somebody who has used Corvane for a season."""
    festival(library)
    title = "Bicycle workshop: opening hours"
    audio = library.sound(title, 24 * MINUTE + 40)
    library.run(title, 30, audio, {"status": "running", "message": "Telling the speakers apart.", "progress": 0.62},
                [("job_started", 15 * MINUTE + 20, {"audio": audio}), ("asr_progress", MINUTE, {"progress": 1.0})])
    library.completed(
        "Harbour museum: audio guide", 3 * HOUR, 21 * MINUTE + 5, talks.MUSEUM,
        speaker_names={"SPEAKER_00": "Nadia Haddad"},
        speaker_profile_assignments={"SPEAKER_00": assignment("Nadia Haddad")},
        speaker_profile_matches=[suggestion("SPEAKER_01", "Marta Lindqvist", 0.91),
                                 suggestion("SPEAKER_02", "Ravi Menon", 0.86)])
    title = "Interview with the lighthouse keeper"
    library.draft(title, "imported", 5 * HOUR, library.sound(title, 52 * MINUTE + 31))
    title = "Allotment gardens, annual meeting"
    audio = library.sound(title, 64 * MINUTE)
    library.run(title, DAY + 2 * HOUR, audio,
                {"status": "failed", "message": "The disk was full before the transcript was written.",
                 "progress": 0.35}, [("job_started", DAY + 3 * HOUR, {"audio": audio}),
                                     ("failed", DAY + 2 * HOUR, {})])
    title = "Kitchen roster"
    library.draft(title, "recorded", 2 * DAY, library.sound(title, 9 * MINUTE + 48))
    library.recording_left_behind("Orchard walk with the surveyors", 26 * MINUTE, 23 * MINUTE + 17)
    library.completed("Reading circle: The Glass Orchard", 6 * DAY, 47 * MINUTE, talks.READING,
                      speaker_names={"SPEAKER_00": "Marta Lindqvist"})
    library.people()
    meeting = identity("Lantern festival: route and lights")
    page = "https://www.notion.so/" + identity("page").replace("-", "").lower()
    library.settings(**{
        "setupCompleted": True, "updateAutomaticChecksEnabled": False,
        "notionDatabaseURL": "https://www.notion.so/" + DATABASE, "notionDatabaseTitle": "Meeting notes",
        f"notionPage.{DATABASE}.{meeting}": identity("page"), f"notionPageURL.{DATABASE}.{meeting}": page})
    library.finish()


def long_names(library):
    """Names that try the layout: long, in other scripts, and with emoji."""
    names = {"SPEAKER_00": "Maximiliane-Theodora von der Hohenbrück-Altenstein, zweite Vorsitzende des Laternenvereins "
                           "am Unteren Mühlbach",
             "SPEAKER_01": "مريم عبد الرحمن الهاشمي", "SPEAKER_02": "山本 はるか", "SPEAKER_03": "Zoë 🌿🏮"}
    talk = talks.FESTIVAL[:3] + [("SPEAKER_03", "Pneumonoultramicroscopicsilicovolcanoconiosis" * 4)]
    talk += [("SPEAKER_01", "مساء الخير. هل نبدأ بالطريق؟"), ("SPEAKER_02", "はい、お願いします。日曜日に歩いてみました。")]
    library.completed("Ein sehr langer Titel, wie er entsteht, wenn jemand eine ganze Tagesordnung in die Überschrift "
                      "schreibt", HOUR, 11 * HOUR, talk, speaker_names=names,
                      speaker_profile_matches=[suggestion("SPEAKER_00", names["SPEAKER_00"], 0.91)])
    library.completed("اجتماع لجنة مهرجان الفوانيس", 2 * HOUR, 30 * MINUTE, talk[3:], speaker_names=names)
    title = "灯籠まつりの打ち合わせ 🏮🏮🏮"
    library.draft(title, "recorded", DAY, library.sound(title, 90))
    library.settings(setupCompleted=True, updateAutomaticChecksEnabled=False)
    library.finish()


def empty(library):
    library.settings(setupCompleted=True, updateAutomaticChecksEnabled=False)


def untouched(_library):
    """As at the very first start."""
