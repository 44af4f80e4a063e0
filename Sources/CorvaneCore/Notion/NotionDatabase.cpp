#include "CorvaneCore/Notion/NotionDatabase.h"

#include "CorvaneContract/Text/UserText.h"

#include <QStringList>

namespace corvane {

namespace {

const JSONValue* find(const JSONValue::Object& object, const QString& key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &found->second;
}

const JSONValue::Object* objectAt(const JSONValue::Object& object, const QString& key) {
    const JSONValue* value = find(object, key);
    return value ? value->objectValue() : nullptr;
}

const JSONValue::Array* arrayAt(const JSONValue::Object& object, const QString& key) {
    const JSONValue* value = find(object, key);
    return value ? value->arrayValue() : nullptr;
}

QString plainText(const JSONValue::Array* richText) {
    QString text;
    if (!richText)
        return text;
    for (const JSONValue& item : *richText) {
        if (const auto* object = item.objectValue())
            text += stringAt(*object, QStringLiteral("plain_text")).value_or(QString());
    }
    return text;
}

QString normalized(const QString& columnName) {
    return columnName.toLower().remove(QLatin1Char(' ')).remove(QLatin1Char('_'));
}

std::optional<QString> firstColumnLike(const std::map<QString, QString>& propertyTypes, const QStringList& candidates) {
    for (const auto& [name, type] : propertyTypes) {
        if (candidates.contains(normalized(name)))
            return name;
    }
    return std::nullopt;
}

// Every key and every plain value on a line of its own, so that no text arises that does not stand in the value.
void describe(const JSONValue& value, QString& text) {
    if (const auto* object = value.objectValue()) {
        for (const auto& [key, member] : *object) {
            text += key + QLatin1Char('\n');
            describe(member, text);
        }
    } else if (const auto* array = value.arrayValue()) {
        for (const JSONValue& element : *array)
            describe(element, text);
    } else if (const auto string = value.stringValue()) {
        text += *string + QLatin1Char('\n');
    } else if (const auto number = value.numberValue()) {
        text += QString::number(*number, 'g', QLocale::FloatingPointShortest) + QLatin1Char('\n');
    }
}

bool mentions(const JSONValue::Object* properties, const QString& text) {
    if (!properties)
        return false;
    QString description;
    describe(*properties, description);
    return description.contains(text);
}

QString pageTitle(const JSONValue::Object* properties) {
    if (!properties)
        return {};
    for (const auto& [name, value] : *properties) {
        const auto* property = value.objectValue();
        if (property && stringAt(*property, QStringLiteral("type")) == u"title")
            return plainText(arrayAt(*property, QStringLiteral("title")));
    }
    return {};
}

} // namespace

std::optional<NotionPropertyInfo> NotionDatabaseInfo::property(const QString& named) const {
    const QString wanted = named.trimmed();
    if (wanted.isEmpty())
        return std::nullopt;
    if (const auto exact = propertyTypes.find(wanted); exact != propertyTypes.end())
        return NotionPropertyInfo{exact->first, exact->second};
    for (const auto& [name, type] : propertyTypes) {
        if (name.compare(wanted, Qt::CaseInsensitive) == 0)
            return NotionPropertyInfo{name, type};
    }
    return std::nullopt;
}

std::optional<QString> NotionDatabaseInfo::inferredParticipantsPropertyName() const {
    return firstColumnLike(propertyTypes, {QStringLiteral("participants"), QStringLiteral("participantnames"),
                                           QStringLiteral("attendees")});
}

std::optional<QString> NotionDatabaseInfo::inferredSummaryPropertyName() const {
    return firstColumnLike(propertyTypes, {QStringLiteral("summary"), QStringLiteral("meetingsummary"),
                                           QStringLiteral("resume"), QStringLiteral("resumemeeting")});
}

NotionDatabaseInfo notionDatabaseInfo(const JSONValue::Object& answer) {
    NotionDatabaseInfo info;
    info.title = plainText(arrayAt(answer, QStringLiteral("title")));
    if (info.title.isEmpty())
        info.title = QStringLiteral("Untitled database");
    if (const auto* properties = objectAt(answer, QStringLiteral("properties"))) {
        for (const auto& [name, value] : *properties) {
            const auto* column = value.objectValue();
            if (const auto type = column ? stringAt(*column, QStringLiteral("type")) : std::nullopt)
                info.propertyTypes.emplace(name, *type);
        }
    }
    std::optional<QString> titleProperty;
    for (const auto& [name, type] : info.propertyTypes) {
        if (type == u"title" && !titleProperty)
            titleProperty = name;
        if (type == u"rich_text" && !info.meetingIDProperty && normalized(name) == u"meetingid")
            info.meetingIDProperty = name;
    }
    info.titleProperty = titleProperty.value_or(QStringLiteral("Name"));
    return info;
}

std::vector<NotionPageMatch> notionPageMatches(const JSONValue::Object& answer,
                                               const std::optional<QString>& mentioning) {
    std::vector<NotionPageMatch> matches;
    const auto* results = arrayAt(answer, QStringLiteral("results"));
    if (!results)
        return matches;
    for (const JSONValue& result : *results) {
        const auto* page = result.objectValue();
        if (!page)
            continue;
        const auto* properties = objectAt(*page, QStringLiteral("properties"));
        const auto id = stringAt(*page, QStringLiteral("id"));
        if (!id || (mentioning && !mentions(properties, *mentioning)))
            continue;
        const QString title = pageTitle(properties);
        matches.push_back({.id = *id,
                           .title = title.isEmpty() ? UserText::tr("Existing meeting page") : title,
                           .url = stringAt(*page, QStringLiteral("url")).value_or(QString())});
    }
    return matches;
}

} // namespace corvane
