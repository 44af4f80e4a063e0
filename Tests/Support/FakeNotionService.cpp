#include "Support/FakeNotionService.h"

#include "CorvaneContract/Json/JsonReader.h"
#include "CorvaneContract/Json/JsonWriter.h"

#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace corvane {

namespace {

using Object = JSONValue::Object;
using Array = JSONValue::Array;

constexpr qsizetype maximumTextUnits = 2000; // of UTF-16
constexpr std::size_t maximumListLength = 100;
constexpr qsizetype maximumRequestBytes = 500'000;
constexpr double maximumPageSize = 100;

JSONValue text(const char* content) {
    return QString::fromUtf8(content);
}

const JSONValue* member(const Object& object, const QString& key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &found->second;
}

Object objectAt(const Object& object, const QString& key) {
    const JSONValue* value = member(object, key);
    return value && value->objectValue() ? *value->objectValue() : Object();
}

Array arrayAt(const Object& object, const QString& key) {
    const JSONValue* value = member(object, key);
    return value && value->arrayValue() ? *value->arrayValue() : Array();
}

QString normalID(const QString& id) {
    return id.toLower().remove(QLatin1Char('-'));
}

QString newID(std::size_t number) {
    return QStringLiteral("7e57ab1e-0000-4000-8000-%1").arg(number + 1, 12, 16, QLatin1Char('0'));
}

QString plainText(const Array& richText) {
    QString result;
    for (const JSONValue& item : richText)
        result += stringAt(*item.objectValue(), QStringLiteral("plain_text")).value_or(QString());
    return result;
}

HttpAnswer jsonAnswer(int status, const Object& content) {
    return {.status = status,
            .headers = {{"Content-Type", "application/json; charset=utf-8"}},
            .body = compactJson(JSONValue(content).toQJson().toObject())};
}

// An answer that is no success.
struct Refusal : std::runtime_error {
    Refusal(int refusedStatus, const char* refusedCode, const QString& message)
        : std::runtime_error(message.toStdString()), status(refusedStatus), code(refusedCode) {}

    int status;
    const char* code;
};

HttpAnswer refused(const Refusal& refusal) {
    return jsonAnswer(refusal.status, {{QStringLiteral("object"), text("error")},
                                       {QStringLiteral("status"), refusal.status},
                                       {QStringLiteral("code"), text(refusal.code)},
                                       {QStringLiteral("message"), text(refusal.what())}});
}

[[noreturn]] void invalid(const QString& message) {
    throw Refusal(400, "validation_error", message);
}

// A list of texts as it is sent, in the form in which the service gives it back.
Array stored(const JSONValue* richText, const QString& where) {
    if (!richText || !richText->arrayValue())
        invalid(where + QStringLiteral(" should be an array."));
    if (richText->arrayValue()->size() > maximumListLength)
        invalid(where + QStringLiteral(".length should be ≤ `100`."));
    Array result;
    for (const JSONValue& item : *richText->arrayValue()) {
        const auto* sent = item.objectValue();
        const auto content =
            sent ? stringAt(objectAt(*sent, QStringLiteral("text")), QStringLiteral("content")) : std::nullopt;
        if (!content)
            invalid(where + QStringLiteral("[0].text.content should be defined."));
        if (content->size() > maximumTextUnits)
            invalid(
                where +
                QStringLiteral("[0].text.content.length should be ≤ `2000`, instead was `%1`.").arg(content->size()));
        result.emplace_back(Object{{QStringLiteral("type"), text("text")},
                                   {QStringLiteral("text"), Object{{QStringLiteral("content"), *content}}},
                                   {QStringLiteral("plain_text"), *content}});
    }
    return result;
}

JSONValue storedProperty(const QString& name, const QString& type, const JSONValue& sent) {
    const JSONValue* value = sent.objectValue() ? member(*sent.objectValue(), type) : nullptr;
    if (!value)
        invalid(QStringLiteral("%1 is expected to be %2.").arg(name, type));
    const bool isText = type == u"title" || type == u"rich_text";
    return Object{{QStringLiteral("type"), type}, {type, isText ? JSONValue(stored(value, name)) : *value}};
}

std::vector<JSONValue> storedBlocks(const Array& sent) {
    if (sent.size() > maximumListLength)
        invalid(QStringLiteral("body.children.length should be ≤ `100`, instead was `%1`.").arg(sent.size()));
    std::vector<JSONValue> result;
    for (const JSONValue& block : sent) {
        Object content = block.objectValue() ? *block.objectValue() : Object();
        const QString type = stringAt(content, QStringLiteral("type")).value_or(QString());
        const Object inner = objectAt(content, type);
        if (stringAt(content, QStringLiteral("object")) != u"block" || inner.empty())
            invalid(QStringLiteral("body.children[%1] is no block.").arg(result.size()));
        content.insert_or_assign(
            type, Object{{QStringLiteral("rich_text"), stored(member(inner, QStringLiteral("rich_text")), type)}});
        result.emplace_back(std::move(content));
    }
    return result;
}

Object describe(const FakeNotionPage& page) {
    return {{QStringLiteral("object"), text("page")},
            {QStringLiteral("id"), page.id},
            {QStringLiteral("archived"), page.archived},
            {QStringLiteral("parent"), Object{{QStringLiteral("database_id"), page.databaseID}}},
            {QStringLiteral("properties"), page.properties},
            {QStringLiteral("url"), QStringLiteral("https://www.notion.so/") + normalID(page.id)}};
}

Object listOf(const Array& results) {
    return {{QStringLiteral("object"), text("list")},
            {QStringLiteral("results"), results},
            {QStringLiteral("has_more"), false}};
}

} // namespace

