// How this house writes JSON: pretty-printed, keys sorted, UTF-8, numbers in their shortest form that reads back
// exactly. The same value always gives the same bytes. Any thread.
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
