// What each speaker said, for finding a quotation again: a language model quotes what nobody said, or gives it to
// another speaker. Made from one transcript, then only read; any thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QStringList>

#include <map>
#include <optional>

namespace corvane {

class SpokenLines {
public:
    explicit SpokenLines(const std::vector<TranscriptSegment>& segments);

    // Those who say anything, in the order in which they first do.
    [[nodiscard]] const QStringList& labels() const { return m_labels; }

    // The quotation as the transcript has it, or nothing if the speaker does not say it within one turn. Letter case,
    // punctuation and blanks do not count; it must begin and end with a word and be no shorter than eight letters.
    [[nodiscard]] std::optional<QString> find(const QString& label, const QString& quotation) const;

private:
    struct Speech {
        QString text;                  // the turns, a line each
        QString plain;                 // its letters and digits without case, and its line feeds
        std::vector<qsizetype> places; // of each character of `plain` in `text`
    };

    static void addPlain(Speech& speech);

    QStringList m_labels;
    std::map<QString, Speech> m_speech;
};

} // namespace corvane
