#include "CorvaneCore/Services/AppVersion.h"

#include <QList>

#include <algorithm>
#include <vector>

namespace corvane {

namespace {

std::vector<qint64> components(const QString& version) {
    const auto pieces = QStringView(version).split(u'.', Qt::SkipEmptyParts);
    std::vector<qint64> numbers;
    numbers.reserve(static_cast<std::size_t>(pieces.size()));
    for (const QStringView piece : pieces)
        numbers.push_back(integerOrZero(piece));
    return numbers;
}

qint64 componentAt(const std::vector<qint64>& numbers, std::size_t index) {
    return index < numbers.size() ? numbers[index] : 0;
}

} // namespace

qint64 integerOrZero(QStringView text) {
    const QStringView digits = text.startsWith(u'-') || text.startsWith(u'+') ? text.sliced(1) : text;
    const bool isNumber = !digits.isEmpty() && std::all_of(digits.begin(), digits.end(), [](QChar character) {
        return character >= u'0' && character <= u'9';
    });
    return isNumber ? text.toLongLong() : 0;
}

std::weak_ordering operator<=>(const AppVersion& left, const AppVersion& right) {
    const auto lefts = components(left.version);
    const auto rights = components(right.version);
    for (std::size_t i = 0; i < std::max(lefts.size(), rights.size()); ++i) {
        if (const auto order = componentAt(lefts, i) <=> componentAt(rights, i); order != 0)
            return order;
    }
    return left.build <=> right.build;
}

OperatingSystemVersion OperatingSystemVersion::of(const QString& version) {
    const auto numbers = components(version);
    return {componentAt(numbers, 0), componentAt(numbers, 1), componentAt(numbers, 2)};
}

bool operatingSystemVersionIsOlderThan(const OperatingSystemVersion& present, const QString& required) {
    return present < OperatingSystemVersion::of(required);
}

OperatingSystemVersion presentSystemVersion(const QString& id, const QString& versionID, const QString& idOfTheBuild) {
    const bool hasVersion = !versionID.isEmpty() && versionID.front().isDigit();
    return id == idOfTheBuild && hasVersion ? OperatingSystemVersion::of(versionID) : OperatingSystemVersion::newest();
}

} // namespace corvane
