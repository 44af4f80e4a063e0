#include "CorvaneCore/Text/Characters.h"

#include <QTextBoundaryFinder>

namespace corvane {

namespace {

// Moves by as many characters as are left of `limit`, and gives the position reached.
qsizetype advance(QTextBoundaryFinder& finder, qsizetype limit, qsizetype end) {
    qsizetype position = finder.position();
    for (qsizetype count = 0; count < limit && position < end; ++count)
        position = finder.toNextBoundary();
    return position;
}

} // namespace

std::vector<QString> splitText(const QString& text, qsizetype limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    std::vector<QString> pieces;
    qsizetype start = 0;
    do {
        const qsizetype end = advance(finder, limit, text.size());
        pieces.push_back(text.mid(start, end - start));
        start = end;
    } while (start < text.size());
    return pieces;
}

QString firstCharacters(const QString& text, qsizetype limit) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    return text.left(advance(finder, limit, text.size()));
}

} // namespace corvane
