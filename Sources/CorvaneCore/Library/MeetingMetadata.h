// The two small documents that give a meeting and a processing run their identity: metadata.json in a meeting's
// directory and app_metadata.json in a run's. Nothing caches them: each operation that needs one reads it again, so an
// edit on disk takes effect. Plain values; readers may be called from any thread.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace corvane {

// The words of "speaker_count_mode".
namespace speakerCountMode {
inline const QString automatic = QStringLiteral("auto"); // the worker decides
inline const QString fixed = QStringLiteral("fixed");    // exactly speakerCount
inline const QString range = QStringLiteral("range");    // from minSpeakerCount to maxSpeakerCount
// The mode itself if it is one of the three, else "auto".
[[nodiscard]] QString known(const QString& mode);
} // namespace speakerCountMode

// The words of "recording_status".
namespace recordingStatus {
inline const QString recording = QStringLiteral("recording");
inline const QString paused = QStringLiteral("paused");
inline const QString recorded = QStringLiteral("recorded");
inline const QString imported = QStringLiteral("imported");
} // namespace recordingStatus

// How a meeting is to be processed. The default values are those of a document that lacks the keys.
struct ProcessingSettings {
    QString speakerIdentificationContext; // free text for the worker
    QString language = QStringLiteral("fr");
    qint64 speakerCount = 2;
    bool diarizationEnabled = true;
    QString speakerCountMode = speakerCountMode::automatic;
    qint64 minSpeakerCount = 1;
    qint64 maxSpeakerCount = 8;

    // The same with the upper bound raised to the lower one where it lies below.
    [[nodiscard]] ProcessingSettings withOrderedBounds() const;

    friend bool operator==(const ProcessingSettings&, const ProcessingSettings&) = default;
};

struct MeetingDraftMetadata {
    QString title;
    QString audioPath; // absolute; for a recording set before the file exists
    ProcessingSettings settings;
    QString recordingStatus = recordingStatus::imported;
    std::optional<double> startedAt;        // seconds since 2001-01-01T00:00:00Z, as the document has it
    std::optional<QString> chunksDirectory; // absolute
    std::vector<QString> chunks;            // absolute paths of the closed chunks, in the order they closed

    friend bool operator==(const MeetingDraftMetadata&, const MeetingDraftMetadata&) = default;
};

struct RunAppMetadata {
    QString title;
    QString audioPath; // absolute path of the audio that was processed
    std::optional<QString> meetingID;
    ProcessingSettings settings;

    friend bool operator==(const RunAppMetadata&, const RunAppMetadata&) = default;
};

// Throw JsonError. Every key may be absent or null, unknown keys are ignored; a wrong type fails the document.
[[nodiscard]] MeetingDraftMetadata decodeMeetingDraft(const QByteArray& json);
[[nodiscard]] RunAppMetadata decodeRunAppMetadata(const QByteArray& json);
[[nodiscard]] QByteArray encodeMeetingDraft(const MeetingDraftMetadata& draft);
[[nodiscard]] QByteArray encodeRunAppMetadata(const RunAppMetadata& metadata);

inline const QString meetingDraftFile = QStringLiteral("metadata.json");
inline const QString runAppMetadataFile = QStringLiteral("app_metadata.json");

// Nothing if the file is missing, unreadable or does not decode.
[[nodiscard]] std::optional<MeetingDraftMetadata> readMeetingDraft(const QString& meetingDirectory);
[[nodiscard]] std::optional<RunAppMetadata> readRunAppMetadata(const QString& runDirectory);

// Atomic. Throw FileError. The first creates the meeting's directory, the second needs an existing one.
void writeMeetingDraft(const MeetingDraftMetadata& draft, const QString& meetingDirectory);
void writeRunAppMetadata(const RunAppMetadata& metadata, const QString& runDirectory);

// Between a time and the documents' form of it: seconds since 2001-01-01T00:00:00Z, with a fraction.
[[nodiscard]] double referenceSeconds(const QDateTime& time);
[[nodiscard]] QDateTime fromReferenceSeconds(double seconds);

} // namespace corvane
