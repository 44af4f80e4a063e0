#include "CorvaneContract/Json/JsonWriter.h"

#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace corvane {

namespace {

bool needsEscape(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void appendEscaped(QByteArray& text, char c) {
    static const char from[] = "\"\\\b\f\n\r\t";
    static const char to[] = "\"\\bfnrt";
    text.append('\\');
    if (const char* found = c == '\0' ? nullptr : std::strchr(from, c)) {
        text.append(to[found - from]);
    } else {
        text.append("u00");
        text.append("01"[c >> 4]);
        text.append("0123456789abcdef"[c & 0xf]);
    }
}

} // namespace

QByteArray prettyJson(const QJsonObject& object) {
    PrettyJsonWriter writer;
    writer.value(QJsonValue(object));
    return writer.take();
}

QByteArray prettyJson(const QJsonArray& array) {
    PrettyJsonWriter writer;
    writer.value(QJsonValue(array));
    return writer.take();
}

QByteArray compactJson(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QByteArray PrettyJsonWriter::take() {
    m_text.append('\n');
    return std::move(m_text);
}

void PrettyJsonWriter::begin(char bracket) {
    startValue();
    m_text.append(bracket);
    ++m_depth;
    m_first = true;
}

void PrettyJsonWriter::end(char bracket) {
    --m_depth;
    startLine();
    m_text.append(bracket);
    m_first = false;
}

void PrettyJsonWriter::startLine() {
    static const QByteArray spaces(64, ' ');
    m_text.append('\n');
    for (int left = 4 * m_depth; left > 0; left -= 64)
        m_text.append(spaces.constData(), std::min(left, 64));
}

// The comma behind the value before, and the place where the next one stands.
void PrettyJsonWriter::startValue() {
    if (!m_afterKey && m_depth > 0) {
        if (!m_first)
            m_text.append(',');
        startLine();
    }
    m_afterKey = false;
    m_first = false;
}

void PrettyJsonWriter::key(const QString& key) {
    startValue();
    appendString(key);
    m_text.append(": ");
    m_afterKey = true;
}

void PrettyJsonWriter::value(const QString& text) {
    startValue();
    appendString(text);
}

void PrettyJsonWriter::value(double number) {
    startValue();
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (!std::isfinite(number))
        m_text.append("null");
    else if (std::abs(number) < limit && std::trunc(number) == number)
        m_text.append(QByteArray::number(static_cast<qint64>(number)));
    else
        m_text.append(QByteArray::number(number, 'g', QLocale::FloatingPointShortest));
}

void PrettyJsonWriter::value(const QJsonValue& any) {
    switch (any.type()) {
    case QJsonValue::Object: {
        const QJsonObject object = any.toObject();
        beginObject();
        for (auto member = object.begin(); member != object.end(); ++member) {
            key(member.key());
            value(QJsonValue(member.value()));
        }
        endObject();
        break;
    }
    case QJsonValue::Array:
        beginArray();
        for (const auto element : any.toArray())
            value(QJsonValue(element));
        endArray();
        break;
    case QJsonValue::String:
        value(any.toString());
        break;
    case QJsonValue::Double:
        // A whole number may be more exact than a floating one.
        if (const qint64 whole = any.toInteger(0); whole == any.toInteger(1)) {
            startValue();
            m_text.append(QByteArray::number(whole));
        } else {
            value(any.toDouble());
        }
        break;
    default:
        startValue();
        m_text.append(any.isBool() ? (any.toBool() ? "true" : "false") : "null");
    }
}

// Half a surrogate pair becomes a question mark: escaped as it stands, it would make a document that no reader takes.
void PrettyJsonWriter::appendString(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    m_text.append('"');
    const char* const end = utf8.constData() + utf8.size();
    for (const char* start = utf8.constData(); start < end;) {
        const char* const special = std::find_if(start, end, needsEscape);
        m_text.append(start, special - start);
        if (special < end)
            appendEscaped(m_text, *special);
        start = special + 1;
    }
    m_text.append('"');
}

} // namespace corvane
