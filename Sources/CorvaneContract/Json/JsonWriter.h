// How this house writes JSON: pretty-printed, keys sorted, UTF-8, numbers in their shortest form that reads back
// exactly. The same value always gives the same bytes, and what is written can always be read again. Any thread.
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>

#include <map>
#include <vector>

namespace corvane {

[[nodiscard]] QByteArray prettyJson(const QJsonObject& object);
[[nodiscard]] QByteArray prettyJson(const QJsonArray& array);
// One line without a final line feed.
[[nodiscard]] QByteArray compactJson(const QJsonObject& object);

// Writes a large document piece by piece in the form of prettyJson(), without building it in memory first. The caller
// gives the keys of an object in sorted order.
class PrettyJsonWriter {
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    // Each of these stands for one value: the document, an element of the array, or the member under the last key.
    void value(const QString& text);
    void value(double number); // what is not finite becomes null
    void value(const QJsonValue& any);
    void key(const QString& key);

    // Ends the document.
    [[nodiscard]] QByteArray take();

private:
    void begin(char bracket);
    void end(char bracket);
    void startValue();
    void startLine();
    void appendString(const QString& text);

    QByteArray m_text;
    int m_depth = 0;
    bool m_first = true;     // nothing stands in the innermost bracket yet
    bool m_afterKey = false; // the next value stands on the line of its key
};

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
