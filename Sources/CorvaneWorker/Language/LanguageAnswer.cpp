#include "CorvaneWorker/Language/LanguageAnswer.h"

#include "CorvaneContract/Json/JsonReader.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QTextBoundaryFinder>

namespace corvane {

namespace {

// In characters, by what the application has room for.
constexpr qsizetype longestSummary = 2000;
constexpr qsizetype longestShortLabel = 48;
constexpr qsizetype longestContext = 400;
constexpr qsizetype longestLine = 240;
constexpr std::size_t mostLines = 3;

QJsonObject texts() {
    return {{QStringLiteral("type"), QStringLiteral("string")}};
}

QJsonObject arrayOf(const QJsonObject& items) {
    return {{QStringLiteral("type"), QStringLiteral("array")}, {QStringLiteral("items"), items}};
}

QJsonObject objectOf(const QJsonObject& properties) {
    return {{QStringLiteral("type"), QStringLiteral("object")},
            {QStringLiteral("properties"), properties},
            {QStringLiteral("required"), QJsonArray::fromStringList(properties.keys())},
            {QStringLiteral("additionalProperties"), false}};
}

// What the model thought before it spoke, also where that has lost its beginning.
QString withoutThoughts(QString text) {
    static const QRegularExpression thought(QStringLiteral("<think(ing)?>.*?</think(ing)?>"),
                                            QRegularExpression::DotMatchesEverythingOption);
    text.remove(thought);
    static const QRegularExpression openThought(QStringLiteral("^.*</think(ing)?>"),
                                                QRegularExpression::DotMatchesEverythingOption);
    return text.remove(openThought);
}

QByteArray jsonIn(const QString& text) {
    const QString plain = withoutThoughts(text);
    const qsizetype start = plain.indexOf(QLatin1Char('{'));
    const qsizetype end = plain.lastIndexOf(QLatin1Char('}'));
    if (start < 0 || end < start)
        throw AnswerFormError(QStringLiteral("the model did not answer in the asked form"));
    return plain.mid(start, end - start + 1).toUtf8();
}

// One line of printable characters, cut behind a word where it is too long.
QString cleaned(const QString& text, qsizetype longest) {
    QString line;
    for (const QChar character : text.normalized(QString::NormalizationForm_C))
        if (character.isSpace() || character.isPrint() || character.isSurrogate())
            line += character;
    line = line.simplified();
    if (line.size() <= longest)
        return line;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, line);
    characters.setPosition(longest - 1);
    if (!characters.isAtBoundary())
        characters.toPreviousBoundary();
    line.truncate(characters.position());
    if (const qsizetype blank = line.lastIndexOf(QLatin1Char(' ')); blank > longest / 2)
        line.truncate(blank);
    return line.trimmed() + QChar(0x2026);
}

// Line by line: paragraphs and lists may stay.
QString cleanedParagraphs(const QString& text, qsizetype longest) {
    QStringList lines;
    qsizetype room = longest;
    for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
        const QString line = room > 1 ? cleaned(paragraph, room) : QString();
        if (line.isEmpty())
            continue;
        lines << line;
        room -= line.size() + 1;
    }
    return lines.join(QLatin1Char('\n'));
}

QString optionalText(const JsonObject& object, const char* key) {
    const auto value = object.optional(key);
    return value ? value->string() : QString();
}

std::vector<QString> spokenOf(const QString& label, const JsonObject& object, const SpokenLines& spoken) {
    std::vector<QString> lines;
    const auto quotations = object.optional("notable_lines");
    if (!quotations)
        return lines;
    for (const QString& quotation : decodeArray(*quotations, [](JsonView view) { return view.string(); })) {
        const auto line = quotation.size() <= longestLine ? spoken.find(label, quotation) : std::nullopt;
        if (line && lines.size() < mostLines && std::find(lines.begin(), lines.end(), *line) == lines.end())
            lines.push_back(*line);
    }
    return lines;
}

TranscriptSpeakerContext decodeSpeaker(JsonView view, const SpokenLines& spoken) {
    const JsonObject object = view.object();
    const QString label = object.required("speaker").string();
    return {.speaker = label,
            .shortLabel = cleaned(optionalText(object, "short_label"), longestShortLabel),
            .context = cleaned(optionalText(object, "context"), longestContext),
            .notableLines = spokenOf(label, object, spoken)};
}

bool saysAnything(const TranscriptSpeakerContext& speaker) {
    return !speaker.shortLabel.isEmpty() || !speaker.context.isEmpty() || !speaker.notableLines.empty();
}

} // namespace

QJsonObject answerSchema(const QStringList& labels) {
    QJsonObject label = texts();
    label.insert(QStringLiteral("enum"), QJsonArray::fromStringList(labels));
    const QJsonObject speaker = objectOf({{QStringLiteral("speaker"), label},
                                          {QStringLiteral("short_label"), texts()},
                                          {QStringLiteral("context"), texts()},
                                          {QStringLiteral("notable_lines"), arrayOf(texts())}});
    return objectOf({{QStringLiteral("summary"), texts()}, {QStringLiteral("speakers"), arrayOf(speaker)}});
}

LanguageAnswer readAnswer(const QString& text, const QStringList& labels, const SpokenLines& spoken) {
    LanguageAnswer answer;
    std::vector<TranscriptSpeakerContext> speakers;
    try {
        const JsonDocument document(jsonIn(text));
        const JsonObject object = document.root().object();
        answer.summary = cleanedParagraphs(object.required("summary").string(), longestSummary);
        speakers =
            decodeArray(object.required("speakers"), [&spoken](JsonView view) { return decodeSpeaker(view, spoken); });
    } catch (const JsonError&) {
        throw AnswerFormError(QStringLiteral("the model did not answer in the asked form"));
    }
    if (answer.summary.isEmpty())
        throw AnswerFormError(QStringLiteral("the model gave no summary"));
    answer.speakers.reserve(static_cast<std::size_t>(labels.size()));
    for (const QString& label : labels) {
        const auto found = std::find_if(speakers.begin(), speakers.end(), [&label](const auto& speaker) {
            return speaker.speaker == label && saysAnything(speaker);
        });
        if (found != speakers.end())
            answer.speakers.push_back(*found);
    }
    return answer;
}

} // namespace corvane
