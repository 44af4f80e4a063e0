// result.json, the structured result of a run. The worker creates it; the application rewrites it when speakers get
// names. Plain values with structural equality. A speaker is addressed by its local label, compared as an exact string.
#pragma once

#include "CorvaneContract/Json/JSONValue.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <map>
#include <optional>
#include <vector>

namespace corvane {

struct TranscriptSegment {
    double start = 0; // seconds from the start of the audio
    double end = 0;
    QString text;
    QString speaker;

    [[nodiscard]] QString id() const;
    friend bool operator==(const TranscriptSegment&, const TranscriptSegment&) = default;
};

struct TranscriptExample {
    double start = 0; // seconds
    double end = 0;
    QString text;

    [[nodiscard]] QString id() const;
    friend bool operator==(const TranscriptExample&, const TranscriptExample&) = default;
};

struct TranscriptSpeaker {
    QString speaker;
    double duration = 0; // total speech, seconds
    std::vector<TranscriptExample> examples;

    [[nodiscard]] QString id() const { return speaker; }
    friend bool operator==(const TranscriptSpeaker&, const TranscriptSpeaker&) = default;
};

struct TranscriptSpeakerContext {
    QString speaker;
    QString shortLabel;
    QString context;
    std::vector<QString> notableLines;

    [[nodiscard]] QString id() const { return speaker; }
    friend bool operator==(const TranscriptSpeakerContext&, const TranscriptSpeakerContext&) = default;
};

struct TranscriptLLMContext {
    QString provider;
    QString model;
    QString summary;
    std::vector<TranscriptSpeakerContext> speakerContext;

    friend bool operator==(const TranscriptLLMContext&, const TranscriptLLMContext&) = default;
};

struct SpeakerProfileAssignment {
    QUuid profileID;
    QString displayName; // the profile's name when this was written

    friend bool operator==(const SpeakerProfileAssignment&, const SpeakerProfileAssignment&) = default;
};

struct SpeakerProfileMatchSuggestion {
    QString speaker;
    QUuid profileID;
    QString displayName;
    double score = 0; // cosine similarity
    QString status;   // "suggested", "accepted" or "rejected"; any other text is kept

    [[nodiscard]] QString id() const;
    friend bool operator==(const SpeakerProfileMatchSuggestion&, const SpeakerProfileMatchSuggestion&) = default;
};

using SpeakerNames = std::map<QString, QString>;
using SpeakerProfileAssignments = std::map<QString, SpeakerProfileAssignment>;
using SpeakerProfileMatches = std::vector<SpeakerProfileMatchSuggestion>;

struct TranscriptResult {
    JSONValue::Object metadata;
    std::vector<TranscriptSegment> segments;
    std::vector<TranscriptSpeaker> speakers;
    SpeakerNames speakerNames;
    SpeakerProfileAssignments speakerProfileAssignments;
    SpeakerProfileMatches speakerProfileMatches;
    std::optional<TranscriptLLMContext> llm;

    friend bool operator==(const TranscriptResult&, const TranscriptResult&) = default;
};

// All or nothing: one bad value anywhere throws JsonError. Unknown keys are ignored.
[[nodiscard]] TranscriptResult decodeTranscriptResult(const QByteArray& json);
// The same result always gives the same bytes. Identifiers are written in upper case.
[[nodiscard]] QByteArray encodeTranscriptResult(const TranscriptResult& result);

// The upper-case text form with hyphens and without braces, as ids and documents have it.
[[nodiscard]] QString uuidText(const QUuid& uuid);

} // namespace corvane
