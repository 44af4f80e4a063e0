// Version numbers as releases carry them, and how they are ordered. Values; any thread.
#pragma once

#include <QString>

#include <compare>
#include <limits>

namespace corvane {

// A release: a dotted version, and a build number that decides between equal versions. "1.2" and "1.2.0" are the same
// version, and a component that is no integer, as the second of "1.2-beta", counts as 0. The comparison is of what the
// text means, so that two values may be equal and yet read differently.
struct AppVersion {
    QString version;
    qint64 build = 0;

    friend std::weak_ordering operator<=>(const AppVersion& left, const AppVersion& right);
    friend bool operator==(const AppVersion& left, const AppVersion& right) { return (left <=> right) == 0; }
};

struct OperatingSystemVersion {
    qint64 major = 0;
    qint64 minor = 0;
    qint64 patch = 0;

    // The first three components of a dotted version, read as those of AppVersion are; missing ones are 0.
    [[nodiscard]] static OperatingSystemVersion of(const QString& version);
    // Older than nothing.
    [[nodiscard]] static constexpr OperatingSystemVersion newest() {
        constexpr qint64 highest = std::numeric_limits<qint64>::max();
        return {highest, highest, highest};
    }

    friend auto operator<=>(const OperatingSystemVersion&, const OperatingSystemVersion&) = default;
};

// Whether a system is older than the version that is required.
[[nodiscard]] bool operatingSystemVersionIsOlderThan(const OperatingSystemVersion& present, const QString& required);

// The version of this machine's system to hold against what an update requires: requirements are versions of the
// distribution that the build was made for. `id` and `versionID` are those of os-release. Another distribution, or one
// that has no versions, counts as the newest, so that no requirement keeps it from an update.
[[nodiscard]] OperatingSystemVersion presentSystemVersion(const QString& id, const QString& versionID,
                                                          const QString& idOfTheBuild);

// A signed decimal integer and nothing else; 0 for every other text, and where it does not fit in 64 bits.
[[nodiscard]] qint64 integerOrZero(QStringView text);

} // namespace corvane