QString FakeNotionPage::text(const QString& column) const {
    const Object property = objectAt(properties, column);
    return plainText(arrayAt(property, stringAt(property, QStringLiteral("type")).value_or(QString())));
}

QString FakeNotionPage::blockText(std::size_t index) const {
    const Object& block = *blocks.at(index).objectValue();
    const Object inner = objectAt(block, stringAt(block, QStringLiteral("type")).value_or(QString()));
    return plainText(arrayAt(inner, QStringLiteral("rich_text")));
}

HttpAnswer FakeNotionService::answer(const ReceivedRequest& request) {
    try {
        return jsonAnswer(200, perform(request));
    } catch (const Refusal& refusal) {
        return refused(refusal);
    } catch (const JsonError& error) {
        return refused(Refusal(400, "invalid_json", error.text()));
    }
}

JSONValue::Object FakeNotionService::perform(const ReceivedRequest& request) {
    if (request.header("Authorization") != "Bearer " + token.toUtf8())
        throw Refusal(401, "unauthorized", QStringLiteral("API token is invalid."));
    if (request.header("Notion-Version") != "2022-06-28")
        throw Refusal(400, "missing_version", QStringLiteral("Notion-Version header should be defined."));
    if (request.body.size() > maximumRequestBytes)
        throw Refusal(413, "validation_error", QStringLiteral("Request body too large."));
    Object body;
    if (!request.body.isEmpty()) {
        if (request.header("Content-Type") != "application/json")
            throw Refusal(400, "invalid_json", QStringLiteral("Error parsing JSON body."));
        body = JsonDocument(request.body).root().object().free();
    }
    static const QRegularExpression route(
        QStringLiteral("^(\\w+) /v1/(databases|pages|blocks)(?:/([^/]+))?(?:/(\\w+))?$"));
    const auto match = route.match(QString::fromUtf8(request.method + ' ' + request.target));
    const QString call = QStringList{match.captured(1), match.captured(2), match.captured(4)}.join(QLatin1Char(' '));
    const QString id = match.captured(3);
    if (call == u"GET databases ")
        return describeDatabase(id);
    if (call == u"POST databases query")
        return query(id, body);
    if (call == u"POST pages ")
        return createPage(body);
    if (call == u"PATCH pages ")
        return updatePage(id, body);
    if (call == u"PATCH blocks children")
        return appendBlocks(id, body);
    throw Refusal(400, "invalid_request_url", QStringLiteral("Invalid request URL."));
}

JSONValue::Object FakeNotionService::describeDatabase(const QString& id) const {
    const FakeNotionDatabase& found = database(id);
    Object properties;
    for (const auto& [name, type] : found.columns)
        properties.emplace(
            name, Object{{QStringLiteral("name"), name}, {QStringLiteral("type"), type}, {type, JSONValue(Object())}});
    Array title;
    if (!found.title.isEmpty())
        title.emplace_back(Object{{QStringLiteral("plain_text"), found.title}});
    return {{QStringLiteral("object"), text("database")},
            {QStringLiteral("id"), id},
            {QStringLiteral("title"), title},
            {QStringLiteral("properties"), properties}};
}

