// The names that desktop entries give to applications, in the user's language. Owned by the look at the desktop, on its
// thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/Deadline.h"

#include <QDateTime>
#include <QHash>
#include <QStringList>

#include <optional>

namespace corvane {

class DesktopEntries {
public:
    // Of the user's and the system's applications, in the language of the locale.
    DesktopEntries();
    // `directories` in falling precedence; `languages` likewise, such as “fr_FR” and “fr”.
    DesktopEntries(QStringList directories, QStringList languages);

    // By the name of the entry's file or by its StartupWMClass, without regard to case. The entries are read once, and
    // again when a directory has changed; past the deadline what is known then counts.
    [[nodiscard]] std::optional<QString> name(const QString& applicationId, const Deadline& deadline);

private:
    [[nodiscard]] QList<QDateTime> stamps() const;
    void readAll(const Deadline& deadline);
    void add(const QString& path, const QString& id);

    QStringList m_directories;
    QStringList m_languages;
    QList<QDateTime> m_stamps;
    QHash<QString, QString> m_namesById;
    QHash<QString, QString> m_namesByClass;
};

} // namespace corvane
