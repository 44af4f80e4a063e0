#include "CorvaneCore/Notion/NotionAddresses.h"

#include <QRegularExpression>

namespace corvane {

namespace {

QString withoutDashes(QString id) {
    return id.remove(QLatin1Char('-'));
}

} // namespace

QUrl notionServiceURL() {
    return QUrl(QStringLiteral("https://api.notion.com/v1"));
}

QString notionPageURL(const QString& pageID) {
    return QStringLiteral("https://www.notion.so/") + withoutDashes(pageID);
}

std::optional<QString> notionDatabaseID(const QString& enteredURL) {
    static const QRegularExpression pattern(
        QStringLiteral("[0-9a-fA-F]{32}|[0-9a-fA-F]{8}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{12}"));
    const auto match = pattern.match(enteredURL.trimmed());
    if (!match.hasMatch())
        return std::nullopt;
    return withoutDashes(match.captured());
}

} // namespace corvane
