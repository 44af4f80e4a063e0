#include "CorvaneCtl/Text.h"

#include "CorvaneCtl/CtlError.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace corvane::ctl {

namespace {

constexpr qint64 maximumSpeakers = 1000; // far beyond any meeting, near enough to catch a slip of the finger

bool isUnsafe(char16_t unit) {
    const bool control = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    const bool separator = unit == 0x2028 || unit == 0x2029;
    const bool direction = unit == 0x061C || unit == 0x200E || unit == 0x200F || (unit >= 0x202A && unit <= 0x202E) ||
                           (unit >= 0x2066 && unit <= 0x2069);
    return control || separator || direction;
}

QString escaped(char16_t unit) {
    switch (unit) {
    case u'\n':
        return QStringLiteral("\\n");
    case u'\t':
        return QStringLiteral("\\t");
    case u'\r':
        return QStringLiteral("\\r");
    default:
        return unit < 0x80 ? QString::asprintf("\\x%02x", unit) : QString::asprintf("\\u%04x", unit);
    }
}

int widthOf(char32_t character) {
    const int width = ::wcwidth(static_cast<wchar_t>(character));
    return width < 0 ? 1 : width;
}

qint64 speakerNumber(const QString& text, const QString& all) {
    bool ok = false;
    const qint64 number = text.toLongLong(&ok);
    if (!ok || number < 1 || number > maximumSpeakers)
        throw UsageError(QStringLiteral("--speakers takes a number, MIN-MAX, auto or off, not “%1”").arg(all));
    return number;
}

} // namespace

QString visibleText(const QString& text, LineBreaks lineBreaks) {
    QString result;
    result.reserve(text.size());
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        const bool kept = lineBreaks == LineBreaks::kept && (unit == u'\n' || unit == u'\t');
        if (isUnsafe(unit) && !kept)
            result += escaped(unit);
        else
            result += character;
    }
    return result;
}

int displayWidth(const QString& text) {
    int width = 0;
    for (const uint character : text.toUcs4())
        width += widthOf(character);
    return width;
}

QString cutToWidth(const QString& text, int width) {
    if (displayWidth(text) <= width)
        return text;
    QString result;
    int used = 1; // of the ellipsis
    for (const uint character : text.toUcs4()) {
        used += widthOf(character);
        if (used > width)
            break;
        const char32_t one = character;
        result += QString::fromUcs4(&one, 1);
    }
    return width > 0 ? result + QChar(0x2026) : QString();
}

QString tableText(const std::vector<QStringList>& rows) {
    std::vector<int> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), static_cast<std::size_t>(row.size())));
        for (qsizetype column = 0; column < row.size(); ++column) {
            int& width = widths[static_cast<std::size_t>(column)];
            width = std::max(width, displayWidth(row[column]));
        }
    }
    QString text;
    for (QStringList row : rows) {
        while (!row.isEmpty() && row.last().isEmpty())
            row.removeLast();
        for (qsizetype column = 0; column < row.size(); ++column) {
            text += row[column];
            const int padding = widths[static_cast<std::size_t>(column)] - displayWidth(row[column]) + 2;
            if (column + 1 < row.size())
                text += QString(padding, QLatin1Char(' '));
        }
        text += QLatin1Char('\n');
    }
    return text;
}

QString durationText(double seconds) {
    if (!(seconds >= 0 && seconds < 1e9))
        return QStringLiteral("?");
    const auto whole = static_cast<long long>(seconds);
    const long long hours = whole / 3600;
    if (hours > 0)
        return QString::asprintf("%lld:%02lld:%02lld", hours, whole / 60 % 60, whole % 60);
    return QString::asprintf("%lld:%02lld", whole / 60, whole % 60);
}

QString ageText(double seconds) {
    const double sound = seconds >= 0 && seconds < 1e12 ? seconds : 0;
    const auto whole = static_cast<qint64>(sound);
    if (whole < 120)
        return QStringLiteral("%1 s").arg(whole);
    if (whole < 2 * 3600)
        return QStringLiteral("%1 min").arg(whole / 60);
    if (whole < 2 * 86400)
        return QStringLiteral("%1 h").arg(whole / 3600);
    return QStringLiteral("%1 d").arg(whole / 86400);
}

QString progressText(double fraction, std::optional<double> elapsedSeconds, const QString& message, int width) {
    constexpr int cells = 20;
    const double sound = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
    const int filled = static_cast<int>(sound * cells);
    QString text = QLatin1Char('[') + QString(filled, QLatin1Char('#')) + QString(cells - filled, QLatin1Char('-')) +
                   QString::asprintf("] %3d %%", static_cast<int>(sound * 100));
    if (elapsedSeconds)
        text += QStringLiteral("  ") + durationText(*elapsedSeconds);
    if (!message.isEmpty())
        text += QStringLiteral("  ") + visibleText(message);
    return cutToWidth(text, width);
}

ProcessingSettings withSpeakers(ProcessingSettings settings, const QString& speakers) {
    settings.diarizationEnabled = speakers != QLatin1String("off");
    if (!settings.diarizationEnabled)
        return settings;
    static const QRegularExpression range(QStringLiteral("^([0-9]+)-([0-9]+)$"));
    if (speakers == QLatin1String("auto")) {
        settings.speakerCountMode = speakerCountMode::automatic;
    } else if (const auto match = range.match(speakers); match.hasMatch()) {
        settings.speakerCountMode = speakerCountMode::range;
        settings.minSpeakerCount = speakerNumber(match.captured(1), speakers);
        settings.maxSpeakerCount = speakerNumber(match.captured(2), speakers);
        if (settings.minSpeakerCount > settings.maxSpeakerCount)
            throw UsageError(QStringLiteral("--speakers %1: the first number is the larger one").arg(speakers));
    } else {
        settings.speakerCountMode = speakerCountMode::fixed;
        settings.speakerCount = speakerNumber(speakers, speakers);
    }
    return settings;
}

QString speakersText(const ProcessingSettings& settings) {
    if (!settings.diarizationEnabled)
        return QStringLiteral("off");
    if (settings.speakerCountMode == speakerCountMode::automatic)
        return QStringLiteral("auto");
    if (settings.speakerCountMode == speakerCountMode::range)
        return QStringLiteral("%1-%2").arg(settings.minSpeakerCount).arg(settings.maxSpeakerCount);
    return QString::number(settings.speakerCount);
}

} // namespace corvane::ctl
