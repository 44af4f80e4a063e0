// The two settings of the matching, kept as text beside the people they are about.
#include "CorvaneCore/VoiceProfiles/LocalStore.h"

#include <array>
#include <charconv>
#include <cmath>

namespace corvane {

namespace {

constexpr const char* enabledKey = "speakerProfileMatchingEnabled";
constexpr const char* thresholdKey = "speakerProfileMatchingThreshold";

// The whole text must be a number, as the locale-free decimal form has it.
std::optional<double> parsedNumber(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    double number = 0;
    const auto [end, error] = std::from_chars(bytes.cbegin(), bytes.cend(), number);
    return error == std::errc() && end == bytes.cend() && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

QString shortestText(double number) {
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
    return QString::fromLatin1(text.data(), end - text.data());
}

} // namespace

std::optional<QString> LocalStore::setting(const char* key) const {
    SqliteStatement row = m_connection.prepare("SELECT value FROM speaker_profile_settings WHERE key = ?");
    row.bind({QString::fromLatin1(key)});
    return row.nextRow() ? std::optional(row.text(0)) : std::nullopt;
}

void LocalStore::setSetting(const char* key, const QString& value) {
    m_connection.execute("INSERT INTO speaker_profile_settings (key, value) VALUES (?, ?) "
                         "ON CONFLICT(key) DO UPDATE SET value = excluded.value",
                         {QString::fromLatin1(key), value});
}

bool LocalStore::speakerProfileMatchingEnabled() const {
    return setting(enabledKey) == QStringLiteral("1");
}

void LocalStore::setSpeakerProfileMatchingEnabled(bool enabled) {
    setSetting(enabledKey, enabled ? QStringLiteral("1") : QStringLiteral("0"));
}

double LocalStore::speakerProfileMatchingThreshold() const {
    const auto text = setting(thresholdKey);
    return text ? parsedNumber(*text).value_or(defaultMatchingThreshold) : defaultMatchingThreshold;
}

void LocalStore::setSpeakerProfileMatchingThreshold(double threshold) {
    setSetting(thresholdKey, shortestText(threshold));
}

} // namespace corvane
