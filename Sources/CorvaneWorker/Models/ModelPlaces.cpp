#include "CorvaneWorker/Models/ModelPlaces.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>

namespace corvane {

QStringList modelPlaces() {
    QStringList places = qEnvironmentVariable("CORVANE_WORKER_MODELS").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        places << data + QStringLiteral("/corvane/models");
    places << QStringLiteral(CORVANE_WORKER_DEFAULT_MODELS);
    for (QString& place : places)
        place = QDir::cleanPath(place);
    places.removeDuplicates();
    return places;
}

QString findModel(const QString& relativeName) {
    for (const QString& place : modelPlaces())
        if (QString path = place + QLatin1Char('/') + relativeName; QFileInfo::exists(path))
            return path;
    return {};
}

QStringList modelDirectories(const QString& kind) {
    QStringList directories;
    QSet<QString> names;
    for (const QString& place : modelPlaces()) {
        const QDir directory(place + QLatin1Char('/') + kind);
        for (const QString& name : directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            if (names.contains(name))
                continue;
            names.insert(name);
            directories << directory.filePath(name);
        }
    }
    return directories;
}

} // namespace corvane
