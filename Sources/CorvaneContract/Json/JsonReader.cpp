#include "CorvaneContract/Json/JsonReader.h"

#include "CorvaneContract/Text/UserText.h"

#include <cctype>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

template<typename T>
T valueOr(simdjson::simdjson_result<T>&& result, const char* expected) {
    T value;
    if (std::move(result).get(value) != simdjson::SUCCESS)
        throw JsonError(UserText::tr(expected));
    return value;
}

// simdjson refuses a whole number that no 64-bit integer holds, although JSON knows no such limit and a 64-bit float
// holds it well enough. An exponent makes it a float for simdjson too.
QByteArray withLongIntegersAsFloats(const char* utf8, std::size_t size) {
    QByteArray result;
    result.reserve(static_cast<qsizetype>(size) + 64);
    bool inString = false;
    for (std::size_t i = 0; i < size;) {
        const char c = utf8[i];
        if (inString) {
            const std::size_t step = c == '\\' && i + 1 < size ? 2 : 1;
            result.append(utf8 + i, static_cast<qsizetype>(step));
            inString = c != '"';
            i += step;
        } else if (std::isdigit(static_cast<unsigned char>(c)) != 0) {
            const std::size_t start = i;
            bool whole = true;
            while (i < size && (std::isalnum(static_cast<unsigned char>(utf8[i])) != 0 || utf8[i] == '.' ||
                                utf8[i] == '+' || utf8[i] == '-')) {
                whole = whole && std::isdigit(static_cast<unsigned char>(utf8[i])) != 0;
                ++i;
            }
            result.append(utf8 + start, static_cast<qsizetype>(i - start));
            if (whole && i - start > 18)
                result.append("e0");
        } else {
            inString = c == '"';
            result.append(c);
            ++i;
        }
    }
    return result;
}

} // namespace

QString JsonView::string() const {
    return toQString(valueOr(m_element.get_string(), QT_TRANSLATE_NOOP("UserText", "expected a string")));
}

double JsonView::number() const {
    // get_double() takes integers as well; it does not take strings or booleans.
    return valueOr(m_element.get_double(), QT_TRANSLATE_NOOP("UserText", "expected a number"));
}

std::int64_t JsonView::integer() const {
    std::int64_t value = 0;
    if (m_element.get_int64().get(value) == simdjson::SUCCESS)
        return value;
    const double real = number();
    if (std::trunc(real) != real || std::abs(real) > 9007199254740992.0)
        throw JsonError(UserText::tr("expected an integer"));
    return static_cast<std::int64_t>(real);
}

bool JsonView::boolean() const {
    return valueOr(m_element.get_bool(), QT_TRANSLATE_NOOP("UserText", "expected a boolean"));
}

JsonObject JsonView::object() const {
    return JsonObject(valueOr(m_element.get_object(), QT_TRANSLATE_NOOP("UserText", "expected an object")));
}

std::vector<JsonView> JsonView::array() const {
    const auto elements = valueOr(m_element.get_array(), QT_TRANSLATE_NOOP("UserText", "expected an array"));
    std::vector<JsonView> result;
    result.reserve(elements.size());
    for (auto element : elements)
        result.emplace_back(element);
    return result;
}

JSONValue JsonView::free() const {
    switch (m_element.type()) {
    case simdjson::dom::element_type::NULL_VALUE:
        return nullptr;
    case simdjson::dom::element_type::BOOL:
        return boolean();
    case simdjson::dom::element_type::STRING:
        return string();
    case simdjson::dom::element_type::ARRAY:
        return decodeArray(*this, [](JsonView element) { return element.free(); });
    case simdjson::dom::element_type::OBJECT:
        return object().free();
    default:
        return number();
    }
}

JsonView JsonObject::required(const char* key) const {
    simdjson::dom::element element;
    if (m_object.at_key(key).get(element) != simdjson::SUCCESS)
        throw JsonError(UserText::tr("missing key “%1”").arg(QLatin1String(key)));
    return JsonView(element);
}

std::optional<JsonView> JsonObject::optional(const char* key) const {
    simdjson::dom::element element;
    if (m_object.at_key(key).get(element) != simdjson::SUCCESS || element.is_null())
        return std::nullopt;
    return JsonView(element);
}

JSONValue::Object JsonObject::free() const {
    return map([](JsonView value) { return value.free(); });
}

JsonDocument::JsonDocument(const QByteArray& utf8)
    : JsonDocument(utf8.constData(), static_cast<std::size_t>(utf8.size())) {}

JsonDocument::JsonDocument(const char* utf8, std::size_t size) {
    // simdjson skips a byte order mark in no version that we know; a document with one is refused, as JSON demands.
    auto error = m_parser.parse(utf8, size).get(m_root);
    if (error == simdjson::NUMBER_ERROR) {
        const QByteArray widened = withLongIntegersAsFloats(utf8, size);
        error = m_parser.parse(widened.constData(), static_cast<std::size_t>(widened.size())).get(m_root);
    }
    if (error != simdjson::SUCCESS)
        throw JsonError(UserText::tr("not valid JSON: %1").arg(QLatin1String(simdjson::error_message(error))));
}

} // namespace corvane
