#pragma once
// The one decoder and encoder of all records, driven by the field table beside each record. Any thread.
//
// A required key that is missing or of another JSON type fails the whole document, and the error names its path, such
// as
// "[3].sequences.pattern[0].r: missing". An optional key may be null. Keys without a field are ignored. Integers are
// signed 64-bit; a number such as 5.0 is one, a boolean is none.

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Fields.h"

namespace vantor {

template <typename T>
struct [[nodiscard]] Decoded {
    std::optional<T> value;
    std::string error;  // one line; empty when there is a value
};

namespace json {

// The document, or a line that says where it stops being JSON.
Decoded<QJsonValue> parse(std::string_view body);
[[nodiscard]] std::string serialise(const QJsonValue& value);

// Each `read` fills the target and returns nothing, or returns "path: what is wrong" below the value.
using Fault = std::optional<std::string>;
[[nodiscard]] Fault read(const QJsonValue& value, bool& target);
[[nodiscard]] Fault read(const QJsonValue& value, std::int64_t& target);
[[nodiscard]] Fault read(const QJsonValue& value, std::string& target);
[[nodiscard]] Fault below(const std::string& place, const std::string& fault);

template <FieldRecord Record>
[[nodiscard]] Fault read(const QJsonValue& value, Record& target);
template <typename Element>
[[nodiscard]] Fault read(const QJsonValue& value, std::vector<Element>& target);

template <typename Element>
Fault read(const QJsonValue& value, std::vector<Element>& target) {
    if (!value.isArray()) return ": no array";
    const QJsonArray array = value.toArray();
    target.clear();
    target.reserve(static_cast<std::size_t>(array.size()));
    for (qsizetype i = 0; i < array.size(); ++i) {
        if (auto fault = read(array.at(i), target.emplace_back())) return below("[" + std::to_string(i) + "]", *fault);
    }
    return std::nullopt;
}

template <typename Member>
[[nodiscard]] Fault readMember(const QJsonValue& value, Member& target) {
    if (value.isUndefined()) return ": missing";
    return read(value, target);
}

template <typename Member>
[[nodiscard]] Fault readMember(const QJsonValue& value, std::optional<Member>& target) {
    target.reset();
    if (value.isUndefined() || value.isNull()) return std::nullopt;
    return read(value, target.emplace());
}

template <FieldRecord Record>
Fault read(const QJsonValue& value, Record& target) {
    if (!value.isObject()) return ": no object";
    const QJsonObject object = value.toObject();
    Fault fault;
    const auto field = [&](const auto& entry) {
        const QJsonValue member =
            object.value(QLatin1StringView(entry.key.data(), static_cast<qsizetype>(entry.key.size())));
        fault = readMember(member, target.*entry.member);
        if (fault) fault = below("." + std::string(entry.key), *fault);
        return !fault;
    };
    std::apply([&](const auto&... entries) { (void)(field(entries) && ...); }, Fields<Record>::table);
    return fault;
}

[[nodiscard]] QJsonValue write(bool value);
[[nodiscard]] QJsonValue write(std::int64_t value);
[[nodiscard]] QJsonValue write(const std::string& value);
template <FieldRecord Record>
[[nodiscard]] QJsonValue write(const Record& record);

template <typename Element>
[[nodiscard]] QJsonValue write(const std::vector<Element>& elements) {
    QJsonArray array;
    for (const auto& element : elements) array.append(write(element));
    return array;
}

template <typename Member>
void writeMember(QJsonObject& object, const QString& key, const Member& member) {
    object.insert(key, write(member));
}

template <typename Member>
void writeMember(QJsonObject& object, const QString& key, const std::optional<Member>& member) {
    if (member) object.insert(key, write(*member));
}

template <FieldRecord Record>
QJsonValue write(const Record& record) {
    QJsonObject object;
    std::apply(
        [&](const auto&... entries) {
            (writeMember(object, QString::fromUtf8(entries.key.data(), static_cast<qsizetype>(entries.key.size())),
                         record.*entries.member),
             ...);
        },
        Fields<Record>::table);
    return object;
}

}  // namespace json

// T: a record, a list of records, or a list of texts.
template <typename T>
Decoded<T> decodeJson(std::string_view body) {
    const auto document = json::parse(body);
    if (!document.value) return {std::nullopt, document.error};
    T value;
    if (auto fault = json::read(*document.value, value)) {
        // The path starts without the dot of its first key.
        return {std::nullopt,
                fault->starts_with('.') ? fault->substr(1) : (fault->starts_with(':') ? "document" + *fault : *fault)};
    }
    return {std::move(value), {}};
}

template <typename T>
[[nodiscard]] std::string encodeJson(const T& value) {
    return json::serialise(json::write(value));
}

}  // namespace vantor
