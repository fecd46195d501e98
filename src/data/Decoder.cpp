#include "data/Decoder.h"

#include <QtCore/QJsonDocument>
#include <cmath>
#include <limits>

namespace vantor::json {

Decoded<QJsonValue> parse(std::string_view body) {
    QJsonParseError error;
    const auto document =
        QJsonDocument::fromJson(QByteArray::fromRawData(body.data(), static_cast<qsizetype>(body.size())), &error);
    if (error.error != QJsonParseError::NoError) {
        return {std::nullopt, "byte " + std::to_string(error.offset) + ": " + error.errorString().toStdString()};
    }
    return {document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()), {}};
}

std::string serialise(const QJsonValue& value) {
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact).toStdString();
}

Fault below(const std::string& place, const std::string& fault) { return place + fault; }

Fault read(const QJsonValue& value, bool& target) {
    if (!value.isBool()) return ": no boolean";
    target = value.toBool();
    return std::nullopt;
}

Fault read(const QJsonValue& value, std::int64_t& target) {
    if (!value.isDouble()) return ": no integer";
    // Two different fallbacks tell an exact 64-bit integer from a number that is none.
    const qint64 number = value.toInteger(0);
    if (number == 0 && value.toInteger(1) == 1) return ": no integer";
    target = number;
    return std::nullopt;
}

Fault read(const QJsonValue& value, std::string& target) {
    if (!value.isString()) return ": no text";
    target = value.toString().toStdString();
    return std::nullopt;
}

QJsonValue write(bool value) { return {value}; }
QJsonValue write(std::int64_t value) { return {static_cast<qint64>(value)}; }
QJsonValue write(const std::string& value) { return {QString::fromStdString(value)}; }

}  // namespace vantor::json
