// One closed chunk of a recorder. A value.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace corvane {

struct AudioChunk {
    qint64 index = 0; // the number in the file's name
    QString url;      // the path of the file
    QDateTime startedAt;
    QDateTime endedAt;

    friend bool operator==(const AudioChunk&, const AudioChunk&) = default;
};

// {"index":0,"url":"file:///…","startedAt":…,"endedAt":…}, one line, the keys in this order; times as the documents
// have them. Nothing writes it to the disk.
[[nodiscard]] QByteArray encodeAudioChunk(const AudioChunk& chunk);
// All four keys are required. Throws JsonError.
[[nodiscard]] AudioChunk decodeAudioChunk(const QByteArray& json);

} // namespace corvane
