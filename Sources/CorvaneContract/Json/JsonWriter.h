// How this house writes JSON: pretty-printed, keys sorted, UTF-8, numbers in their shortest form that reads back
// exactly. The same value always gives the same bytes. Any thread.
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringView>

#include <map>
#include <memory>
#include <vector>

namespace corvane {

// Writes a document as it goes, without building it in memory first: for the large ones. The calls must make a whole
// document, and the keys of an object must come in ascending order; a program that does otherwise is wrong and ends.
class JsonStream {
public:
    JsonStream();
    ~JsonStream();
    JsonStream(const JsonStream&) = delete;
    JsonStream& operator=(const JsonStream&) = delete;

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(QStringView key);
    void value(QStringView text);
    void value(const QString& text) { value(QStringView(text)); }
    void value(double number); // null if it is not finite, which JSON cannot say
    void value(const QJsonValue& content);

    template<typename T>
    void member(QStringView name, const T& content) {
        key(name);
        value(content);
    }

    // The text with a final line feed. Nothing may be written afterwards.
    [[nodiscard]] QByteArray take();

private:
    void checkOrder(QStringView key);

    struct Writer;
    std::unique_ptr<Writer> m_writer;
};

[[nodiscard]] QByteArray prettyJson(const QJsonObject& object);
[[nodiscard]] QByteArray prettyJson(const QJsonArray& array);
// One line without a final line feed.
[[nodiscard]] QByteArray compactJson(const QJsonObject& object);

template<typename T, typename Encode>
[[nodiscard]] QJsonArray encodeArray(const std::vector<T>& values, Encode encode) {
    QJsonArray array;
    for (const auto& value : values)
        array.append(encode(value));
    return array;
}

template<typename T, typename Encode>
[[nodiscard]] QJsonObject encodeMap(const std::map<QString, T>& values, Encode encode) {
    QJsonObject object;
    for (const auto& [key, value] : values)
        object.insert(key, encode(value));
    return object;
}

} // namespace corvane
