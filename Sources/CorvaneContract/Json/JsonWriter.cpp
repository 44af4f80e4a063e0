#include "CorvaneContract/Json/JsonWriter.h"

#include <QJsonDocument>
#include <QStringEncoder>
#include <QVariant>

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace corvane {

struct JsonStream::Writer {
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer> json{buffer};
    QStringEncoder encoder{QStringConverter::Utf8, QStringConverter::Flag::Stateless};
    QByteArray utf8;                              // reused, so that a string costs no allocation
    std::vector<std::optional<QString>> lastKeys; // of the open objects; of an array absent

    [[nodiscard]] rapidjson::SizeType encode(QStringView text) {
        if (utf8.size() < encoder.requiredSpace(text.size()))
            utf8.resize(encoder.requiredSpace(text.size()));
        return static_cast<rapidjson::SizeType>(encoder.appendToBuffer(utf8.data(), text) - utf8.data());
    }
};

JsonStream::JsonStream() : m_writer(std::make_unique<Writer>()) {}

JsonStream::~JsonStream() = default;

void JsonStream::beginObject() {
    m_writer->json.StartObject();
    m_writer->lastKeys.emplace_back();
}

void JsonStream::endObject() {
    m_writer->json.EndObject();
    m_writer->lastKeys.pop_back();
}

void JsonStream::beginArray() {
    m_writer->json.StartArray();
}

void JsonStream::endArray() {
    m_writer->json.EndArray();
}

void JsonStream::key(QStringView key) {
    checkOrder(key);
    const rapidjson::SizeType size = m_writer->encode(key);
    m_writer->json.Key(m_writer->utf8.constData(), size);
}

void JsonStream::checkOrder(QStringView key) {
    std::optional<QString>& last = m_writer->lastKeys.back();
    if (last && *last >= key)
        qFatal("the keys of a document are out of order: %s", qPrintable(key.toString()));
    last = key.toString();
}

void JsonStream::value(QStringView text) {
    const rapidjson::SizeType size = m_writer->encode(text);
    m_writer->json.String(m_writer->utf8.constData(), size);
}

void JsonStream::value(double number) {
    if (!std::isfinite(number)) {
        m_writer->json.Null();
        return;
    }
    // The library's own form of a number is now and then a digit longer than needed.
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    m_writer->json.RawValue(digits.data(), static_cast<std::size_t>(end - digits.data()), rapidjson::kNumberType);
}

void JsonStream::value(const QJsonValue& content) {
    switch (content.type()) {
    case QJsonValue::Object: {
        const QJsonObject object = content.toObject();
        beginObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            member(entry.key(), QJsonValue(entry.value()));
        endObject();
        break;
    }
    case QJsonValue::Array:
        beginArray();
        for (const QJsonValue element : content.toArray())
            value(element);
        endArray();
        break;
    case QJsonValue::String:
        value(content.toString());
        break;
    case QJsonValue::Double:
        // An integer beyond 2^53 is kept as such.
        if (const QVariant number = content.toVariant(); number.typeId() == QMetaType::LongLong)
            m_writer->json.Int64(number.toLongLong());
        else
            value(content.toDouble());
        break;
    case QJsonValue::Bool:
        m_writer->json.Bool(content.toBool());
        break;
    default:
        m_writer->json.Null();
        break;
    }
}

QByteArray JsonStream::take() {
    if (!m_writer->json.IsComplete())
        qFatal("a document was written in part");
    m_writer->buffer.Put('\n');
    return {m_writer->buffer.GetString(), static_cast<qsizetype>(m_writer->buffer.GetSize())};
}

QByteArray prettyJson(const QJsonObject& object) {
    JsonStream json;
    json.value(QJsonValue(object));
    return json.take();
}

QByteArray prettyJson(const QJsonArray& array) {
    JsonStream json;
    json.value(QJsonValue(array));
    return json.take();
}

QByteArray compactJson(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace corvane
