#include "CorvaneCore/Services/UpdateText.h"

#include "CorvaneContract/Text/UserText.h"

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
    return UserText::tr("Current version: %1 (%2)").arg(version.version, QString::number(version.build));
}

QString lastCheckedText(const std::optional<QDateTime>& lastCheckAt, const QLocale& locale) {
    return lastCheckAt ? UserText::tr("Last checked: %1").arg(updateDateText(*lastCheckAt, locale))
                       : UserText::tr("Last checked: Never");
}

QString updateStatusText(const UpdateCheckState& state) {
    const UpdateManifest manifest = state.manifest.value_or(UpdateManifest());
    switch (state.kind) {
    case UpdateCheckState::Kind::available:
        return UserText::tr("Version %1 (%2) is available.").arg(manifest.version, QString::number(manifest.build));
    case UpdateCheckState::Kind::unsupported:
        return UserText::tr("Version %1 requires macOS %2.")
            .arg(manifest.version, manifest.minimumMacOS.value_or(UserText::tr("a newer version")));
    case UpdateCheckState::Kind::failed:
        return state.message;
    case UpdateCheckState::Kind::checking:
        return UserText::tr("Checking for updates.");
    case UpdateCheckState::Kind::upToDate:
        return UserText::tr("Corvane is up to date.");
    case UpdateCheckState::Kind::idle:
        break;
    }
    return {};
}

std::optional<QString> publishedText(const UpdateManifest& manifest, const QLocale& locale) {
    if (!manifest.publishedAt)
        return std::nullopt;
    return UserText::tr("Published %1.").arg(updateDateText(*manifest.publishedAt, locale));
}

} // namespace corvane
