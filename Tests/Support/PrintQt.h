// Lets GoogleTest print texts as texts, and tests write them as u"..."_s.
#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QByteArray& bytes, std::ostream* stream) {
    *stream << '"' << bytes.toStdString() << '"';
}

namespace corvane {
using namespace Qt::StringLiterals;
}
