// A Notion without a network: databases with columns, pages with blocks, the limits and the words of refusal of the
// service. A function of requests with a memory; FakeNotionServer puts it on the loopback. One thread.
#pragma once

#include "Support/FakeHttpServer.h"

#include "CorvaneContract/Json/JSONValue.h"

#include <QString>

#include <map>
#include <vector>

namespace corvane {

struct FakeNotionDatabase {
    QString title;
    std::map<QString, QString> columns; // name to type
};

struct FakeNotionPage {
    QString id; // with dashes
    QString databaseID;
    bool archived = false;
    JSONValue::Object properties; // as the service gives them back
    std::vector<JSONValue> blocks;

    // The text of a column or of a block.
    [[nodiscard]] QString text(const QString& column) const;
    [[nodiscard]] QString blockText(std::size_t index) const;
};

class FakeNotionService {
public:
    QString token = QStringLiteral("secret_test");
    std::map<QString, FakeNotionDatabase> databases; // by the id, in lower case and without dashes
    std::vector<FakeNotionPage> pages;               // archived ones too

    [[nodiscard]] HttpAnswer answer(const ReceivedRequest& request);

    // {"token": "…", "databases": [{"id": "…", "title": "…", "columns": {"Name": "title", …}}]}; both keys may be left
    // out. Throws JsonError.
    void load(const QByteArray& json);
    // All pages with their blocks, for scripts.
    [[nodiscard]] JSONValue describePages() const;

private:
    [[nodiscard]] JSONValue::Object perform(const ReceivedRequest& request);
    [[nodiscard]] JSONValue::Object describeDatabase(const QString& id) const;
    [[nodiscard]] JSONValue::Object query(const QString& databaseID, const JSONValue::Object& body) const;
    [[nodiscard]] JSONValue::Object createPage(const JSONValue::Object& body);
    [[nodiscard]] JSONValue::Object updatePage(const QString& id, const JSONValue::Object& body);
    [[nodiscard]] JSONValue::Object appendBlocks(const QString& id, const JSONValue::Object& body);
    [[nodiscard]] const FakeNotionDatabase& database(const QString& id) const;
    [[nodiscard]] FakeNotionPage& page(const QString& id);
};

} // namespace corvane
