#include "CorvaneCore/Services/UpdateText.h"

#include <QRegularExpression>

namespace corvane {

namespace {

// The library knows a long and a short form only. The long one without the weekday, and with the short name of the
// month, has the locale's own order and punctuation.
QString mediumDateFormat(const QLocale& locale) {
    static const QRegularExpression weekday(QStringLiteral("^dddd[,،]?\\s*|[,،]?\\s*dddd$"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(weekday);
    return format.replace(QLatin1String("MMMM"), QLatin1String("MMM"));
}

} // namespace

QString updateDateText(const QDateTime& moment, const QLocale& locale) {
    const QDateTime here = moment.toLocalTime();
    return locale.toString(here.date(), mediumDateFormat(locale)) + QStringLiteral(", ") +
           locale.toString(here.time(), QLocale::ShortFormat);
}

QString currentVersionText(const AppVersion& version) {
    return QStringLiteral("Current version: %1 (%2)").arg(version.version, QString::number(version.build));
}

QString lastCheckedText(const std::optional<QDateTime>& lastCheckAt, const QLocale& locale) {
    return QStringLiteral("Last checked: ") +
           (lastCheckAt ? updateDateText(*lastCheckAt, locale) : QStringLiteral("Never"));
}

QString updateStatusText(const UpdateCheckState& state) {
    const UpdateManifest manifest = state.manifest.value_or(UpdateManifest());
    switch (state.kind) {
    case UpdateCheckState::Kind::available:
        return QStringLiteral("Version %1 (%2) is available.").arg(manifest.version, QString::number(manifest.build));
    case UpdateCheckState::Kind::unsupported:
        return QStringLiteral("Version %1 requires macOS %2.")
            .arg(manifest.version, manifest.minimumMacOS.value_or(QStringLiteral("a newer version")));
    case UpdateCheckState::Kind::failed:
        return state.message;
    case UpdateCheckState::Kind::checking:
        return QStringLiteral("Checking for updates.");
    case UpdateCheckState::Kind::upToDate:
        return QStringLiteral("Corvane is up to date.");
    case UpdateCheckState::Kind::idle:
        break;
    }
    return {};
}

std::optional<QString> publishedText(const UpdateManifest& manifest, const QLocale& locale) {
    if (!manifest.publishedAt)
        return std::nullopt;
    return QStringLiteral("Published %1.").arg(updateDateText(*manifest.publishedAt, locale));
}

} // namespace corvane
