#include "CorvaneContract/Json/JsonWriter.h"

#include <QJsonDocument>

namespace corvane {

QByteArray prettyJson(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QByteArray prettyJson(const QJsonArray& array) {
    return QJsonDocument(array).toJson(QJsonDocument::Indented);
}

QByteArray compactJson(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace corvane
