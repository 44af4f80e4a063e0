#include "CorvaneApp/Translations/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace corvane {

namespace {

QString languageOf(const QString& name) {
    return name.section(QLatin1Char('-'), 0, 0);
}

void install(QTranslator& translator, const QString& file, const QString& directory) {
    if (translator.load(file, directory))
        QCoreApplication::installTranslator(&translator);
}

} // namespace

// Not the library's own search: it passes over English, for which there is no file, to a language wished for less.
std::optional<QString> translationFor(const QStringList& languages) {
    for (const QString& name : languages) {
        const QString language = languageOf(name);
        if (language == QLatin1String("fr"))
            return language;
        if (language == QLatin1String("en") || language == QLatin1String("C"))
            return std::nullopt;
    }
    return std::nullopt;
}

Translations::Translations(const QStringList& languages) {
    const auto language = translationFor(languages);
    if (!language)
        return;
    // A machine may be without the toolkit's own; its few texts then stay English.
    install(m_toolkit, QStringLiteral("qtbase_") + *language, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    install(m_own, QStringLiteral("corvane_") + *language, QStringLiteral(":/Translations"));
}

} // namespace corvane
