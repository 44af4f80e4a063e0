// What a run is called, which audio it processed and which meeting it belongs to, with the fallbacks for runs whose
// record is incomplete. Used on the main thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"
#include "CorvaneCore/Library/MeetingMetadata.h"

#include <functional>
#include <optional>

namespace corvane {

// Of a transcript, only what an identity may need.
struct TranscriptIdentity {
    std::optional<QString> audio; // metadata's "audio"
    QString firstText;            // text of the first segment

    friend bool operator==(const TranscriptIdentity&, const TranscriptIdentity&) = default;
};

[[nodiscard]] TranscriptIdentity transcriptIdentity(const TranscriptResult& result);

// The documents of one run. The transcript and the events can be large and are only asked for by a fallback that needs
// them; each is asked at most once.
class RunIdentity {
public:
    using TranscriptSource = std::function<std::optional<TranscriptIdentity>()>;
    using EventAudioSource = std::function<std::optional<QString>()>;

    RunIdentity(QString runDirectory, std::optional<RunAppMetadata> record, TranscriptSource transcript,
                EventAudioSource eventAudio);

    // Reads the documents of a run directory from the disk when they are needed.
    [[nodiscard]] static RunIdentity ofDirectory(const QString& runDirectory);

    // The record's audio, or the transcript's, or the first "job_started" event's. Not tested for existence.
    [[nodiscard]] std::optional<QString> audioURL();

    // The record's meeting, or the audio's path, or the run directory's path.
    [[nodiscard]] QString meetingID();

    // The record's title, or the first 48 characters of what was said, or the audio's name, or the directory's.
    [[nodiscard]] QString title();

private:
    [[nodiscard]] const std::optional<TranscriptIdentity>& transcript();

    QString m_runDirectory;
    std::optional<RunAppMetadata> m_record;
    TranscriptSource m_readTranscript;
    EventAudioSource m_readEventAudio;
    std::optional<std::optional<TranscriptIdentity>> m_transcript;
    std::optional<std::optional<QString>> m_audio;
};

// The audio of the first "job_started" event that names one; nothing if events.jsonl tells none.
[[nodiscard]] std::optional<QString> audioURLFromEvents(const QString& runDirectory);
[[nodiscard]] std::optional<QString> audioURLOfEvents(const QByteArray& content);

} // namespace corvane
