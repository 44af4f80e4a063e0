// A named person, as the store of voices knows one. Plain values.
#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

struct SpeakerProfile {
    QUuid id;
    QString displayName;
    QString notes;
    bool enabled = true; // a profile that is not is kept, and takes no part in matching
    QDateTime createdAt; // UTC
    QDateTime updatedAt;

    friend bool operator==(const SpeakerProfile&, const SpeakerProfile&) = default;
};

struct SpeakerProfileSummary {
    SpeakerProfile profile;
    std::int64_t observationCount = 0;
    std::int64_t meetingCount = 0; // different meetings among the observations that name one
    double totalSpeechSeconds = 0;
    std::optional<QDateTime> lastSeenAt; // absent without observations
    std::optional<double> latestMatchScore;

    friend bool operator==(const SpeakerProfileSummary&, const SpeakerProfileSummary&) = default;
};

// One voice vector of one speaker of one run.
struct SpeakerProfileObservation {
    QUuid profileID;
    std::vector<double> embedding;
    QString modelID; // only vectors of one model can be compared
    std::int64_t dimension = 0;
    std::int64_t sampleCount = 0;
    double totalSpeechSeconds = 0;
    std::optional<QString> sourceRunID;
    std::optional<QString> sourceMeetingID;
    std::optional<QString> sourceLocalSpeaker;
};

struct SpeakerProfileMatchCandidate {
    SpeakerProfile profile;
    double score = 0; // cosine similarity, -1 to 1
};

} // namespace corvane
