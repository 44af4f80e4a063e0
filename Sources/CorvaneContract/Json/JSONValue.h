// Free-form JSON, kept as it came: what a document carries that its reader does not interpret. A plain value with
// structural equality. Numbers are 64-bit floats, as JSON has them.
#pragma once

#include <QJsonValue>
#include <QString>

#include <map>
#include <optional>
#include <variant>
#include <vector>

namespace corvane {

class JSONValue {
public:
    using Object = std::map<QString, JSONValue>;
    using Array = std::vector<JSONValue>;

    JSONValue() = default;
    JSONValue(std::nullptr_t) {}
    JSONValue(bool value) : m_value(value) {}
    JSONValue(double value) : m_value(value) {}
    JSONValue(int value) : m_value(static_cast<double>(value)) {}
    JSONValue(QString value) : m_value(std::move(value)) {}
    JSONValue(const char*) = delete; // would quietly become a bool
    JSONValue(Array value) : m_value(std::move(value)) {}
    JSONValue(Object value) : m_value(std::move(value)) {}

    [[nodiscard]] bool isNull() const { return std::holds_alternative<std::monostate>(m_value); }

    // The payload if the value is of that case, and nothing for every other case.
    [[nodiscard]] std::optional<QString> stringValue() const { return get<QString>(); }
    [[nodiscard]] std::optional<double> numberValue() const { return get<double>(); }
    [[nodiscard]] std::optional<bool> boolValue() const { return get<bool>(); }
    [[nodiscard]] const Object* objectValue() const { return std::get_if<Object>(&m_value); }
    [[nodiscard]] const Array* arrayValue() const { return std::get_if<Array>(&m_value); }

    [[nodiscard]] QJsonValue toQJson() const;

    friend bool operator==(const JSONValue&, const JSONValue&) = default;

private:
    template<typename T>
    [[nodiscard]] std::optional<T> get() const {
        const T* value = std::get_if<T>(&m_value);
        return value ? std::optional<T>(*value) : std::nullopt;
    }

    std::variant<std::monostate, bool, double, QString, Array, Object> m_value;
};

// The string under a key, or nothing if the key is missing or holds another case.
[[nodiscard]] std::optional<QString> stringAt(const JSONValue::Object& object, const QString& key);
[[nodiscard]] std::optional<double> numberAt(const JSONValue::Object& object, const QString& key);

} // namespace corvane
