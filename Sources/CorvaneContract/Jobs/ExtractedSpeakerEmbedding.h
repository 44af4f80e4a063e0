// The vector file of `speaker-profiles extract`: one speaker's voice as numbers.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

struct ExtractedSpeakerEmbedding {
    QString speaker;               // local label in the run
    std::vector<double> embedding; // compared by cosine
    QString modelID;
    std::int64_t dimension = 0;
    std::int64_t sampleCount = 0; // how many stretches of speech went into the vector
    double totalSpeechSeconds = 0;
    std::optional<QString> sourceRunID; // name of the run directory

    friend bool operator==(const ExtractedSpeakerEmbedding&, const ExtractedSpeakerEmbedding&) = default;
};

// Throws JsonError. Only "source_run_id" may be missing or null.
[[nodiscard]] ExtractedSpeakerEmbedding decodeExtractedSpeakerEmbedding(const QByteArray& json);
[[nodiscard]] QByteArray encodeExtractedSpeakerEmbedding(const ExtractedSpeakerEmbedding& value);

} // namespace corvane
