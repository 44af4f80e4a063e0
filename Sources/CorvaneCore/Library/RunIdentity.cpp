#include "CorvaneCore/Library/RunIdentity.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Jobs/RunFiles.h"
#include "CorvaneCore/Jobs/JobReaders.h"
#include "CorvaneCore/Library/FileNames.h"
#include "CorvaneCore/Text/Characters.h"
#include "CorvaneCore/Transcripts/TranscriptResultReader.h"

namespace corvane {

namespace {

constexpr int titleLength = 48;

} // namespace

TranscriptIdentity transcriptIdentity(const TranscriptResult& result) {
    TranscriptIdentity identity;
    identity.audio = stringAt(result.metadata, QStringLiteral("audio"));
    if (!result.segments.empty())
        identity.firstText = result.segments.front().text;
    return identity;
}

RunIdentity::RunIdentity(QString runDirectory, std::optional<RunAppMetadata> record, TranscriptSource transcript,
                         EventAudioSource eventAudio)
    : m_runDirectory(std::move(runDirectory)),
      m_record(std::move(record)),
      m_readTranscript(std::move(transcript)),
      m_readEventAudio(std::move(eventAudio)) {}

RunIdentity RunIdentity::ofDirectory(const QString& runDirectory) {
    return {runDirectory, readRunAppMetadata(runDirectory),
            [runDirectory]() -> std::optional<TranscriptIdentity> {
                const auto result = TranscriptResultReader().read(runDirectory);
                return result ? std::optional(transcriptIdentity(*result)) : std::nullopt;
            },
            [runDirectory] { return audioURLFromEvents(runDirectory); }};
}

const std::optional<TranscriptIdentity>& RunIdentity::transcript() {
    if (!m_transcript)
        m_transcript = m_readTranscript();
    return *m_transcript;
}

std::optional<QString> RunIdentity::audioURL() {
    if (m_record && !m_record->audioPath.isEmpty())
        return m_record->audioPath;
    if (!m_audio)
        m_audio = transcript() && transcript()->audio ? transcript()->audio : m_readEventAudio();
    return *m_audio;
}

QString RunIdentity::meetingID() {
    if (m_record && m_record->meetingID && !m_record->meetingID->isEmpty())
        return *m_record->meetingID;
    return audioURL().value_or(m_runDirectory);
}

QString RunIdentity::title() {
    if (m_record && !m_record->title.isEmpty())
        return m_record->title;
    if (transcript() && !transcript()->firstText.isEmpty())
        return firstCharacters(transcript()->firstText, titleLength);
    if (const auto audio = audioURL())
        return fileTitle(*audio);
    return lastPathComponent(m_runDirectory);
}

std::optional<QString> audioURLFromEvents(const QString& runDirectory) {
    const auto content = readFile(runFiles::in(runDirectory, runFiles::events), maximumEventBytes);
    return content ? audioURLOfEvents(*content) : std::nullopt;
}

std::optional<QString> audioURLOfEvents(const QByteArray& content) {
    std::optional<QString> audio;
    JobEventReader::forEachOf(content, [&audio](const WorkerJobEvent& event) {
        if (event.type == jobEvents::jobStarted)
            audio = stringAt(event.payload, QStringLiteral("audio"));
        return audio ? JobEventReader::Next::stop : JobEventReader::Next::goOn;
    });
    return audio;
}

} // namespace corvane
