#include "CorvaneWorker/Language/SpokenLines.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <QTextBoundaryFinder>

namespace corvane {

namespace {

constexpr qsizetype leastLetters = 8;
constexpr QChar lineFeed = u'\n';

// What counts in a comparison. Characters beyond the basic plane are compared by their halves.
std::optional<QChar> plainForm(QChar character) {
    if (character == lineFeed)
        return character;
    if (character.isLetterOrNumber() || character.isSurrogate())
        return character.toCaseFolded();
    return std::nullopt;
}

bool isWordBoundary(const QString& text, qsizetype position) {
    constexpr qsizetype reach = 64;
    const qsizetype from = std::max<qsizetype>(0, position - reach);
    const QString around = text.mid(from, 2 * reach);
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, around);
    words.setPosition(position - from);
    return words.isAtBoundary();
}

} // namespace

SpokenLines::SpokenLines(const std::vector<TranscriptSegment>& segments) {
    for (const TranscriptSegmentGroup& turn : groupedSegments(segments)) {
        if (!m_speech.contains(turn.speaker))
            m_labels << turn.speaker;
        m_speech[turn.speaker].text += turn.text.normalized(QString::NormalizationForm_C).simplified() + lineFeed;
    }
    for (auto& [label, speech] : m_speech)
        addPlain(speech);
}

void SpokenLines::addPlain(Speech& speech) {
    for (qsizetype place = 0; place < speech.text.size(); ++place) {
        if (const auto plain = plainForm(speech.text.at(place))) {
            speech.plain += *plain;
            speech.places.push_back(place);
        }
    }
}

std::optional<QString> SpokenLines::find(const QString& label, const QString& quotation) const {
    const auto found = m_speech.find(label);
    if (found == m_speech.end())
        return std::nullopt;
    QString wanted;
    for (const QChar character : quotation.normalized(QString::NormalizationForm_C).simplified())
        if (const auto plain = plainForm(character))
            wanted += *plain;
    if (wanted.size() < leastLetters)
        return std::nullopt;
    const Speech& speech = found->second;
    for (qsizetype at = speech.plain.indexOf(wanted); at >= 0; at = speech.plain.indexOf(wanted, at + 1)) {
        const qsizetype start = speech.places[static_cast<std::size_t>(at)];
        qsizetype end = speech.places[static_cast<std::size_t>(at + wanted.size() - 1)] + 1;
        if (!isWordBoundary(speech.text, start) || !isWordBoundary(speech.text, end))
            continue;
        while (end < speech.text.size() && QStringLiteral(".?!…。？！").contains(speech.text.at(end)))
            ++end;
        return speech.text.mid(start, end - start);
    }
    return std::nullopt;
}

} // namespace corvane
