#include "CorvaneCore/Library/StatusText.h"

#include "CorvaneContract/Text/UserText.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

struct StatusWords {
    const char* word;
    const char* sentence;
};

constexpr std::array allWords{
    StatusWords{QT_TRANSLATE_NOOP("UserText", "recording"), QT_TRANSLATE_NOOP("UserText", "Recording")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "paused"), QT_TRANSLATE_NOOP("UserText", "Paused")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "recorded"), QT_TRANSLATE_NOOP("UserText", "Recorded")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "imported"), QT_TRANSLATE_NOOP("UserText", "Imported")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "pending"), QT_TRANSLATE_NOOP("UserText", "Pending")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "running"), QT_TRANSLATE_NOOP("UserText", "Running")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "completed"), QT_TRANSLATE_NOOP("UserText", "Completed")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "failed"), QT_TRANSLATE_NOOP("UserText", "Failed")},
    StatusWords{QT_TRANSLATE_NOOP("UserText", "cancelled"), QT_TRANSLATE_NOOP("UserText", "Cancelled")},
};

const StatusWords* wordsFor(const QString& status) {
    const auto* const found =
        std::ranges::find_if(allWords, [&](const StatusWords& words) { return status == QLatin1String(words.word); });
    return found == allWords.end() ? nullptr : found;
}

QString withCapitalWords(QString text) {
    bool atStart = true;
    for (QChar& character : text) {
        if (atStart)
            character = character.toUpper();
        atStart = character.isSpace();
    }
    return text;
}

} // namespace

QString statusText(const QString& status) {
    const StatusWords* words = wordsFor(status);
    return words ? UserText::tr(words->word) : status;
}

QString statusSentence(const QString& status) {
    const StatusWords* words = wordsFor(status);
    return words ? UserText::tr(words->sentence) : withCapitalWords(status);
}

} // namespace corvane
