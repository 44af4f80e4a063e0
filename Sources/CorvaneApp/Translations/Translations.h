// The language of what the user reads: Corvane's own words and the toolkit's. Made by main before the first text, and
// kept for as long as there is a window. Main thread.
#pragma once

#include <QStringList>
#include <QTranslator>

#include <optional>

namespace corvane {

// The first of `languages` that Corvane speaks, as QLocale::uiLanguages() gives them, the one most wished for first.
// Nothing for English, which its texts are written in, and where it speaks none of them.
[[nodiscard]] std::optional<QString> translationFor(const QStringList& languages);

class Translations {
public:
    // The application object must be there.
    explicit Translations(const QStringList& languages);

private:
    QTranslator m_toolkit;
    QTranslator m_own;
};

} // namespace corvane
