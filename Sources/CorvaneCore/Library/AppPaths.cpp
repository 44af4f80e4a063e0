#include "CorvaneCore/Library/AppPaths.h"

#include "CorvaneContract/Files/Files.h"

#include <QDir>
#include <QStandardPaths>

namespace corvane {

namespace {

QString applicationData() {
    const QStringList locations = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    if (locations.isEmpty() || !QDir::isAbsolutePath(locations.front()))
        qFatal("the system names no directory for application data");
    return locations.front() + QStringLiteral("/Corvane");
}

} // namespace

AppPaths::AppPaths(const std::optional<QString>& location)
    : root(location ? QDir::cleanPath(*location) : applicationData()) {}

void AppPaths::createDirectories() const {
    for (const QString& directory : {root, recordings(), runs(), meetings(), logs()})
        createPrivateDirectory(directory);
}

} // namespace corvane