JSONValue::Object FakeNotionService::query(const QString& databaseID, const JSONValue::Object& body) const {
    const FakeNotionDatabase& asked = database(databaseID);
    const double pageSize = numberAt(body, QStringLiteral("page_size")).value_or(maximumPageSize);
    if (pageSize < 1 || pageSize > maximumPageSize)
        invalid(QStringLiteral("body.page_size should be ≤ `100`."));
    const Object filter = objectAt(body, QStringLiteral("filter"));
    const auto column = stringAt(filter, QStringLiteral("property"));
    const auto wanted = stringAt(objectAt(filter, QStringLiteral("rich_text")), QStringLiteral("equals"));
    if (!filter.empty() && (!column || !wanted))
        invalid(QStringLiteral("body.filter is not valid."));
    if (column && !asked.columns.contains(*column))
        invalid(QStringLiteral("Could not find property with name or id: ") + *column);
    if (column && asked.columns.at(*column) != u"rich_text")
        invalid(QStringLiteral("database property %1 does not match filter rich_text").arg(asked.columns.at(*column)));
    Array results;
    for (const FakeNotionPage& one : pages) {
        const bool isMeant = !one.archived && normalID(one.databaseID) == normalID(databaseID) &&
                             (!column || one.text(*column) == *wanted);
        if (isMeant && static_cast<double>(results.size()) < pageSize)
            results.emplace_back(describe(one));
    }
    return listOf(results);
}

JSONValue::Object FakeNotionService::createPage(const JSONValue::Object& body) {
    FakeNotionPage created;
    created.id = newID(pages.size());
    created.databaseID =
        stringAt(objectAt(body, QStringLiteral("parent")), QStringLiteral("database_id")).value_or(QString());
    const FakeNotionDatabase& target = database(created.databaseID);
    for (const auto& [name, value] : objectAt(body, QStringLiteral("properties"))) {
        if (!target.columns.contains(name))
            invalid(name + QStringLiteral(" is not a property that exists."));
        created.properties.emplace(name, storedProperty(name, target.columns.at(name), value));
    }
    created.blocks = storedBlocks(arrayAt(body, QStringLiteral("children")));
    pages.push_back(created);
    return describe(created);
}

JSONValue::Object FakeNotionService::updatePage(const QString& id, const JSONValue::Object& body) {
    FakeNotionPage& updated = page(id);
    const JSONValue* archived = member(body, QStringLiteral("archived"));
    if (archived)
        updated.archived = archived->boolValue().value_or(false);
    return describe(updated);
}

JSONValue::Object FakeNotionService::appendBlocks(const QString& id, const JSONValue::Object& body) {
    FakeNotionPage& extended = page(id);
    if (extended.archived)
        invalid(QStringLiteral("Can't edit block that is archived. You must unarchive the block before editing."));
    const auto blocks = storedBlocks(arrayAt(body, QStringLiteral("children")));
    if (blocks.empty())
        invalid(QStringLiteral("body.children should be defined."));
    extended.blocks.insert(extended.blocks.end(), blocks.begin(), blocks.end());
    return listOf(blocks);
}

const FakeNotionDatabase& FakeNotionService::database(const QString& id) const {
    const auto found = databases.find(normalID(id));
    if (found == databases.end())
        throw Refusal(404, "object_not_found",
                      QStringLiteral("Could not find database with ID: %1. Make sure the relevant pages and databases "
                                     "are shared with your integration.")
                          .arg(id));
    return found->second;
}

FakeNotionPage& FakeNotionService::page(const QString& id) {
    const auto found = std::find_if(pages.begin(), pages.end(),
                                    [&id](const FakeNotionPage& one) { return normalID(one.id) == normalID(id); });
    if (found == pages.end())
        throw Refusal(404, "object_not_found", QStringLiteral("Could not find page with ID: ") + id);
    return *found;
}

void FakeNotionService::load(const QByteArray& json) {
    const JsonDocument document(json);
    const JsonObject root = document.root().object();
    if (const auto given = root.optional("token"))
        token = given->string();
    if (const auto given = root.optional("databases")) {
        for (const JsonView& one : given->array()) {
            const JsonObject object = one.object();
            databases.insert_or_assign(normalID(object.required("id").string()),
                                       FakeNotionDatabase{.title = object.required("title").string(),
                                                          .columns = object.required("columns").object().map(
                                                              [](JsonView type) { return type.string(); })});
        }
    }
}

JSONValue FakeNotionService::describePages() const {
    Array result;
    for (const FakeNotionPage& one : pages) {
        Object description = describe(one);
        description.emplace(QStringLiteral("blocks"), one.blocks);
        result.emplace_back(std::move(description));
    }
    return result;
}

} // namespace corvane
