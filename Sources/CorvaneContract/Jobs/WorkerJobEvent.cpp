#include "CorvaneContract/Jobs/WorkerJobEvent.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <QRegularExpression>
#include <QTimeZone>

namespace corvane {

std::optional<QDateTime> parseInternetDateTime(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("\\A(\\d{4}-\\d{2}-\\d{2})T(\\d{2}:\\d{2}:\\d{2})(\\.\\d+)?(Z|[+-]\\d{2}:\\d{2})\\z"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QDate date = QDate::fromString(match.captured(1), Qt::ISODate);
    const QTime time = QTime::fromString(match.captured(2), Qt::ISODate);
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    int offset = 0;
    if (const QString zone = match.captured(4); zone != QLatin1String("Z")) {
        const int hours = zone.mid(1, 2).toInt();
        const int minutes = zone.mid(4, 2).toInt();
        if (hours > 23 || minutes > 59)
            return std::nullopt;
        offset = (hours * 3600 + minutes * 60) * (zone.startsWith(QLatin1Char('-')) ? -1 : 1);
    }
    const double fraction = match.captured(3).isEmpty() ? 0.0 : (QLatin1Char('0') + match.captured(3)).toDouble();
    return QDateTime(date, time, Qt::UTC).addSecs(-offset).addMSecs(qRound64(fraction * 1000.0));
}

std::optional<WorkerJobEvent> decodeWorkerJobEvent(QByteArrayView line) {
    try {
        const JsonDocument document(line.data(), static_cast<std::size_t>(line.size()));
        WorkerJobEvent event;
        event.payload = document.root().object().free();
        const auto type = stringAt(event.payload, QStringLiteral("type"));
        if (!type)
            return std::nullopt;
        event.type = *type;
        if (const auto time = stringAt(event.payload, QStringLiteral("ts")))
            event.timestamp = parseInternetDateTime(*time);
        return event;
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

QByteArray encodeWorkerJobEvent(const QString& type, const QDateTime& time, const JSONValue::Object& details) {
    QJsonObject object = JSONValue(details).toQJson().toObject();
    object.insert(QStringLiteral("type"), type);
    object.insert(QStringLiteral("ts"), time.toUTC().toString(Qt::ISODateWithMs));
    return compactJson(object) + '\n';
}

} // namespace corvane
