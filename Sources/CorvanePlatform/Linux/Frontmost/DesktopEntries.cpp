#include "CorvanePlatform/Linux/Frontmost/DesktopEntries.h"

#include "CorvaneContract/Files/Files.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

namespace corvane {

namespace {

constexpr qint64 maximumEntryBytes = 256 * 1024;

// The keys of the group [Desktop Entry]; those of actions stand in groups of their own.
QHash<QString, QString> entryKeys(const QString& text) {
    QHash<QString, QString> keys;
    bool isInGroup = false;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        if (line.startsWith(u'['))
            isInGroup = line.trimmed() == QLatin1String("[Desktop Entry]");
        const qsizetype equals = line.indexOf(u'=');
        if (isInGroup && equals > 0)
            keys.insert(line.first(equals).trimmed().toString(), line.sliced(equals + 1).trimmed().toString());
    }
    return keys;
}

QStringList localeLanguages() {
    const QString name = QLocale::system().name();
    return {name, name.section(u'_', 0, 0)};
}

} // namespace

DesktopEntries::DesktopEntries()
    : DesktopEntries(QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation), localeLanguages()) {}

DesktopEntries::DesktopEntries(QStringList directories, QStringList languages)
    : m_directories(std::move(directories)), m_languages(std::move(languages)) {}

std::optional<QString> DesktopEntries::name(const QString& applicationId, const Deadline& deadline) {
    if (applicationId.isEmpty())
        return std::nullopt;
    if (const auto now = stamps(); now != m_stamps) {
        m_stamps = now;
        readAll(deadline);
    }
    const QString key = applicationId.toLower();
    for (const auto* names : {&m_namesById, &m_namesByClass})
        if (const auto found = names->constFind(key); found != names->constEnd())
            return *found;
    return std::nullopt;
}

QList<QDateTime> DesktopEntries::stamps() const {
    QList<QDateTime> result;
    result.reserve(m_directories.size());
    for (const QString& directory : m_directories)
        result.append(QFileInfo(directory).lastModified());
    return result;
}

void DesktopEntries::readAll(const Deadline& deadline) {
    m_namesById.clear();
    m_namesByClass.clear();
    for (const QString& directory : m_directories) {
        QDirIterator files(directory, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            if (deadline.isOver()) {
                m_stamps.clear(); // so that the next look goes on from the files that the disk has at hand by then
                return;
            }
            const QString path = files.next();
            QString id = path.sliced(directory.size() + 1);
            id.chop(QLatin1String(".desktop").size());
            add(path, id.replace(u'/', u'-').toLower());
        }
    }
}

void DesktopEntries::add(const QString& path, const QString& id) {
    if (m_namesById.contains(id))
        return;
    const auto text = readTextFile(path, maximumEntryBytes);
    if (!text)
        return;
    const auto keys = entryKeys(*text);
    QString name = keys.value(QStringLiteral("Name"));
    for (const QString& language : m_languages) {
        if (const QString translated = keys.value(QStringLiteral("Name[%1]").arg(language)); !translated.isEmpty()) {
            name = translated;
            break;
        }
    }
    if (name.isEmpty())
        return;
    m_namesById.insert(id, name);
    const QString windowClass = keys.value(QStringLiteral("StartupWMClass")).toLower();
    if (!windowClass.isEmpty() && !m_namesByClass.contains(windowClass))
        m_namesByClass.insert(windowClass, name);
}

} // namespace corvane
