#include "CorvaneCore/Library/FileNames.h"

namespace corvane {

QString lastPathComponent(const QString& path) {
    QString rest = path;
    while (rest.size() > 1 && rest.endsWith(QLatin1Char('/')))
        rest.chop(1);
    return rest.mid(rest.lastIndexOf(QLatin1Char('/')) + 1);
}

QString pathExtension(const QString& path) {
    const QString name = lastPathComponent(path);
    const qsizetype stop = name.lastIndexOf(QLatin1Char('.'));
    return stop > 0 ? name.mid(stop + 1) : QString();
}

QString fileTitle(const QString& path) {
    const QString name = lastPathComponent(path);
    const QString extension = pathExtension(path);
    return extension.isEmpty() ? name : name.chopped(extension.size() + 1);
}

bool isPlainName(const QString& name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QChar(0));
}

} // namespace corvane
