#include "CorvaneWorker/Language/TranscriptParts.h"

#include "CorvaneContract/Transcripts/TranscriptText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace corvane {

namespace {

constexpr int bytesPerToken = 3;

// Where the text has to be cut so that the beginning fits: behind a blank where there is one, and never before the
// first character.
qsizetype fittingLength(const QString& text, int mostTokens) {
    if (estimatedTokens(text) <= mostTokens)
        return text.size();
    qsizetype length = std::max<qsizetype>(1, cutToTokens(text, mostTokens).size());
    if (length < text.size() && text.at(length).isLowSurrogate())
        ++length;
    const qsizetype blank = text.lastIndexOf(QLatin1Char(' '), length - 1);
    return blank > 0 ? blank + 1 : length;
}

} // namespace

int estimatedTokens(const QString& text) {
    return static_cast<int>((text.toUtf8().size() + bytesPerToken - 1) / bytesPerToken);
}

QString cutToTokens(const QString& text, int mostTokens) {
    const qsizetype mostBytes = static_cast<qsizetype>(std::max(0, mostTokens)) * bytesPerToken;
    if (text.toUtf8().size() <= mostBytes)
        return text;
    qsizetype bytes = 0;
    qsizetype length = 0;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype next = characters.toNextBoundary(); next >= 0; next = characters.toNextBoundary()) {
        bytes += QStringView(text).sliced(length, next - length).toUtf8().size();
        if (bytes > mostBytes)
            break;
        length = next;
    }
    return text.left(length);
}

std::vector<QString> transcriptParts(const std::vector<TranscriptSegment>& segments, int mostTokens) {
    std::vector<QString> lines;
    for (const TranscriptSegmentGroup& turn : groupedSegments(segments)) {
        const QString label = turn.speaker.simplified() + QStringLiteral(": ");
        const int room = std::max(1, mostTokens - estimatedTokens(label) - 1);
        QString rest = turn.text.simplified();
        while (!rest.isEmpty()) {
            const qsizetype length = fittingLength(rest, room);
            lines.push_back(label + rest.left(length).trimmed() + QLatin1Char('\n'));
            rest.remove(0, length);
        }
    }
    return joinedTexts(lines, mostTokens);
}

std::vector<QString> joinedTexts(const std::vector<QString>& texts, int mostTokens) {
    std::vector<QString> joined;
    int tokens = 0; // of the last one
    for (const QString& text : texts) {
        const int more = estimatedTokens(text);
        if (joined.empty() || tokens + more > mostTokens) {
            joined.push_back(text);
            tokens = more;
        } else {
            joined.back() += text;
            tokens += more;
        }
    }
    return joined;
}

} // namespace corvane
