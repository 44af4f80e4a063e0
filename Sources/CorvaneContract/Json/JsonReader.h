// The one strict, typed JSON decoder of the house, over simdjson. A missing key, a null and a wrong type are three
// different things; a number never comes from a string; a raw control character, an unpaired surrogate, invalid UTF-8
// and an infinite number are refused. Decoding is all or nothing: the first fault throws JsonError.
//
// A view borrows from the JsonDocument it came from and must not outlive it. Any thread, one document per thread.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Json/JSONValue.h"

#include <QByteArray>
#include <QString>

#include <simdjson.h>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace corvane {

class JsonError : public Error {
public:
    using Error::Error;
};

class JsonObject;

class JsonView {
public:
    explicit JsonView(simdjson::dom::element element) : m_element(element) {}

    // Each throws JsonError on another type. An integer is a number without a fraction that fits in 64 bits.
    [[nodiscard]] QString string() const;
    [[nodiscard]] double number() const;
    [[nodiscard]] std::int64_t integer() const;
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] JsonObject object() const;
    [[nodiscard]] std::vector<JsonView> array() const;
    [[nodiscard]] bool isNull() const { return m_element.is_null(); }

    // Any value. Throws only where a number is out of range.
    [[nodiscard]] JSONValue free() const;

private:
    simdjson::dom::element m_element;
};

class JsonObject {
public:
    explicit JsonObject(simdjson::dom::object object) : m_object(object) {}

    // Throws on a missing key, and on null when the value is then read as a type.
    [[nodiscard]] JsonView required(const char* key) const;
    // Nothing for a missing key and for null.
    [[nodiscard]] std::optional<JsonView> optional(const char* key) const;

    [[nodiscard]] JSONValue::Object free() const;

    // A map from every key, decoded by a function of a JsonView. Of a key that stands twice the last one counts.
    template<typename Decode>
    [[nodiscard]] auto map(Decode decode) const {
        std::map<QString, decltype(decode(std::declval<JsonView>()))> result;
        for (auto [key, value] : m_object)
            result.insert_or_assign(QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())),
                                    decode(JsonView(value)));
        return result;
    }

private:
    simdjson::dom::object m_object;
};

// A parsed text. Throws JsonError if it is not JSON or nests deeper than 1,024 levels.
class JsonDocument {
public:
    explicit JsonDocument(const QByteArray& utf8);
    JsonDocument(const char* utf8, std::size_t size);

    [[nodiscard]] JsonView root() const { return JsonView(m_root); }

private:
    simdjson::dom::parser m_parser;
    simdjson::dom::element m_root;
};

// Decodes an array of like elements with a function of a JsonView.
template<typename Decode>
[[nodiscard]] auto decodeArray(JsonView view, Decode decode) {
    std::vector<decltype(decode(view))> result;
    const auto elements = view.array();
    result.reserve(elements.size());
    for (const auto& element : elements)
        result.push_back(decode(element));
    return result;
}

} // namespace corvane
