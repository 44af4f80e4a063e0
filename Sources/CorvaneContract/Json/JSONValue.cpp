#include "CorvaneContract/Json/JSONValue.h"

#include <QJsonArray>
#include <QJsonObject>

namespace corvane {

QJsonValue JSONValue::toQJson() const {
    if (const auto* object = objectValue()) {
        QJsonObject result;
        for (const auto& [key, value] : *object)
            result.insert(key, value.toQJson());
        return result;
    }
    if (const auto* array = arrayValue()) {
        QJsonArray result;
        for (const auto& value : *array)
            result.append(value.toQJson());
        return result;
    }
    if (const auto text = stringValue())
        return *text;
    if (const auto number = numberValue())
        return *number;
    if (const auto flag = boolValue())
        return *flag;
    return QJsonValue::Null;
}

std::optional<QString> stringAt(const JSONValue::Object& object, const QString& key) {
    const auto found = object.find(key);
    return found == object.end() ? std::nullopt : found->second.stringValue();
}

std::optional<double> numberAt(const JSONValue::Object& object, const QString& key) {
    const auto found = object.find(key);
    return found == object.end() ? std::nullopt : found->second.numberValue();
}

} // namespace corvane
